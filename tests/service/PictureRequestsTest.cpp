// The replies, key by key and in order, as the running helper gives them.

#include "client/HelperProxy.h"
#include "client/HelperTask.h"
#include "client/OstraImExport.h"
#include "platform/files/FileSystem.h"
#include "support/EPUBBuilder.h"
#include "support/JPEGBuilder.h"
#include "support/PDFBuilder.h"
#include "support/PrivateRuntimeDirectory.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

const std::string drawing = "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 30 40\n0 0 9 9 rectfill showpage\n";

std::string greyPhotograph(unsigned wide, unsigned high, const JPEGOptions& options = {})
{
    return jpegFile(
        wide, high, [](unsigned, unsigned) { return 0x808080U; }, options);
}

// Of this process and of the helpers that it launches.
class ScopedVariable {
public:
    ScopedVariable(const char* name, const std::string& value)
        : m_name(name)
    {
        setenv(name, value.c_str(), 1);
    }
    ~ScopedVariable() { unsetenv(m_name); }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    const char* m_name;
};

class PictureRequests : public testing::Test {
protected:
    PictureRequests()
        : m_task(HelperTask::initWithPath(String::fromLatin1(CADDIS_HELPER_PROGRAM),
            String(HelperServiceName), &OstraImExport, 15, QualityOfService::Default))
    {
    }

    HelperProxy helper() { return HelperProxy(*m_task->proxy()); }

    /// The reply as "Key value, Key value"; thumbnails by their kind and the size in their header.
    std::string reply(const String& path, const PictureRequest& request)
    {
        const auto reply = helper().imageWithContentsOfFile(path, request);
        std::string text = reply ? "" : "nil";
        for (const auto& [key, value] : reply ? *reply : Dictionary())
            text += (text.empty() ? "" : ", ") + key.utf8() + ' ' + shown(value);
        return text;
    }

    /// The preview's kind and size, or "nil".
    std::string preview(const String& path, std::int64_t size, bool asIcon)
    {
        const auto data = helper().previewForFile(path, size, asIcon);
        return data ? shownPicture(*data) : "nil";
    }

    TemporaryFolder m_folder;

private:
    static std::string shown(const Value& value)
    {
        if (const auto* const text = value.as<String>())
            return text->utf8();
        if (const auto* const flag = value.as<bool>())
            return *flag ? "yes" : "no";
        if (const auto* const number = value.as<std::int64_t>())
            return std::to_string(*number);
        const auto* const data = value.as<Data>();
        return data ? "<" + shownPicture(*data) + ">" : "{}";
    }

    // "TIFF 20x50": the first directory's entries 256 and 257 are the sides (TIFF 6.0).
    static std::string shownPicture(const Data& tiff)
    {
        const std::string_view bytes = tiff.chars();
        if (!bytes.starts_with("II*"))
            return "no TIFF";
        const auto number = [&](std::size_t place, std::size_t length) {
            std::size_t value = 0;
            for (std::size_t i = length; i-- > 0;)
                value = value << 8 | static_cast<std::uint8_t>(bytes.at(place + i));
            return value;
        };
        const std::size_t directory = number(4, 4);
        const auto side = [&](std::size_t tag) {
            for (std::size_t entry = directory + 2; entry < directory + 2 + number(directory, 2) * 12;
                 entry += 12)
                if (number(entry, 2) == tag)
                    return std::to_string(number(entry + 8, number(entry + 2, 2) == 3 ? 2 : 4));
            return std::string("?");
        };
        return "TIFF " + side(256) + "x" + side(257);
    }

    PrivateRuntimeDirectory m_directory;
    std::unique_ptr<HelperTask> m_task;
};

TEST_F(PictureRequests, APhotographTakesTheFastRouteUnlessItsTextIsWanted)
{
    const String path = m_folder.write("a.jpg", greyPhotograph(100, 40, { .orientation = 6 }));
    EXPECT_EQ(reply(path, { .maxThumbnailSize = 50 }), "Properties {}, Thumbnail <TIFF 20x50>");
    EXPECT_EQ(*helper()
                   .imageWithContentsOfFile(path, { .maxThumbnailSize = 50 })
                   ->find(u"Properties")
                   ->as<Dictionary>()
                   ->find(u"PixelWidth"),
        Value(100));
    EXPECT_EQ(reply(path, { .maxThumbnailSize = 50, .stringFromPDF = true }),
        "Size {40, 100}, PixelSize {40, 100}, Alpha no, Thumbnail <TIFF 20x50>");
    EXPECT_EQ(reply(path, { .maxThumbnailSize = 500 }), "Properties {}, Thumbnail <TIFF 40x100>")
        << "never enlarged";
}

