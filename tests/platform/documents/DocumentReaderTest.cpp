#include "platform/documents/DocumentReader.h"

#include "support/TemporaryFolder.h"
#include "support/Text.h"

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

} // namespace
} // namespace caddis
