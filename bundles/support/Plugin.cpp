#include "bundles/support/Importer.h"
#include "platform/base/LeftOut.h"

#include <atomic>
#include <exception>

/// The plug-in's side of the interface: one factory, one object that counts its references, and a wall
/// against exceptions. The same for every bundle.
namespace caddis::bundles {

namespace {

std::uint32_t addReference(void* self);
std::uint32_t release(void* self);
std::int32_t queryInterface(void* self, CaddisUUID wanted, void** out);
unsigned char importData(void* self, CaddisValue* dictionary, const char* contentType, const char* path);

constexpr CaddisImporter Table { { nullptr, queryInterface, addReference, release }, importData };

// It keeps nothing of a file, so one serves all and is never freed. The host finds the functions behind the
// first word.
struct Object {
    const CaddisImporter* table = &Table;
    const CaddisHost* host = nullptr;
    std::atomic<std::uint32_t> references = 0;
} theObject;

std::uint32_t addReference(void*) { return ++theObject.references; }

std::uint32_t release(void*) { return --theObject.references; }

std::int32_t queryInterface(void* self, CaddisUUID wanted, void** out)
{
    const bool isKnown = caddis_uuid_equal(wanted, CADDIS_IMPORTER_INTERFACE_ID)
        || caddis_uuid_equal(wanted, CADDIS_UNKNOWN_INTERFACE_ID);
    *out = isKnown ? self : nullptr;
    if (!isKnown)
        return CADDIS_NO_INTERFACE;
    addReference(self);
    return CADDIS_OK;
}

unsigned char importData(void*, CaddisValue* dictionary, const char* contentType, const char* path)
{
    try {
        Attributes attributes(*theObject.host, dictionary);
        takeLeftOut();
        const bool isRead = importFile(attributes, contentType ? contentType : "", path ? path : "");
        for (const String& what : takeLeftOut())
            theObject.host->note_left_out(what.utf8().c_str());
        return isRead;
    } catch (const std::exception& exception) {
        theObject.host->log(exception.what());
    } catch (...) {
        theObject.host->log("unknown exception");
    }
    return 0;
}

} // namespace

} // namespace caddis::bundles

extern "C" CADDIS_EXPORT void* caddisImporterFactory(const CaddisHost* host, const CaddisUUID* type)
{
    using caddis::bundles::theObject;
    if (!host || host->abi != CADDIS_IMPORTER_ABI || host->size < sizeof *host
        || !caddis_uuid_equal(*type, CADDIS_IMPORTER_TYPE_ID))
        return nullptr;
    theObject.host = host;
    ++theObject.references;
    return &theObject;
}
