// RTF to text and back.
//
// Invariants: those of RichText.h; what is written is RTF again, and a text that went through it once is the
// same when it goes through it again.

#include "RichText.h"
#include "platform/richtext/RTF.h"

using namespace caddis;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto read = attributedStringWithRTF(Data::copyOf({ reinterpret_cast<const char*>(data), size }));
    if (!read)
        return 0;
    checkText(*read);
    const auto once = attributedStringWithRTF(RTFFromString(*read, read->documentAttributes));
    INVARIANT(once);
    checkText(*once);
    const auto twice = attributedStringWithRTF(RTFFromString(*once, once->documentAttributes));
    INVARIANT(twice && twice->string() == once->string());
    return 0;
}
