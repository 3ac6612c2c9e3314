// The lines of cards and calendars.
//
// Invariants: what all lines hold is no longer than the text; a name has no line end; neither resolving the
// escapes of a value nor cutting it into parts makes it longer.

#include "Fuzz.h"
#include "bundles/Cards/ContentLines.h"

using namespace caddis::bundles;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::size_t total = 0;
    const auto check = [&](const ContentLine& line) {
        total += line.name.size() + line.parameters.size() + line.value.size();
        INVARIANT(line.name.find('\n') == line.name.npos);
        INVARIANT(unescaped(line.value).size() <= line.value.size());
        std::size_t length = 0;
        for (std::string_view rest = line.value; !rest.empty();)
            length += takePart(rest, ';').size() + 1;
        INVARIANT(length <= line.value.size() + 1);
        return true;
    };
    readContentLines({ reinterpret_cast<const char*>(data), size }, check);
    INVARIANT(total <= size);
    return 0;
}