// One pixel in two colours and so many frames.
std::string gif(int frames)
{
    std::string bytes("GIF89a\1\0\1\0\x80\0\0\xFF\0\0\0\xFF\0", 19);
    for (int frame = 0; frame < frames; ++frame)
        bytes += std::string("\x21\xF9\4\0\x0A\0\0\0,\0\0\0\0\1\0\1\0\0\2\2\x44\1\0", 23);
    return bytes + ';';
}

TEST_F(PictureRequests, AnAnimationIsMarkedByFramesAndTheExactSuffix)
{
    const PictureRequest request { .maxThumbnailSize = 50 };
    const std::string still = "Properties {}, Thumbnail <TIFF 1x1>";
    EXPECT_EQ(reply(m_folder.write("a.gif", gif(2)), request), still + ", Animated yes");
    EXPECT_EQ(reply(m_folder.write("a.GIF", gif(2)), request), still);
    EXPECT_EQ(reply(m_folder.write("b.gif", gif(1)), request), still);
    EXPECT_EQ(reply(m_folder.path("a.gif"), { .maxThumbnailSize = 50, .stringFromPDF = true }),
        "Size {1, 1}, PixelSize {1, 1}, Alpha no, Thumbnail <TIFF 1x1>");
}

TEST_F(PictureRequests, TheSmallPictureThatAFileCarriesIsTakenUnlessForbidden)
{
    const String path = m_folder.write(
        "a.jpg", greyPhotograph(400, 200, { .orientation = 1, .thumbnail = greyPhotograph(40, 20) }));
    EXPECT_EQ(reply(path, { .maxThumbnailSize = 100 }), "Properties {}, Thumbnail <TIFF 40x20>");
    EXPECT_EQ(reply(path, { .maxThumbnailSize = 100, .alwaysFromImage = true }),
        "Properties {}, Thumbnail <TIFF 100x50>");
}

TEST_F(PictureRequests, APDFHasSizesAThumbnailAndOnRequestItsText)
{
    PDFBuilder pdf;
    pdf.info("/Title (Notes)");
    pdf.page("BT /F1 12 Tf 20 700 Td (Hello) Tj ET", "/MediaBox [0 0 200 800]");
    pdf.page("");
    const String path = m_folder.write("a.pdf", pdf.bytes());
    EXPECT_EQ(reply(path, { .maxThumbnailSize = 400 }),
        "Size {200, 800}, PixelSize {200, 800}, Alpha yes, Thumbnail <TIFF 100x400>");
    EXPECT_EQ(reply(path, { .maxThumbnailSize = 100 }),
        "Size {200, 800}, PixelSize {200, 800}, Alpha yes, Thumbnail <TIFF 100x100>")
        << "the top square of a tall page";
    EXPECT_EQ(reply(path, { .maxThumbnailSize = 400, .stringFromPDF = true, .canUseSpotlight = true }),
        "Size {200, 800}, PixelSize {200, 800}, Alpha yes, Thumbnail <TIFF 100x400>, String Hello\n, "
        "PageCount 2, Title Notes");
}

TEST_F(PictureRequests, APDFThatCanNotBeDrawnStillHasItsText)
{
    const String path = m_folder.write("empty.pdf", PDFBuilder().bytes());
    EXPECT_EQ(reply(path, { .maxThumbnailSize = 64, .stringFromPDF = true }), "PageCount 0");
    EXPECT_EQ(reply(path, { .maxThumbnailSize = 64 }), "nil");
    const String other = m_folder.write("empty.bin", PDFBuilder().bytes());
    EXPECT_EQ(reply(other, { .maxThumbnailSize = 64, .stringFromPDF = true }), "nil") << "not by its name";
}

TEST_F(PictureRequests, PostScriptIsShownAsItsPDF)
{
    const String path = m_folder.write("a.eps", drawing);
    EXPECT_EQ(reply(path, { .maxThumbnailSize = 64 }),
        "Size {30, 40}, PixelSize {30, 40}, Alpha yes, Thumbnail <TIFF 30x40>");
    const auto withText
        = helper().imageWithContentsOfFile(path, { .maxThumbnailSize = 20, .stringFromPDF = true });
    ASSERT_TRUE(withText);
    EXPECT_EQ(*withText->find(u"PageCount"), Value(1));
    const auto converted = helper().PDFImageRepOfFile(path);
    ASSERT_TRUE(converted);
    const String pdf = m_folder.write("b.pdf", converted->chars());
    EXPECT_EQ(helper().PDFImageRepOfFile(pdf), converted) << "the file's own bytes";
}

