#include "media/PDFText.h"

#include "platform/base/Exception.h"
#include "platform/base/LeftOut.h"
#include "support/LogCapture.h"
#include "support/PDFBuilder.h"
#include "support/Text.h"

#include <gtest/gtest.h>
#include <thread>

namespace caddis {
namespace {

// A document some of whose pages behave oddly, as `Page` says.
template <typename Page> class OddDocument : public PDFDocument {
public:
    explicit OddDocument(const PDFBuilder& builder)
        : PDFDocument(*open(builder.data()))
    {
    }

protected:
    PageClass* pageClass() const override { return makePage<Page>; }
};

class ThirdPageRaises : public PDFPage {
public:
    using PDFPage::PDFPage;
    std::optional<String> string(PDFDeadline deadline) const override
    {
        if (index() == 2)
            throw Exception(u"PageError"_s, u"broken"_s);
        return PDFPage::string(deadline);
    }
    String description() const override { throw Exception(u"PageError"_s, u"broken"_s); }
};

// The second page takes 300 ms.
class SecondPageIsSlow : public PDFPage {
public:
    using PDFPage::PDFPage;
    std::optional<String> string(PDFDeadline) const override
    {
        if (index() == 1)
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
        return u"slow"_s;
    }
};

PDFBuilder pagesWithText(int count)
{
    PDFBuilder builder;
    for (int page = 1; page <= count; ++page)
        builder.page("BT /F1 12 Tf 72 700 Td (page " + std::to_string(page) + ") Tj ET");
    return builder;
}

TEST(PDFText, PagesFollowEachOtherAndThoseWithoutTextLeaveNothing)
{
    PDFBuilder builder = pagesWithText(1);
    builder.page("0 0 10 10 re f");
    builder.page("BT /F1 12 Tf 72 700 Td (soft) Tj /Span << /ActualText <FEFF00AD> >> BDC (-) Tj EMC 0 -14 "
                 "Td (ened a\\001b) Tj ET");
    const auto document = PDFDocument::initWithData(builder.data());
    EXPECT_EQ(fixedAndNormalizedString(*document), u"page 1\nsoftened ab\n"_s);
    EXPECT_EQ(fixedAndNormalizedString(*document->pageAtIndex(2)), u"softened ab"_s);
    EXPECT_EQ(fixedAndNormalizedString(*document->pageAtIndex(1)), std::nullopt);
    EXPECT_EQ(fixedAndNormalizedString(*PDFDocument::initWithData(PDFBuilder().data())), std::nullopt);
    PDFBuilder blank;
    blank.page("");
    EXPECT_EQ(fixedAndNormalizedString(*PDFDocument::initWithData(blank.data())), String());
}

TEST(PDFText, APageThatRaisesIsPassedOverInSilence)
{
    const LogCapture log;
    const OddDocument<ThirdPageRaises> document(pagesWithText(4));
    EXPECT_EQ(fixedAndNormalizedString(document), u"page 1\npage 2\npage 4\n"_s);
    EXPECT_EQ(fixedAndNormalizedString(*document.pageAtIndex(2)), std::nullopt);
    EXPECT_NO_THROW(fixPage(*document.pageAtIndex(0)));
    EXPECT_TRUE(log.lines().empty());
}

TEST(PDFText, ThePagesOwnTimeCountsTwice)
{
    const OddDocument<SecondPageIsSlow> document(pagesWithText(5));
    const auto pages
        = [&](double timeout) { return fixedAndNormalizedString(document, timeout)->length() / 5; };
    EXPECT_EQ(pages(1e-9), 1U) << "the first page is always read";
    EXPECT_EQ(pages(0.5), 2U) << "300 ms since the start and 300 ms of the page's own";
    EXPECT_FALSE(takeLeftOut().empty());
    EXPECT_EQ(pages(10), 5U);
    EXPECT_TRUE(takeLeftOut().empty());
    EXPECT_EQ(pages(0), 5U);
}

TEST(PDFText, OnlyTheFirstHundredLabelsCount)
{
    PDFBuilder builder = pagesWithText(250);
    builder.catalog(
        "/PageLabels << /Nums [0 << /S /D >> 179 << /P (the longest label) >> 180 << /S /D >>] >>");
    EXPECT_EQ(longestLabel(*PDFDocument::initWithData(builder.data())), u"250"_s);
    PDFBuilder roman = pagesWithText(9);
    roman.catalog("/PageLabels << /Nums [0 << /S /r >>] >>");
    EXPECT_EQ(longestLabel(*PDFDocument::initWithData(roman.data())), u"viii"_s);
    EXPECT_EQ(longestLabel(*PDFDocument::initWithData(PDFBuilder().data())), std::nullopt);
}

} // namespace
} // namespace caddis
