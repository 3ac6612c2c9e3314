// A text pack of any bytes, and one whose text, under a name of any kind, is these bytes.
//
// Invariants: a pack that unpacks to a folder with a text has a text; nothing
// stays behind in the temporary folder; a text in a well-formed pack is what the plain-text reader makes of
// it.

#include "Fuzz.h"
#include "markup/TextBundle.h"
#include "platform/files/FileSystem.h"
#include "platform/files/TemporaryFile.h"
#include "support/TemporaryFolder.h"
#include "support/ZipBuilder.h"

using namespace caddis;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const TemporaryFolder folder;
    const std::string bytes(reinterpret_cast<const char*>(data), size);

    const String hostile = folder.write("hostile.textpack", bytes);
    const auto text = stringWithContentsOfTextBundleFile(hostile, NSStringEncoding::UTF8);
    const String unpacked = folder.path("out.textbundle");
    INVARIANT(decompressTextBundleFile(hostile, unpacked) == FileSystem::exists(unpacked));
    INVARIANT(text || !stringWithContentsOfTextBundleFile(unpacked, NSStringEncoding::UTF8));
    FileSystem::removeItem(unpacked);

    const String good
        = folder.write("good.textpack", ZipBuilder().add("a.textbundle/text.md", bytes).bytes());
    const auto same = stringWithContentsOfTextBundleFile(good, NSStringEncoding::UTF8);
    INVARIANT(same && same->text == plainTextOfData(bytes, NSStringEncoding::UTF8).text);
    INVARIANT(FileSystem::contentsOfDirectory(*temporaryDirectory())->empty());
    return 0;
}
