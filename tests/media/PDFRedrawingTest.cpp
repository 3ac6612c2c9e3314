#include "media/PDFRedrawing.h"

#include "media/ExtendedPDF.h"
#include "media/PDFText.h"
#include "support/OtherPlatformVersion.h"
#include "support/PDFBuilder.h"
#include "support/Text.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace caddis {
namespace {

PDFBuilder withLinks()
{
    PDFBuilder builder;
    builder.info("/Title (Kept) /Author <FEFF4E2D> /Keywords (a, b) /Producer (Somebody)");
    builder.page("BT /F1 12 Tf 72 400 Td (first) Tj ET",
        "/MediaBox [10 10 400 500] /Annots [<< /Type /Annot /Subtype /Link /Rect [0 0 9 9] /Dest (second) "
        "/AP << >> >> "
        "<< /Subtype /Link /A << /S /URI /URI (http://example.org/) >> /P 9 0 R >>]");
    const int second = builder.page("BT /F1 12 Tf 72 700 Td (second) Tj ET");
    builder.catalog(
        "/Names << /Dests << /Names [(second) [" + PDFBuilder::reference(second) + " /XYZ 1 2 null]] >> >>");
    return builder;
}

Data fixed(const PDFBuilder& builder)
{
    const OtherPlatformVersion version(1349.25, OperatingSystemVersion { 10, 12, 2 });
    return fixedDataRepresentation(*PDFDocument::initWithData(builder.data()));
}

bool isRedrawn(const PDFBuilder& builder) { return !(fixed(builder) == builder.data()); }

TEST(PDFRedrawing, OnlyReleasesWithTheFaultRedraw)
{
    const auto document = PDFDocument::initWithData(withLinks().data());
    const Data plain = document->dataRepresentation();
    const auto isPlain = [&](double foundation, std::optional<OperatingSystemVersion> system) {
        const OtherPlatformVersion version(foundation, system);
        return fixedDataRepresentation(*document) == plain;
    };
    EXPECT_TRUE(fixedDataRepresentation(*document) == plain) << "this release";
    EXPECT_TRUE(isPlain(1349.2, OperatingSystemVersion { 10, 12, 2 }));
    EXPECT_FALSE(isPlain(1349.25, OperatingSystemVersion { 10, 12, 2 }));
    EXPECT_TRUE(isPlain(1349.25, OperatingSystemVersion { 10, 12, 3 }));
    EXPECT_FALSE(isPlain(1349.25, std::nullopt));
}

TEST(PDFRedrawing, ARedrawnDocumentKeepsTextLinksAndAttributes)
{
    const auto redrawn = PDFDocument::initWithData(fixed(withLinks()));
    ASSERT_NE(redrawn, nullptr);
    EXPECT_EQ(fixedAndNormalizedString(*redrawn), u"first\nsecond\n"_s);
    EXPECT_EQ(redrawn->pageAtIndex(0)->boundsForBox(PDFDisplayBox::Media), (Rect { 10, 10, 390, 490 }));
    const Dictionary attributes = redrawn->documentAttributes();
    EXPECT_EQ(attributes.stringForKey(u"Title"), u"Kept"_s);
    EXPECT_EQ(attributes.stringForKey(u"Author"), u"中"_s);
    EXPECT_EQ(attributes.find(u"Keywords")->as<Array>()->size(), 2U);
    EXPECT_EQ(attributes.find(u"Producer"), nullptr);

    const auto annotations = redrawn->pageAtIndex(0)->annotations();
    ASSERT_EQ(annotations.size(), 2U);
    EXPECT_EQ(
        annotations[0].keys, (std::vector<String> { u"/Dest"_s, u"/Rect"_s, u"/Subtype"_s, u"/Type"_s }));
    EXPECT_EQ(annotations[1].keys, (std::vector<String> { u"/A"_s, u"/Subtype"_s }));
}

TEST(PDFRedrawing, WhatWouldLoseByItIsNotRedrawn)
{
    EXPECT_TRUE(isRedrawn(withLinks()));
    EXPECT_FALSE(isRedrawn(PDFBuilder())) << "no pages";
    PDFBuilder rotated;
    rotated.page("", "/Rotate 90");
    EXPECT_FALSE(isRedrawn(rotated));
    PDFBuilder note;
    note.page("", "/Annots [<< /Subtype /Text >>]");
    EXPECT_FALSE(isRedrawn(note));
    PDFBuilder outline;
    outline.page("");
    outline.object("<< /Title (x) >>");
    outline.catalog("/Outlines << /First 9 0 R >>");
    EXPECT_FALSE(isRedrawn(outline));
}

TEST(PDFRedrawing, OptionsEncryptAndRedraw)
{
    const auto document = PDFDocument::initWithData(withLinks().data());
    const auto written = [&](const Dictionary& options) {
        return PDFDocument::initWithData(*fixedDataRepresentationWithOptions(*document, options));
    };
    EXPECT_TRUE(written({})->dataRepresentation() == document->dataRepresentation());
    EXPECT_FALSE(written({ { u"Redraw"_s, true } })->dataRepresentation() == document->dataRepresentation());
    const auto locked = written({ { u"PDFDocumentUserPasswordOption"_s, u"geheim ä"_s } });
    EXPECT_TRUE(locked->isLocked());
    EXPECT_EQ(locked->pageCount(), 0U);
    const auto open = written({ { u"PDFDocumentOwnerPasswordOption"_s, u"mine"_s } });
    EXPECT_FALSE(open->isLocked());
    EXPECT_EQ(fixedAndNormalizedString(*open), u"first\nsecond\n"_s);
}

TEST(PDFRedrawing, AnAnnotationThatIsOnlyItsAppearanceGoes)
{
    PDFBuilder builder;
    builder.page("", "/Annots [<< /AP << >> >> << /AP << >> /Rect [0 0 1 1] >>]");
    const auto document = PDFDocument::initWithData(builder.data());
    const auto context = PDFContext::create({ 0, 0, 100, 100 }, {});
    _drawToPDFContext(*document, *context);
    const auto data = context->close();
    ASSERT_TRUE(data);
    const auto annotations = PDFDocument::initWithData(*data)->pageAtIndex(0)->annotations();
    ASSERT_EQ(annotations.size(), 1U);
    EXPECT_EQ(annotations[0].keys, std::vector<String> { u"/Rect"_s });
}

TEST(PDFRedrawing, APageIsADocumentOfItsOwnAndAnImage)
{
    const auto document = PDFDocument::initWithData(withLinks().data());
    const auto image = imageRepresentation(*document->pageAtIndex(0));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size(), (Size { 390, 490 }));
    const auto single = PDFDocument::initWithData(image->PDFRepresentation());
    EXPECT_EQ(single->pageCount(), 1U);
    EXPECT_EQ(fixedAndNormalizedString(*single), u"first\n"_s);
    EXPECT_FALSE(PDFImageRep::imageRepWithData(Data::copyOf("none")));
}

