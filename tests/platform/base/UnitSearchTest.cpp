#include "platform/base/UnitSearch.h"

#include <gtest/gtest.h>

#include <string>

namespace caddis {
namespace {

// Every place of the wanted unit, in texts around the width of a block, from every start.
TEST(UnitSearch, FindsAUnitAtEveryPlaceFromEveryStart)
{
    for (std::size_t length = 0; length <= 20; ++length) {
        for (std::size_t place = 0; place <= length; ++place) {
            std::u16string text(length, u'x');
            if (place < length)
                text[place] = u'&';
            for (std::size_t from = 0; from <= length; ++from) {
                const std::size_t expected = from <= place ? place : length;
                ASSERT_EQ((indexOfUnit<u'<', u'&'>(text, from)), expected);
                if (place < length)
                    text[place] = u'\u0080';
                ASSERT_EQ(indexOfNonAscii(text, from), expected);
                if (place < length)
                    text[place] = u'&';
            }
        }
    }
}

TEST(UnitSearch, TellsUnitsApartThatShareAByte)
{
    const std::u16string similar = u"\u2600\u0126\u2626\u26FF&";
    EXPECT_EQ(indexOfUnit<u'&'>(similar, 0), 4U);
    EXPECT_EQ(indexOfUnit<u'\0'>(similar, 0), 5U) << "nothing behind the end counts";
    const std::u16string edges = u"\u007F~\uFFFF";
    EXPECT_EQ(indexOfNonAscii(edges, 0), 2U);
}

} // namespace
} // namespace caddis
