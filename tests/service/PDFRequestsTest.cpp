#include "service/PDFRequests.h"

#include "platform/richtext/RTFD.h"
#include "service/CaddisHelper.h"
#include "support/OtherPlatformVersion.h"
#include "support/PDFBuilder.h"
#include "support/RichTextTrace.h"
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

AttributedString richTextOf(const PDFBuilder& builder)
{
    const auto reply = _attributedStringWithPDF(true, builder.data(), std::nullopt, PageSize::LeftOut);
    return initWithRTFD(*reply->find(u"String")->as<Data>()).value();
}

TEST(PDFRequests, RichTextHasTheFontsOfThePages)
{
    PDFBuilder builder = onePage();
    builder.fonts("/F3 << /Type /Font /Subtype /Type1 /BaseFont /Times-BoldItalic >>");
    builder.page("BT /F3 20 Tf 72 700 Td (bold ) Tj /F2 9 Tf (code) Tj ET");
    const AttributedString text = richTextOf(builder);
    EXPECT_EQ(traceOf(text), "{}text\n{Times-BoldItalic 20 b i}bold {Courier 9}code\n");
    EXPECT_FALSE(text.documentAttributes.find(DocumentAttribute::PaperSize))
        << "of the text, not of the pages";
    const OtherPlatformVersion old(1251);
    EXPECT_EQ(traceOf(richTextOf(builder)), traceOf(text)) << "made from the selection's attributed string";
}

TEST(PDFRequests, ADocumentWithoutPagesHasNoSize)
{
    const auto reply = _attributedStringWithPDF(false, PDFBuilder().data(), u"/a.pdf"_s, PageSize::Wanted);
    EXPECT_EQ(reply, (Dictionary { { u"PageCount"_s, 0 } }));
    EXPECT_EQ(_attributedStringWithPDF(true, PDFBuilder().data(), std::nullopt, PageSize::LeftOut),
        (Dictionary { { u"PageCount"_s, 0 } }));
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
