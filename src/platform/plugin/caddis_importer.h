/* caddis_importer.h: what an importer is, in C.
 *
 * An importer tells the host what a file says of itself: its title, its authors, its text. It is a shared
 * object in a bundle, and it links nothing of the host's:
 *
 *     Name.mdimporter/Contents/Info.plist          what it reads, and the names of its factories
 *     Name.mdimporter/Contents/Linux/Name.so       the code: cc -shared -fPIC -o Name.so Name.c
 *
 * Info.plist holds, besides CFBundleIdentifier and CFBundleExecutable ("Name.so"):
 *
 *     CFPlugInFactories           factory identifier (a UUID of your own) = name of the factory function
 *     CFPlugInTypes               CADDIS_IMPORTER_TYPE_ID as text = ( factory identifier )
 *     CFBundleDocumentTypes       ( { CFBundleTypeRole = MDImporter; LSItemContentTypes = ( … ); } )
 *     UTExportedTypeDeclarations  types of your own, with their file-name extensions
 *     CaddisImporterABI           CADDIS_IMPORTER_ABI; absent means 1
 *
 * What happens for one file. The host calls the factory function with its table of functions and the
 * importer type; the factory returns an object that counts its own references, with one reference for the
 * caller, or NULL to refuse. The host asks that object for CADDIS_IMPORTER_INTERFACE_ID and, if there is
 * none, for CADDIS_URL_IMPORTER_INTERFACE_ID; what it gets it calls once to import and then releases. (On
 * the way of the first interface the factory's own reference stays, so an object that keeps nothing of a
 * file between calls does best: return one static object.)
 *
 * Rules. Everything runs on one thread. The host's functions may be called only on that thread, during
 * import_data (log also in the factory). No exception may leave your functions. Do not fork, exit, start
 * threads that outlive the call, or change signal handlers, the locale, the working directory or limits: the
 * process is not yours. Long work asks should_stop now and then. The code is never unloaded.
 */
#ifndef CADDIS_IMPORTER_H
#define CADDIS_IMPORTER_H

#include <stddef.h>
#include <stdint.h>

