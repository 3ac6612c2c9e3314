// Web archives cut and mangled anywhere, binary and XML.
//
// Invariants: what is found by its URL has that URL; the text begins with two line feeds unless it is empty;
// the markup is that of the main resource.

#include "Fuzz.h"
#include "markup/WebArchiveText.h"
#include "platform/base/Log.h"

using namespace caddis;

static void checkFrames(const WebArchive& root, const WebArchive& archive)
{
    for (const WebResource& resource : archive.subresources())
        INVARIANT(subresourceForURL(root, resource.url())->url() == resource.url());
    for (const WebArchive& frame : archive.subframeArchives()) {
        INVARIANT(baseURL(*subArchiveForURL(root, baseURL(frame))) == baseURL(frame));
        checkFrames(root, frame);
    }
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    setLogSink([](const String&) {}); // Encodings that nobody knows.
    if (const auto archive
        = WebArchive::initWithData(Data::copyOf({ reinterpret_cast<const char*>(data), size }))) {
        checkFrames(*archive, *archive);
        const ArchiveText found = searchableTextAndSource(*archive);
        INVARIANT(found.text->isEmpty() || found.text->view().starts_with(u"\n\n"));
        INVARIANT(found.source == documentSource(archive->mainResource()));
    }
    return 0;
}
