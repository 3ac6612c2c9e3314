#include "platform/documents/DocumentReader.h"

#include "support/TemporaryFolder.h"
#include "support/Text.h"
#include "support/ZipBuilder.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

std::string textOf(const TemporaryFolder& folder, std::string_view bytes)
{
    const auto text = attributedStringWithPath(folder.write("file", bytes));
    return text ? readable(text->string()) : "nil";
}

TEST(DocumentReader, GoesByContents)
{
    const TemporaryFolder folder;
    EXPECT_EQ(textOf(folder, "{\\rtf1 \\b rich}"), "rich");
    EXPECT_EQ(textOf(folder, "plain {\\rtf1}"), "plain {\\rtf1}");
    folder.write("doc.rtfd/TXT.rtf", "{\\rtf1 in a package}");
    EXPECT_EQ(attributedStringWithPath(folder.path("doc.rtfd"))->string(), u"in a package");
    EXPECT_FALSE(attributedStringWithPath(folder.path("missing")));
    folder.write("empty/file", "");
    EXPECT_FALSE(attributedStringWithPath(folder.path("empty")));
}

TEST(DocumentReader, ReadsPlainTextInItsEncoding)
{
    using namespace std::string_view_literals;
    const TemporaryFolder folder;
    EXPECT_EQ(textOf(folder, "na\xC3\xAFve"), "naïve");
    EXPECT_EQ(textOf(folder, "na\xEFve caf\xE9"), "naïve café");
    EXPECT_EQ(textOf(folder,
                  "\xFF\xFE"
                  "a\0b\0"sv),
        "ab");
    EXPECT_EQ(textOf(folder, "a\0b\x01"sv), "nil");
    const auto text = attributedStringWithPath(folder.write("file", "abc"));
    EXPECT_EQ(text->documentAttributes.stringForKey(u"DocumentType"), u"NSPlainText"_s);
    EXPECT_EQ(*text->documentAttributes.find(u"CharacterEncoding"), Value(4));
}

// Each says the same in its own way; what has no mark is told by its letters.
TEST(DocumentReader, ReadsPlainTextInEightEncodings)
{
    using namespace std::string_view_literals;
    const TemporaryFolder folder;
    const std::string_view russian = "Съешь же ещё этих мягких французских булок, да выпей чаю";
    EXPECT_EQ(textOf(folder, russian), russian) << "UTF-8";
    EXPECT_EQ(textOf(folder, "\xEF\xBB\xBF\xC3\xA9"), "é") << "UTF-8 with a mark";
    EXPECT_EQ(textOf(folder, "\xFF\xFE\xE9\0\x3D\xD8\x42\xDE"sv), "é🙂") << "UTF-16, little-endian";
    EXPECT_EQ(textOf(folder, "\xFE\xFF\0\xE9\xD8\x3D\xDE\x42"sv), "é🙂") << "UTF-16, big-endian";
    EXPECT_EQ(textOf(folder, "\0\0\xFE\xFF\0\0\0\xE9\0\1\xF6\x42"sv), "é🙂") << "UTF-32";
    EXPECT_EQ(textOf(folder, "\x93na\xEFve\x94 \x80 5"), "“naïve” € 5") << "windows-1252";
    EXPECT_EQ(textOf(folder,
                  "\xD1\xFA\xE5\xF8\xFC \xE6\xE5 \xE5\xF9\xB8 \xFD\xF2\xE8\xF5 \xEC\xFF\xE3\xEA\xE8\xF5 "
                  "\xF4\xF0\xE0\xED\xF6\xF3\xE7\xF1\xEA\xE8\xF5 \xE1\xF3\xEB\xEE\xEA, \xE4\xE0 "
                  "\xE2\xFB\xEF\xE5\xE9 \xF7\xE0\xFE"),
        russian)
        << "windows-1251";
    EXPECT_EQ(textOf(folder,
                  "\x93\xFA\x96\x7B\x8C\xEA\x82\xCC\x95\xB6\x8F\xCD\x82\xF0\x93\xC7\x82\xDE\x81\x42"
                  "\x82\xB1\x82\xEA\x82\xCD\x83\x65\x83\x58\x83\x67\x82\xC5\x82\xB7\x81\x42"),
        "日本語の文章を読む。これはテストです。")
        << "Shift-JIS";
}

TEST(DocumentReader, OpensTheDocumentsOfWordProcessors)
{
    const TemporaryFolder folder;
    const std::string docx
        = ZipBuilder()
              .add("word/document.xml",
                  "<w:document><w:body><w:p><w:r><w:t>zipped</w:t></w:r></w:p></w:body></w:document>")
              .bytes();
    EXPECT_EQ(textOf(folder, docx), "zipped\n");
    EXPECT_EQ(textOf(folder,
                  "<?xml version=\"1.0\"?><office:document><office:body><office:text><text:p>flat</text:p>"
                  "</office:text></office:body></office:document>"),
        "flat\n");
    EXPECT_EQ(textOf(folder, ZipBuilder().add("a.txt", "text").bytes()), "nil") << "an archive is no text";
    EXPECT_EQ(textOf(folder, "<?xml version=\"1.0\"?><other/>"), "<?xml version=\"1.0\"?><other/>");
}

} // namespace
} // namespace caddis