/* NOLINTBEGIN(modernize-*): this is C. */
#ifdef __cplusplus
extern "C" {
#endif

#define CADDIS_IMPORTER_ABI 1u

/* Before the factory function, so that the host finds it whatever -fvisibility says. */
#define CADDIS_EXPORT __attribute__((visibility("default")))

/* An identifier, in the order in which its text shows the bytes (RFC 4122). Passed by value. */
typedef struct {
    uint8_t bytes[16];
} CaddisUUID;

#ifdef __cplusplus
#define CADDIS_UUID(...) (CaddisUUID { { __VA_ARGS__ } })
#else
#define CADDIS_UUID(...) ((CaddisUUID) { { __VA_ARGS__ } })
#endif

/* 8B08C4BF-415B-11D8-B3F9-0003936726FC: the type of plug-in that importers are. */
#define CADDIS_IMPORTER_TYPE_ID                                                                              \
    CADDIS_UUID(                                                                                             \
        0x8B, 0x08, 0xC4, 0xBF, 0x41, 0x5B, 0x11, 0xD8, 0xB3, 0xF9, 0x00, 0x03, 0x93, 0x67, 0x26, 0xFC)
/* 6EBC27C4-899C-11D8-84AE-0003936726FC: an importer that is given a path. */
#define CADDIS_IMPORTER_INTERFACE_ID                                                                         \
    CADDIS_UUID(                                                                                             \
        0x6E, 0xBC, 0x27, 0xC4, 0x89, 0x9C, 0x11, 0xD8, 0x84, 0xAE, 0x00, 0x03, 0x93, 0x67, 0x26, 0xFC)
/* 13F60F02-3622-4F35-9891-EC10E6CD08F8: an importer that is given a URL. */
#define CADDIS_URL_IMPORTER_INTERFACE_ID                                                                     \
    CADDIS_UUID(                                                                                             \
        0x13, 0xF6, 0x0F, 0x02, 0x36, 0x22, 0x4F, 0x35, 0x98, 0x91, 0xEC, 0x10, 0xE6, 0xCD, 0x08, 0xF8)
/* 00000000-0000-0000-C000-000000000046: any object's own interface. */
#define CADDIS_UNKNOWN_INTERFACE_ID                                                                          \
    CADDIS_UUID(                                                                                             \
        0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)

static inline int caddis_uuid_equal(CaddisUUID left, CaddisUUID right)
{
    int index;
    for (index = 0; index < 16; ++index) {
        if (left.bytes[index] != right.bytes[index])
            return 0;
    }
    return 1;
}

/* What query_interface returns. */
#define CADDIS_OK ((int32_t)0)
#define CADDIS_NO_INTERFACE ((int32_t)0x80000004)

/* A value of the host's. Who makes one owns one reference. */
typedef struct CaddisValue CaddisValue;

typedef enum {
    CADDIS_NULL,
    CADDIS_STRING,
    CADDIS_INTEGER,
    CADDIS_REAL,
    CADDIS_BOOLEAN,
    CADDIS_DATE,
    CADDIS_DATA,
    CADDIS_ARRAY,
    CADDIS_DICTIONARY
} CaddisKind;

/* The host's functions. The table grows at its end only: `size` is its size in bytes, and a function beyond
 * it is not there.
 *
 * Functions that return int return 1 for done and 0 for not done: a NULL argument, a value of another kind,
 * no memory, no room. Nothing else needs to be checked. Text is UTF-8; ill-formed parts become U+FFFD and are
 * never refused. A key that is set again takes its new value. `length` and `count` do not include a
 * terminator, and none is needed.
 */
typedef struct CaddisHost {
    uint32_t size;
    uint32_t abi; /* CADDIS_IMPORTER_ABI */

    int (*set_string)(CaddisValue* dictionary, const char* key, const char* utf8, size_t length);
    int (*set_string16)(CaddisValue* dictionary, const char* key, const uint16_t* units, size_t count);
    int (*set_integer)(CaddisValue* dictionary, const char* key, int64_t value);
    int (*set_real)(CaddisValue* dictionary, const char* key, double value);
    int (*set_boolean)(CaddisValue* dictionary, const char* key, int value);
    /* Fractions included; not a finite number: not done. */
    int (*set_date)(CaddisValue* dictionary, const char* key, double seconds_since_1970);
    int (*set_data)(CaddisValue* dictionary, const char* key, const void* bytes, size_t length);
    /* One more string at the end of the array under `key`, which is made when it is missing. */
    int (*add_string)(CaddisValue* dictionary, const char* key, const char* utf8, size_t length);
    /* More of the file's text, the value of kMDItemTextContent. Pieces join without anything between them,
     * and a piece may end inside a character. 0 once the text is as long as the host takes (16 MiB): what
     * came before is kept. */
    int (*append_text)(CaddisValue* dictionary, const char* utf8, size_t length);

    /* A value with one reference, yours. `bytes` is, by kind: the UTF-8 of a string; an int64_t; a double
     * (REAL, and DATE in seconds since 1970); one byte (BOOLEAN); the data; nothing for the others, which
     * start empty. NULL when it can't be made. */
    CaddisValue* (*make)(CaddisKind kind, const void* bytes, size_t length);
    /* Both take over your reference to `item`, also when they fail. They do when the item stands in an array
     * or a dictionary already, when it would come to contain itself, and beyond 64 levels. */
    int (*append)(CaddisValue* array, CaddisValue* item);
    int (*set)(CaddisValue* dictionary, const char* key, CaddisValue* item);
    /* Borrowed: valid until the dictionary changes. NULL when the key is missing. */
    const CaddisValue* (*get)(const CaddisValue* dictionary, const char* key);
    CaddisKind (*kind)(const CaddisValue* value);
    void (*retain)(CaddisValue* value);
    void (*release)(CaddisValue* value);

    /* 1 when the time is over or the text is long enough: return from import_data soon. */
    int (*should_stop)(void);
    /* One line in the host's log. */
    void (*log)(const char* utf8);
    /* A phrase that names what the importer leaves out because a limit of its own has ended the reading:
     * "parts of the message after the first 1000". The application then knows that more could be had. What
     * append_text and should_stop cut off needs none. */
    void (*note_left_out)(const char* utf8);
} CaddisHost;

/* The head of every object. `self` is always the pointer that query_interface or the factory gave. */
typedef struct CaddisUnknown {
    void* reserved;
    int32_t (*query_interface)(void* self, CaddisUUID interface_id, void** out);
    uint32_t (*add_ref)(void* self);
    uint32_t (*release)(void* self);
} CaddisUnknown;

/* Both importer interfaces. The object's first word points to this table:
 *
 *     struct MyImporter { const CaddisImporter* table; … };
 *
 * import_data fills `attributes`, a dictionary, with what it knows of the file. `content_type` is the file's
 * type in lower case, "public.plain-text". The last argument is the file's path, whose bytes are the file
 * system's, or its "file://" URL, by the interface. The result says whether the file could be read; the
 * attributes count either way.
 */
typedef struct CaddisImporter {
    CaddisUnknown unknown;
    unsigned char (*import_data)(
        void* self, CaddisValue* attributes, const char* content_type, const char* path_or_url);
} CaddisImporter;

/* The factory function that Info.plist names. `host` lives as long as the process. */
typedef void* (*CaddisFactory)(const CaddisHost* host, const CaddisUUID* type);

#ifdef __cplusplus
}
#endif
/* NOLINTEND(modernize-*) */

#endif
