// RTF to text and back.
//
// Invariants: runs begin at 0, grow, and lie in the text; what is written is RTF again, and a text that went
// through it once keeps its characters when it goes through it again.

#include "Fuzz.h"
#include "platform/richtext/RTF.h"

namespace {

void checkRuns(const caddis::AttributedString& text)
{
    std::size_t end = 0;
    for (const auto& run : text.runs()) {
        INVARIANT(run.location >= end && run.location < text.string().length());
        INVARIANT(run.style < text.styles().size());
        end = run.location + 1;
    }
    INVARIANT(text.string().isEmpty() || (!text.runs().empty() && text.runs()[0].location == 0));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace caddis;
    const auto read = attributedStringWithRTF(Data::copyOf({ reinterpret_cast<const char*>(data), size }));
    if (!read)
        return 0;
    checkRuns(*read);
    const auto once = attributedStringWithRTF(RTFFromString(*read, read->documentAttributes));
    INVARIANT(once);
    checkRuns(*once);
    const auto twice = attributedStringWithRTF(RTFFromString(*once, once->documentAttributes));
    INVARIANT(twice && twice->string() == once->string());
    return 0;
}
