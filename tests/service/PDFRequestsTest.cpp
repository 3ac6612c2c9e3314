#include "service/PDFRequests.h"

#include "service/CaddisHelper.h"
#include "support/PDFBuilder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

PDFBuilder onePage()
{
    PDFBuilder builder;
    builder.page("BT /F1 12 Tf 72 700 Td (text) Tj ET", "/MediaBox [0 0 612 792.5]");
    builder.info("/Title (A title)");
    return builder;
}

TEST(PDFRequests, APDFGivesItsTextPagesAndAttributes)
{
    const auto reply = _attributedStringWithPDF(false, onePage().data(), std::nullopt, PageSize::Wanted);
    ASSERT_TRUE(reply);
    EXPECT_EQ(*reply,
        (Dictionary { { u"String"_s, u"text\n"_s }, { u"PageCount"_s, 1 }, { u"Title"_s, u"A title"_s },
            { u"Size"_s, u"{612, 792.5}"_s }, { u"PixelSize"_s, u"{612, 792.5}"_s },
            { u"Alpha"_s, false } }));
    CaddisHelper helper;
    EXPECT_EQ(helper.attributedStringWithPDF(false, Value(onePage().data()))->count(), 3U) << "no size";
}

TEST(PDFRequests, ADocumentWithoutPagesHasNoSize)
{
    const auto reply = _attributedStringWithPDF(false, PDFBuilder().data(), u"/a.pdf"_s, PageSize::Wanted);
    EXPECT_EQ(reply, (Dictionary { { u"PageCount"_s, 0 } }));
}

TEST(PDFRequests, WhatIsNoPDFGivesNothing)
{
    CaddisHelper helper;
    EXPECT_EQ(helper.attributedStringWithPDF(false, std::nullopt), std::nullopt);
    EXPECT_EQ(helper.attributedStringWithPDF(false, Value(u"/a/path.pdf"_s)), std::nullopt);
    EXPECT_EQ(helper.attributedStringWithPDF(true, Value(Data::copyOf("none"))), std::nullopt);
}

} // namespace
} // namespace caddis
