/* An importer for ".note" files: the first line is the title, all of it is the text.
 *
 *     mkdir -p Note.mdimporter/Contents/Linux
 *     cp Info.plist Note.mdimporter/Contents
 *     cc -shared -fPIC -I DIR_OF_HEADER -o Note.mdimporter/Contents/Linux/Note.so NoteImporter.c
 *
 * Put Note.mdimporter into ~/.local/share/caddis/Library/Spotlight.
 */
#include "caddis_importer.h"

#include <stdio.h>
#include <string.h>

static const CaddisHost* host;

static unsigned char import_data(void* self, CaddisValue* attributes, const char* type, const char* path)
{
    char buffer[4096];
    size_t length;
    FILE* file = fopen(path, "rb");
    (void)self;
    (void)type;
    if (!file)
        return 0;
    if (fgets(buffer, sizeof buffer, file))
        host->set_string(attributes, "kMDItemTitle", buffer, strcspn(buffer, "\r\n"));
    rewind(file);
    while (!host->should_stop() && (length = fread(buffer, 1, sizeof buffer, file)) > 0)
        host->append_text(attributes, buffer, length);
    fclose(file);
    return 1;
}

/* One object for all files: it keeps nothing, so it does not need to count. */
static uint32_t count(void* self)
{
    (void)self;
    return 1;
}

static int32_t query_interface(void* self, CaddisUUID identifier, void** out)
{
    const int known = caddis_uuid_equal(identifier, CADDIS_IMPORTER_INTERFACE_ID)
        || caddis_uuid_equal(identifier, CADDIS_UNKNOWN_INTERFACE_ID);
    *out = known ? self : NULL;
    return known ? CADDIS_OK : CADDIS_NO_INTERFACE;
}

static const CaddisImporter table = { { NULL, query_interface, count, count }, import_data };
static const CaddisImporter* object = &table;

CADDIS_EXPORT void* NoteImporterFactory(const CaddisHost* given, const CaddisUUID* type)
{
    host = given;
    return caddis_uuid_equal(*type, CADDIS_IMPORTER_TYPE_ID) ? (void*)&object : NULL;
}
