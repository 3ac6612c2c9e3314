#pragma once

#include "platform/base/Range.h"
#include "platform/base/String.h"

#include <vector>

/// Comparing and searching texts by the attributes that `considering` and `ignoring` set.
namespace caddis::applescript {

/// Which differences between texts count.
enum ConsiderAttribute : unsigned {
    ConsiderCase = 1,
    ConsiderDiacriticals = 2,
    ConsiderExpansion = 4,
    ConsiderHyphens = 8,
    ConsiderPunctuation = 16,
    ConsiderWhiteSpace = 32,
    ConsiderNumericStrings = 64,
    DefaultAttributes
    = ConsiderDiacriticals | ConsiderExpansion | ConsiderHyphens | ConsiderPunctuation | ConsiderWhiteSpace,
};

/// The attributes of the script that runs on this thread.
unsigned& currentAttributes();

/// Negative, 0 or positive. Order is that of the root collation.
int compareTexts(const String& left, const String& right);
bool textsAreEqual(const String& left, const String& right);

bool textContains(const String& text, const String& part);
bool textStartsWith(const String& text, const String& part);
bool textEndsWith(const String& text, const String& part);

struct FoundRange : Range {
    explicit operator bool() const { return isFound(); }
};

/// Finds the places of several texts from left to right; at one place the longest wins.
class TextSearch {
public:
    TextSearch(const String& text, const std::vector<String>& wanted);

    /// In units of the original text; not found when there are no more.
    FoundRange next();

private:
    void fold(const String& text);

    std::u16string m_folded;
    std::vector<std::uint32_t>
        m_origin; ///< the original index of each folded unit, and the end; empty: the same
    std::vector<std::u16string> m_wanted;
    std::size_t m_at = 0;
};

} // namespace caddis::applescript
