#include "platform/pdf/PDFDocument.h"

#include "platform/modules/Module.h"
#include "support/LogCapture.h"
#include "support/PDFBuilder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

TEST(Module, AMissingModuleHasNoEntriesAndOneLogLine)
{
    const LogCapture log;
    const Module missing("caddis-nothing");
    EXPECT_FALSE(missing.isOpen());
    EXPECT_EQ(missing.entry<void()>("entry"), nullptr);
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_EQ(log.lines()[0], u"Couldn't find module caddis-nothing");
}

TEST(PDFDocument, AttributesComeUnderTheirOwnKeys)
{
    PDFBuilder builder;
    builder.page("");
    builder.info(
        "/Title (Caf\\351 \\240) /Author <FEFF4E2D6587> /Subject () /Keywords (one, two words;three,)"
        " /CreationDate (D:20240131120000+01'30') /ModDate (yesterday) /Other (not this)");
    const Dictionary attributes = PDFDocument::initWithData(builder.data())->documentAttributes();
    EXPECT_EQ(attributes.stringForKey(u"Title"), u"Café €"_s) << "PDFDocEncoding";
    EXPECT_EQ(attributes.stringForKey(u"Author"), u"中文"_s);
    EXPECT_EQ(*attributes.find(u"Keywords"), Value(Array { u"one"_s, u"two words"_s, u"three"_s }));
    EXPECT_EQ(attributes.find(u"CreationDate")->as<Date>()->description(), u"2024-01-31 10:30:00 +0000");
    EXPECT_EQ(attributes.count(), 4U) << "nothing empty, nothing unreadable, nothing else";
}

TEST(PDFDocument, PagesHaveLabelsBoxesAndRotation)
{
    PDFBuilder builder;
    builder.page("", "/Rotate -90 /MediaBox [10 20 310 420] /CropBox [20 30 300 400]");
    builder.page("");
    builder.catalog("/PageLabels << /Nums [0 << /S /r /P (A-) >> 1 << /S /D /St 7 >>] >>");
    const auto document = PDFDocument::initWithData(builder.data());
    ASSERT_EQ(document->pageCount(), 2U);
    const auto page = document->pageAtIndex(0);
    EXPECT_EQ(page->label(), u"A-i");
    EXPECT_EQ(page->rotation(), 270);
    EXPECT_EQ(page->boundsForBox(PDFDisplayBox::Media), (Rect { 10, 20, 300, 400 }));
    EXPECT_EQ(page->boundsForBox(PDFDisplayBox::Trim), (Rect { 20, 30, 280, 370 }));
    EXPECT_EQ(document->pageAtIndex(1)->label(), u"7");
    EXPECT_EQ(document->pageAtIndex(2), nullptr);
}

TEST(PDFDocument, OutlineAndAnnotationsAreListed)
{
    PDFBuilder builder;
    const int second
        = builder.object("<< /Title (Second) /Parent 7 0 R /A << /S /GoTo /D (there) >> /Next 8 0 R >>");
    const int first = builder.object(
        "<< /Title (First) /First 9 0 R /Next " + PDFBuilder::reference(second) + " /Dest [1 /Fit] >>");
    ASSERT_EQ(first, 8);
    builder.object("<< /Title (Inside) /Next 9 0 R >>");
    const int root = builder.object("<< /First 8 0 R >>");
    const int page
        = builder.page("", "/Annots [<< /Subtype /Link /AP 1 >> 5 << /Subtype /Text >> << /AP 1 >>]");
    builder.catalog("/Outlines " + PDFBuilder::reference(root) + " /Dests << /there ["
        + PDFBuilder::reference(page) + " /Fit] >>");
    const auto document = PDFDocument::initWithData(builder.data());
    std::string lines;
    for (const PDFOutlineItem& item : document->outline())
        lines += std::to_string(item.level) + readable(item.label) + (item.pageIndex ? "@" : "") + " ";
    EXPECT_EQ(lines, "0First@ 1Inside 0Second@ ") << "each item once, however the lists are looped";
    const auto annotations = document->pageAtIndex(0)->annotations();
    ASSERT_EQ(annotations.size(), 3U);
    EXPECT_TRUE(annotations[0].isLink());
    EXPECT_EQ(annotations[1].index, 2U);
    EXPECT_EQ(annotations[2].keys, std::vector<String> { u"/AP"_s });
}

TEST(PDFDocument, OnlyThePasswordForReadingMayBeEmpty)
{
    PDFBuilder builder;
    builder.page("BT /F1 12 Tf 72 700 Td (secret) Tj ET");
    const auto document = PDFDocument::initWithData(builder.data());
    const auto encrypted = [&](const PDFPasswords& passwords) {
        return PDFDocument::initWithData(*document->dataRepresentationWithPasswords(passwords));
    };
    EXPECT_TRUE(encrypted({ u"reader"_s, u"owner"_s })->isLocked());
    EXPECT_TRUE(encrypted({ u"reader"_s, String() })->isLocked()) << "an empty owner password opens nothing";
    EXPECT_FALSE(encrypted({ String(), u"owner"_s })->isLocked());
    EXPECT_EQ(encrypted({ String(), String() })->pageAtIndex(0)->string(), u"secret"_s);
}

TEST(PDFDocument, DamageGivesWhatCanBeRead)
{
    PDFBuilder builder;
    builder.page("BT /F1 12 Tf 72 700 Td (still here) Tj ET");
    const std::string bytes = builder.bytes();
    const auto text = [](const std::string& damaged) {
        const auto document = PDFDocument::initWithData(Data::copyOf(damaged));
        const auto page = document ? document->pageAtIndex(0) : nullptr;
        return page ? readable(page->string().value_or(u"no text"_s)) : "nil";
    };
    std::string tableless = bytes;
    tableless.replace(tableless.find("xref"), 4, "erfx");
    EXPECT_EQ(text(tableless), "still here");
    EXPECT_EQ(text(bytes.substr(0, bytes.find("xref"))), "nil") << "no trailer";
    EXPECT_EQ(text("junk before\n" + bytes), "still here");
    EXPECT_EQ(text(std::string(2000, ' ') + bytes), "nil") << "the header is not in the first kilobyte";
    EXPECT_EQ(text(bytes.substr(0, 60)), "nil");
    EXPECT_EQ(text(""), "nil");
    EXPECT_EQ(text("no PDF at all"), "nil");
}

TEST(PDFDocument, ADocumentWithoutPagesIsOneAndLiesAboutPagesAreFound)
{
    const auto empty = PDFDocument::initWithData(PDFBuilder().data());
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(empty->pageCount(), 0U);
    PDFBuilder builder;
    builder.page("");
    std::string bytes = builder.bytes();
    bytes.replace(bytes.find("/Count 1"), 8, "/Count 9");
    const auto document = PDFDocument::initWithData(Data::copyOf(bytes));
    ASSERT_GE(document->pageCount(), 1U);
    const auto last = document->pageAtIndex(document->pageCount() - 1);
    EXPECT_EQ(last->string().has_value(), last->hasPageRef());
}

} // namespace
} // namespace caddis