TEST(PDFRedrawing, AContextIsMovedToThePagesBox)
{
    PDFBuilder builder;
    builder.page("BT /F1 12 Tf 20 30 Td (x) Tj ET", "/MediaBox [10 20 110 220] /Rotate 90");
    const auto page = PDFDocument::initWithData(builder.data())->pageAtIndex(0);
    const auto context = PDFContext::create({ 0, 0, 200, 100 }, {});
    context->beginPage({ { 0, 0, 200, 100 }, {} });
    willDrawToContext(*page, *context, PDFDisplayBox::Media);
    context->drawPDFPage(*page);
    didDrawToContext(*page, *context);
    context->endPage();
    const auto drawn = PDFDocument::initWithData(*context->close());
    EXPECT_EQ(drawn->pageAtIndex(0)->string(), u"x"_s) << "inside the new page";
}

TEST(ExtendedPDF, PagesAreExtendedOnlyOnOlderReleases)
{
    const auto document = ExtendedPDFDocument::initWithData(withLinks().data());
    const auto isExtended = [&](double foundation) {
        const OtherPlatformVersion version(foundation);
        return dynamic_cast<ExtendedPDFPage*>(document->pageAtIndex(0).get()) != nullptr;
    };
    EXPECT_FALSE(isExtended(FoundationVersion));
    EXPECT_FALSE(isExtended(1300));
    EXPECT_TRUE(isExtended(1299.9)) << "rounded down";
    EXPECT_TRUE(isExtended(1000));
    EXPECT_EQ(ExtendedPDFDocument::initWithData(Data::copyOf("none")), nullptr);
}

TEST(ExtendedPDF, DrawingWaitsForTheLockFromRelease1151_16On)
{
    const auto drawsWhileLocked = [](double foundation) {
        const OtherPlatformVersion version(foundation);
        const auto page = ExtendedPDFDocument::initWithData(withLinks().data())->pageAtIndex(0);
        std::unique_lock lock(ExtendedPDFPage::pageLock());
        std::atomic<bool> drawn = false;
        std::thread other([&] { drawn = page->raster({ .pixelsWide = 4, .pixelsHigh = 4 }).has_value(); });
        for (int wait = 0; wait < 100 && !drawn && foundation < 1151.16; ++wait)
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        const bool before = drawn;
        lock.unlock();
        other.join();
        EXPECT_TRUE(drawn);
        return before;
    };
    EXPECT_FALSE(drawsWhileLocked(1151.16));
    EXPECT_TRUE(drawsWhileLocked(1151.15));
}

} // namespace
} // namespace caddis