TEST_F(PictureRequests, ABundleStandsForThePDFInIt)
{
    PDFBuilder pdf;
    pdf.page("", "/MediaBox [0 0 20 30]");
    m_folder.write("Notes.pdfd/notes.txt", "text");
    const String inside = m_folder.write("Notes.pdfd/Notes.pdf", pdf.bytes());
    const String bundle = m_folder.path("Notes.pdfd");
    EXPECT_EQ(reply(bundle, { .maxThumbnailSize = 64 }),
        "Size {20, 30}, PixelSize {20, 30}, Alpha yes, Thumbnail <TIFF 20x30>");
    EXPECT_EQ(helper().PDFImageRepOfFile(bundle), FileSystem::contentsOfFile(inside));
    m_folder.write("None.lpdf/readme", "text");
    EXPECT_EQ(reply(m_folder.path("None.lpdf"), { .maxThumbnailSize = 64, .stringFromPDF = true }), "nil");
}

TEST_F(PictureRequests, ABookIsShownByItsCover)
{
    const auto book = [&](const std::string& name, const std::string& item) {
        return m_folder.write(name,
            ZipBuilder()
                .add("META-INF/container.xml", containerDocument)
                .add("OPS/a.opf",
                    packageDocument("<metadata><meta name='cover' content='c'/></metadata><manifest>" + item
                        + "</manifest>"))
                .add("OPS/cover.jpg", greyPhotograph(60, 90))
                .bytes());
    };
    const String covered = book("a.epub", "<item id='c' href='cover.jpg' media-type='image/jpeg'/>");
    EXPECT_EQ(preview(covered, 30, false), "TIFF 20x30");
    EXPECT_EQ(preview(covered, 30, true), "TIFF 20x30");
    EXPECT_EQ(preview(book("b.epub", ""), 30, false), "nil") << "nothing else shows a book here";
    EXPECT_EQ(preview(covered, 0, false), "TIFF 1x1") << "by the rule for thumbnails";
}

TEST_F(PictureRequests, FilesOfAnyKindHaveAPreviewOrAnIcon)
{
    m_folder.write("share/icons/Adwaita/index.theme", "[Icon Theme]\nDirectories=m\n[m]\nSize=30\n");
    m_folder.write("share/icons/Adwaita/m/text-x-generic.png", greyPhotograph(30, 30));
    const ScopedVariable data("XDG_DATA_HOME", m_folder.path("share").utf8());
    const ScopedVariable config("XDG_CONFIG_HOME", m_folder.path("config").utf8());
    EXPECT_EQ(preview(m_folder.write("a.jpg", greyPhotograph(100, 40, { .orientation = 6 })), 50, false),
        "TIFF 20x50");
    const String strange = m_folder.write("a.strange", "nothing to show");
    EXPECT_EQ(preview(strange, 50, false), "nil");
    EXPECT_EQ(preview(strange, 50, true), "TIFF 30x30");
    EXPECT_EQ(preview(m_folder.path("missing"), 50, true), "nil");
}

TEST_F(PictureRequests, BrokenFilesGiveNothing)
{
    for (const auto& [name, bytes] :
        { std::pair<const char*, std::string>("a.jpg", "\xFF\xD8\xFF\xE0 broken"), { "a.gif", "GIF89a" },
            { "a.eps", "%!PS-Adobe-3.0 EPSF-3.0\nno such operator\n" }, { "a.pdf", "%PDF-1.4 nothing" },
            { "a.png", "" } }) {
        const String path = m_folder.write(name, bytes);
        EXPECT_EQ(reply(path, { .maxThumbnailSize = 64 }), "nil") << name;
        EXPECT_EQ(reply(path, { .maxThumbnailSize = 64, .stringFromPDF = true }), "nil") << name;
        EXPECT_FALSE(helper().PDFImageRepOfFile(path)) << name;
    }
    EXPECT_EQ(reply(m_folder.path("missing.jpg"), { .maxThumbnailSize = 64 }), "nil");
    EXPECT_FALSE(helper().PDFImageRepOfFile(m_folder.write("b.jpg", greyPhotograph(8, 8))));
}

} // namespace
} // namespace caddis
