#include "text/DocumentDate.h"

#include "support/DateText.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

class DocumentDate : public testing::Test {
protected:
    static std::string find(std::u16string_view text, bool validatingSeparation = false)
    {
        return inUTC(documentDateByValidatingSeparation(String(text), validatingSeparation)).substr(0, 10);
    }

    DefaultZone m_zone { TimeZone() };
};

TEST_F(DocumentDate, FindsDayMonthYearInEitherOrder)
{
    EXPECT_EQ(find(u"Dear Sir, Berlin, 23 March 2004, we regret"), "2004-03-23");
    EXPECT_EQ(find(u"Issued March 23, 2004."), "2004-03-23");
    EXPECT_EQ(find(u"am 23. März 2004"), "2004-03-23");
    EXPECT_EQ(find(u"on the 2nd Sept 2004"), "2004-09-02");
    EXPECT_EQ(find(u"May 22ND 2004"), "2004-05-22");
}

TEST_F(DocumentDate, ExchangesNumbersWhenOnlyTheSecondCanBeTheDay)
{
    EXPECT_EQ(find(u"05 12 2004"), "2004-12-05");
    EXPECT_EQ(find(u"12 31 2004"), "2004-12-31");
    EXPECT_EQ(find(u"31 31 2004"), "nil");
    EXPECT_EQ(find(u"30 02 2004"), "nil");
}

TEST_F(DocumentDate, SeparatesWordsAtPunctuationOnlyWhenAsked)
{
    EXPECT_EQ(find(u"Rev. 12.3.2004", true), "2004-03-12");
    EXPECT_EQ(find(u"Rev. 12.3.2004", false), "nil");
    EXPECT_EQ(find(u"5 March 2004", true), "2004-03-05");
    EXPECT_EQ(find(u"5 March 2004", false), "nil") << "a day has two digits then";
}

TEST_F(DocumentDate, BreaksAtOtherWordsAndGoesOn)
{
    EXPECT_EQ(find(u"23 March of 2004, and 24 April 2005"), "2005-04-24");
    EXPECT_EQ(find(u"23 March 1949, 24 April 2051, 25 May 2050"), "2050-05-25");
    EXPECT_EQ(find(u"Page 17 23 03 2004"), "2004-03-23");
    EXPECT_EQ(find(u"March 23 24 2004"), "nil");
    EXPECT_EQ(find(u"23 March April 2004"), "nil");
    EXPECT_EQ(find(u""), "nil");
}

TEST_F(DocumentDate, RepairsZerosInMonths)
{
    EXPECT_EQ(find(u"23 0CT0BER 2004"), "2004-10-23");
    EXPECT_EQ(find(u"23 N0v 2004"), "2004-11-23");
    EXPECT_EQ(find(u"23 0kt 2004"), "2004-10-23");
    EXPECT_EQ(find(u"23 Octoberfest 2004"), "nil");
}

} // namespace
} // namespace caddis
