// What the desktop's own files say: key files, icon themes, the shared thumbnail cache.

#include "platform/preview/IconTheme.h"
#include "platform/preview/MD5.h"
#include "platform/preview/MIMEIcons.h"
#include "platform/preview/ThumbnailCache.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace caddis {
namespace {

TEST(KeyFile, KeysStandInGroups)
{
    const KeyFile file(
        "Lost=1\n[One]\n# Exec=no\nExec = a b = c\r\nMimeType=a/b;;c/d;\n[Two]\nExec=2\nExec=3");
    EXPECT_EQ(file.value("One", "Exec"), "a b = c");
    EXPECT_EQ(file.list("One", "MimeType", ';'), (std::vector<std::string_view> { "a/b", "c/d" }));
    EXPECT_EQ(file.value("Two", "Exec"), "3");
    EXPECT_EQ(file.number("Two", "Exec"), 3);
    EXPECT_FALSE(file.value("Three", "Exec") || file.value("One", "Lost") || file.value("", "Lost"));
}

// RFC 1321, A.5.
TEST(MD5, IsTheDigestOfTheStandard)
{
    EXPECT_EQ(MD5(""), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(MD5("message digest"), "f96b697d7cb7938d525a2f31aaf161d0");
    EXPECT_EQ(MD5("12345678901234567890123456789012345678901234567890123456789012345678901234567890"),
        "57edf4a22be3c955ac49da2e2107b67a");
}

std::string chunk(const std::string& kind, const std::string& body)
{
    std::string length(4, '\0');
    for (std::size_t i = 0; i < 4; ++i)
        length[i] = static_cast<char>(body.size() >> (24 - 8 * i) & 0xFF);
    return length + kind + body + "crc!";
}

std::string textChunk(const std::string& keyword, const std::string& text)
{
    return chunk("tEXt", keyword + std::string(1, '\0') + text);
}

const std::string pngSignature = "\x89PNG\r\n\x1A\n";

TEST(ThumbnailCache, TextsOfAPNGAreFoundByTheirKeyword)
{
    const auto png = [](const std::string& chunks) { return Data::copyOf(pngSignature + chunks); };
    const std::string chunks = chunk("IHDR", "1234567890123") + textChunk("Thumb::URIs", "no")
        + textChunk("Thumb::URI", "file:///a");
    EXPECT_EQ(textInPNG(png(chunks), "Thumb::URI"), "file:///a");
    EXPECT_FALSE(textInPNG(png(chunks), "Thumb::MTime"));
    EXPECT_FALSE(textInPNG(png(chunks.substr(0, chunks.size() - 6)), "Thumb::URI")) << "cut short";
    EXPECT_FALSE(textInPNG(png("\xFF\xFF\xFF\xFFtEXt"), "Thumb::URI"));
    EXPECT_FALSE(textInPNG(Data::copyOf(chunks), "Thumb::URI"));
}

TEST(ThumbnailCache, AThumbnailCountsForTheFileAndTheStateThatItWasMadeOf)
{
    const TemporaryFolder folder;
    const String document = folder.write("a;b c.xyz", "document");
    struct stat status = {};
    ASSERT_EQ(stat(document.utf8().c_str(), &status), 0);
    const std::string uri = "file://" + folder.path().string() + "/a%3Bb%20c.xyz";
    const auto put = [&](const std::string& bucket, const std::string& name, long time) {
        folder.write("thumbnails/" + bucket + "/" + MD5(uri) + ".png",
            pngSignature + textChunk("Thumb::URI", name) + textChunk("Thumb::MTime", std::to_string(time)));
    };
    const String cache = folder.path("");
    EXPECT_FALSE(cachedThumbnail(cache, document, 64));
    put("large", uri, status.st_mtim.tv_sec);
    EXPECT_TRUE(cachedThumbnail(cache, document, 64)) << "a larger one serves";
    EXPECT_TRUE(cachedThumbnail(cache, document, 256));
    EXPECT_FALSE(cachedThumbnail(cache, document, 257));
    put("large", uri, status.st_mtim.tv_sec - 1);
    EXPECT_FALSE(cachedThumbnail(cache, document, 64)) << "the file has changed";
    put("large", uri + "x", status.st_mtim.tv_sec);
    EXPECT_FALSE(cachedThumbnail(cache, document, 64)) << "another file's";
    put("xx-large", uri, status.st_mtim.tv_sec);
    EXPECT_TRUE(cachedThumbnail(cache, document, 5000)) << "the largest there is";
}

TEST(IconTheme, TheIconClosestInSizeComesFromTheFirstThemeThatHasIt)
{
    const TemporaryFolder folder;
    const auto theme = [&](const std::string& name, const std::string& inherits) {
        folder.write("icons/" + name + "/index.theme",
            "[Icon Theme]\nInherits=" + inherits
                + "\nDirectories=16/m,64/m,any/m\n"
                  "[16/m]\nSize=16\n[64/m]\nSize=32\nScale=2\n[any/m]\nSize=16\nType=Scalable\n");
    };
    theme("Mine", "Other,Mine");
    theme("Other", "Mine");
    theme("hicolor", "");
    const auto icon = [&](const std::string& name) { return folder.write("icons/" + name, ""); };
    const String small = icon("Mine/16/m/a.png");
    const String large = icon("Mine/64/m/a.png");
    const String drawn = icon("Mine/any/m/a.svg");
    const String inherited = icon("Other/16/m/b.png");
    const String last = icon("hicolor/16/m/c.png");
    const std::vector<String> folders { folder.path("none"), folder.path("") };
    const IconTheme icons(folders, "Mine");
    EXPECT_EQ(icons.pathOfIcon("a", 10), small);
    EXPECT_EQ(icons.pathOfIcon("a", 17), large);
    EXPECT_EQ(icons.pathOfIcon("a", 65), drawn);
    EXPECT_EQ(icons.pathOfIcon("b", 65), inherited) << "too small is better than none";
    EXPECT_EQ(icons.pathOfIcon("c", 16), last);
    EXPECT_FALSE(icons.pathOfIcon("d", 16) || IconTheme(folders, "Missing").pathOfIcon("a", 16));
}

TEST(MIMEIcons, NamesGoFromTheTypeToItsKind)
{
    const TemporaryFolder folder;
    folder.write("mime/generic-icons", "application/pdf:x-office-document\nbroken\n");
    folder.write("mime/icons", "text/x-diary:diary\n");
    const MIMEIcons icons(std::vector { folder.path("") });
    using Names = std::vector<std::string>;
    EXPECT_EQ(icons.namesForType(u"application/pdf"_s),
        (Names { "application-pdf", "x-office-document", "application-x-generic", "text-x-generic" }));
    EXPECT_EQ(icons.namesForType(u"text/x-diary"_s),
        (Names { "diary", "text-x-diary", "text-x-generic", "text-x-generic" }));
    EXPECT_EQ(icons.namesForType(u"inode/directory"_s).back(), "folder");
}

} // namespace
} // namespace caddis
