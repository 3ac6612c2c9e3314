/* One importer with the behaviours that the tests ask for, one factory each. It counts references as the
 * platform's samples do, and shows its count in the attributes. */
#define _GNU_SOURCE
#include "caddis_importer.h"

#include <errno.h>
#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/stat.h>
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

void throwSomething(void); /* in C++ */

/* What is left behind: memory, sockets, a file beside the one that is read. */
static void leak(CaddisValue* attributes, const char* path)
{
    char other[4096];
    int count;
    int sockets = 0;
    for (count = 0; count < 64; ++count) {
        memset(malloc(1 << 20), 1, 1 << 20);
        sockets += socket(AF_INET, SOCK_STREAM, 0) >= 0;
    }
    host->set_integer(attributes, "sockets", sockets);
    if (strlen(path) + 8 < sizeof other) {
        strcpy(other, path);
        strcat(other, ".left");
        host->set_boolean(attributes, "wrote", open(other, O_CREAT | O_WRONLY, 0600) >= 0);
    }
}

/* Values that hold one another more than once, or themselves. */
static void entangle(CaddisValue* attributes)
{
    CaddisValue* inner = host->make(CADDIS_ARRAY, NULL, 0);
    int level;
    int refused = 0;
    for (level = 0; level < 100; ++level) {
        CaddisValue* outer = host->make(CADDIS_ARRAY, NULL, 0);
        host->retain(inner);
        host->retain(inner);
        host->append(outer, inner);
        refused += !host->append(outer, inner);
        host->retain(outer);
        refused += !host->append(inner, outer) << 8;
        inner = outer;
    }
    host->set_integer(attributes, "refused", refused);
}

static void describe(CaddisValue* attributes, const char* path)
{
    const char* page = "<html><body><p>One &amp; <b>two</b></p></body></html>";
    if (strstr(path, ".mellel")) {
        host->set_string(attributes, "word", "<title>", 7);
        host->set_string(attributes, "words", "<a title>", 9);
        host->add_string(attributes, "list", "<author>", 8);
        host->add_string(attributes, "lists", "<author>", 8);
        host->add_string(attributes, "lists", "<author>", 8);
    }
    if (strstr(path, ".mht"))
        host->append_text(attributes, page, strlen(page));
    if (strstr(path, ".scap")) {
        host->add_string(attributes, "com_literatureandlatte_scapple_noteText", "one", 3);
        host->add_string(attributes, "com_literatureandlatte_scapple_noteText", "two", 3);
    }
    if (strstr(path, "html.txt"))
        host->set_string(attributes, "kMDItemHTMLContent", page, strlen(page));
    if (strstr(path, "data.txt"))
        host->set_data(attributes, "kMDItemHTMLContentData", page, strlen(page));
    if (strstr(path, "Preview.pdf"))
        host->append_text(attributes, "found", 5);
}

static void note(CaddisValue* attributes, const char* deed, int succeeded)
{
    host->set_integer(attributes, deed, succeeded ? 0 : errno);
}

/* What somebody would do who had taken this process over: 0 where it succeeds, else the error. */
static void burgle(CaddisValue* attributes, const char* path)
{
    char loot[4096];
    const char* scratch = getenv("TMPDIR");
    snprintf(loot, sizeof loot, "%s.loot", path);
    note(attributes, "write", open(loot, O_WRONLY | O_CREAT, 0600) >= 0);
    note(attributes, "overwrite", open(path, O_WRONLY) >= 0);
    note(attributes, "unlink", unlink(path) == 0);
    note(attributes, "chmod", chmod(path, 0777) == 0);
    note(attributes, "internet", socket(AF_INET, SOCK_STREAM, 0) >= 0);
    note(attributes, "datagram", socket(AF_INET6, SOCK_DGRAM, 0) >= 0);
    note(attributes, "local", socket(AF_UNIX, SOCK_STREAM, 0) >= 0);
    note(attributes, "trace", ptrace(PTRACE_PEEKDATA, getppid(), 0, 0) != -1);
    note(attributes, "kill", kill(getppid(), 0) == 0);
    note(attributes, "namespace", unshare(CLONE_NEWUSER) == 0);
    snprintf(loot, sizeof loot, "%s/own", scratch ? scratch : "");
    note(attributes, "scratch", open(loot, O_WRONLY | O_CREAT, 0600) >= 0);
    errno = EPERM;
    note(attributes, "shell", system("true > /dev/null") == 0);
    snprintf(loot, sizeof loot, "echo x > '%s.shell'", path);
    errno = EPERM;
    note(attributes, "shell writes", system(loot) == 0);
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
    if (strstr(path, "throw"))
        throwSomething();
    if (strstr(path, "fork"))
        fork();
    if (strstr(path, "leak"))
        leak(attributes, path);
    if (strstr(path, "burglar"))
        burgle(attributes, path);
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
        entangle(attributes);
    }
}

static unsigned char import_data(void* self, CaddisValue* attributes, const char* type, const char* path)
{
    host->set_string(attributes, "type", type, strlen(type));
    host->set_string(attributes, "path", path, strlen(path));
    host->set_integer(attributes, "references", ((struct Object*)self)->references);
    host->set_integer(attributes, "living", living);
    host->set(attributes, "null", host->make(CADDIS_NULL, NULL, 0));
    describe(attributes, path);
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
