// The tables that tell kinds of pictures: first byte even: the bytes behind it as a file's, else as a type.
//
// Invariants: of a file only the first 1024 bytes count, and fewer than 4 are of no kind; a type without
// exactly one slash is answered as it is, unless it is an HFS type; no extension is empty.

#include "Fuzz.h"
#include "media/ImageFileTypes.h"

#include <algorithm>

using namespace caddis;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const std::string_view rest(reinterpret_cast<const char*>(data) + 1, size - 1);
    if (data[0] % 2 == 0) {
        const auto extension = pathExtensionForData(Data::copyOf(rest));
        INVARIANT(rest.size() >= 4 || !extension);
        INVARIANT(extension == pathExtensionForData(Data::copyOf(rest.substr(0, 1024))));
        INVARIANT(!extension || !extension->isEmpty());
        return 0;
    }
    const String type = String::fromUtf8(rest);
    const auto extension = pathExtensionForType(type);
    INVARIANT(!extension || !extension->isEmpty() || type.view().ends_with(u'.'));
    const bool isHFSType = type.length() == 6 && type[0] == u'\'' && type[5] == u'\'';
    if (!type.isEmpty() && !isHFSType && std::count(type.begin(), type.end(), u'/') != 1)
        INVARIANT(extension && extension->isIdenticalTo(type));
    isImageExtension(type, type);
    return 0;
}
