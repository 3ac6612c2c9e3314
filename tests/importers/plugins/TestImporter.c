/* One importer with the behaviours that the tests ask for, one factory each. It counts references as the
 * platform's samples do, and shows its count in the attributes. */
#include "caddis_importer.h"

#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

struct Object {
    const CaddisImporter* table;
    uint32_t references;
    int onlyURL;
};

static const CaddisHost* host;
static int living;

static uint32_t add_ref(void* self) { return ++((struct Object*)self)->references; }

static uint32_t release(void* self)
{
    struct Object* object = self;
    const uint32_t left = --object->references;
    if (left == 0) {
        --living;
        free(object);
    }
    return left;
}

static int32_t query_interface(void* self, CaddisUUID identifier, void** out)
{
    const struct Object* object = self;
    const int known = object->onlyURL == 2
        ? 0
        : caddis_uuid_equal(
            identifier, object->onlyURL ? CADDIS_URL_IMPORTER_INTERFACE_ID : CADDIS_IMPORTER_INTERFACE_ID);
    *out = NULL;
    if (!known)
        return CADDIS_NO_INTERFACE;
    add_ref(self);
    *out = self;
    return CADDIS_OK;
}

static void misbehave(CaddisValue* attributes, const char* path)
{
    static char text[1 << 16];
    volatile int spinning = 1;
    if (strstr(path, "crash"))
        raise(SIGSEGV);
    if (strstr(path, "hang"))
        while (spinning) { }
    if (strstr(path, "exit"))
        _exit(0);
    if (strstr(path, "flood")) {
        memset(text, 'x', sizeof text);
        while (!host->should_stop())
            host->append_text(attributes, text, sizeof text);
    }
    if (strstr(path, "garbage")) {
        host->set_string(attributes, "bytes", "\xFF\xFE\x80", 3);
        host->set_string(NULL, NULL, NULL, 0);
        host->append(attributes, host->make(CADDIS_STRING, "x", 1));
        host->set(attributes, "self", attributes);
    }
}

static unsigned char import_data(void* self, CaddisValue* attributes, const char* type, const char* path)
{
    host->set_string(attributes, "type", type, strlen(type));
    host->set_string(attributes, "path", path, strlen(path));
    host->set_integer(attributes, "references", ((struct Object*)self)->references);
    host->set_integer(attributes, "living", living);
    host->set(attributes, "null", host->make(CADDIS_NULL, NULL, 0));
    misbehave(attributes, path);
    return 0;
}

static const CaddisImporter table = { { NULL, query_interface, add_ref, release }, import_data };

static void* create(const CaddisHost* given, int onlyURL)
{
    struct Object* object = malloc(sizeof *object);
    host = given;
    ++living;
    object->table = &table;
    object->references = 1;
    object->onlyURL = onlyURL;
    return object;
}

CADDIS_EXPORT void* PathFactory(const CaddisHost* given, const CaddisUUID* type)
{
    (void)type;
    return create(given, 0);
}
CADDIS_EXPORT void* URLFactory(const CaddisHost* given, const CaddisUUID* type)
{
    (void)type;
    return create(given, 1);
}
CADDIS_EXPORT void* NoInterfaceFactory(const CaddisHost* given, const CaddisUUID* type)
{
    (void)type;
    return create(given, 2);
}
CADDIS_EXPORT void* NullFactory(const CaddisHost* given, const CaddisUUID* type)
{
    (void)given;
    (void)type;
    return NULL;
}
