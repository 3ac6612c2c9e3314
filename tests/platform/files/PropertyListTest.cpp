#include "platform/files/PropertyList.h"

#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

// A binary list of one-byte offsets and references: objects as they stand, the first one at the top.
Data binary(const std::vector<std::string>& objects)
{
    std::string bytes = "bplist00";
    std::string table;
    for (const std::string& object : objects) {
        table += static_cast<char>(bytes.size());
        bytes += object;
    }
    const auto number = [](std::size_t value) { return std::string(7, '\0') + static_cast<char>(value); };
    const std::size_t start = bytes.size();
    const std::string sizes(2, '\1');
    bytes += table + std::string(6, '\0') + sizes + number(objects.size()) + number(0) + number(start);
    return Data::adopt(std::move(bytes));
}

std::string asText(const std::optional<Value>& value)
{
    return value ? PropertyList::writeOldStyle(*value) : "nil";
}

std::string oldStyle(std::string_view text)
{
    return asText(PropertyList::readOldStyle(String::fromUtf8(text)));
}

std::string xml(const std::string& body)
{
    return asText(PropertyList::read(
        Data::copyOf("<?xml version=\"1.0\"?><!DOCTYPE plist><plist version=\"1.0\">" + body + "</plist>")));
}

TEST(BinaryPropertyList, ReadsEveryKindOfObject)
{
    using namespace std::string_literals;
    EXPECT_EQ(asText(PropertyList::read(
                  binary({ "\xA6\1\2\3\4\5\6"s, "\x10\xFF"s, "\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFE"s,
                      "\x62\0\xE4\x20\xAC"s, "\x42\1\2"s, "\x09"s, "\x80\x07"s }))),
        "(\n    255,\n    -2,\n    \"\\U00e4\\U20ac\",\n    <0102>,\n    1,\n    {\n        \"CF$UID\" = "
        "7;\n   "
        " }\n)");
    EXPECT_EQ(PropertyList::readBinary(binary({ "\x33\0\0\0\0\0\0\0\0"s })), Value(Date {}));
    EXPECT_EQ(PropertyList::readBinary(binary({ "\x22\x3F\x80\0\0"s })), Value(1.0F));
    EXPECT_EQ(PropertyList::readBinary(binary({ "\x14"s + std::string(8, '\0') + std::string(8, '\xFF') })),
        Value(~std::uint64_t(0)));
    EXPECT_EQ(PropertyList::readBinary(binary({ "\x5F\x10\x10"s + std::string(16, 'x') })),
        Value(u"xxxxxxxxxxxxxxxx"_s));
    EXPECT_EQ(asText(PropertyList::readBinary(binary({ "\xD2\1\1\2\3"s, "\x51k"s,
                  "\x51"
                  "a"s,
                  "\x51"
                  "b"s }))),
        "{\n    k = b;\n}")
        << "of two equal keys the last value counts";
}

TEST(BinaryPropertyList, RefusesWhatItsBytesCannotHold)
{
    using namespace std::string_literals;
    EXPECT_FALSE(PropertyList::readBinary(binary({ "\xA1\0"s }))) << "contains itself";
    EXPECT_FALSE(PropertyList::readBinary(binary({ "\xA1\1"s }))) << "no such object";
    EXPECT_FALSE(PropertyList::readBinary(binary({ "\xD1\1\1"s, "\x10\1"s }))) << "a number as a key";
    EXPECT_FALSE(PropertyList::readBinary(binary({ "\x5F\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s })));
    EXPECT_FALSE(PropertyList::readBinary(binary({ "\x6F\x13\x80\0\0\0\0\0\0\1ab"s }))) << "2n overflows";
    std::vector<std::string> bomb;
    for (char next = 1; next < 20; ++next)
        bomb.push_back("\xA5"s + std::string(5, next));
    bomb.push_back("\x51x"s);
    EXPECT_FALSE(PropertyList::readBinary(binary(bomb))) << "5 to the 19th elements";
    const Data whole = binary({ "\xA1\1"s, "\x51x"s });
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(PropertyList::readBinary(whole.slice({ 0, length }))) << length;
}

TEST(XMLPropertyList, ReadsEveryElement)
{
    EXPECT_EQ(xml("<dict><key>a&amp;b</key><array><integer> -5 </integer><integer>0x1F</integer>"
                  "<real>1.5</real><true/><data> AQ ID </data></array><key>e</key><string/></dict>"),
        "{\n    \"a&b\" = (\n        -5,\n        31,\n        \"1.5\",\n        1,\n        <010203>\n    "
        ");\n    e = "
        "\"\";\n}");
    EXPECT_EQ(xml("<date>2011-12-09T01:13:43Z</date>"), "\"2011-12-09 01:13:43 +0000\"");
    EXPECT_EQ(PropertyList::read(Data::copyOf("\xEF\xBB\xBF <plist><false/></plist>")), Value(false));
}

TEST(XMLPropertyList, RefusesWhatIsNoList)
{
    EXPECT_EQ(xml("<dict><string>no key</string></dict>"), "nil");
    EXPECT_EQ(xml("<dict><key>no value</key></dict>"), "nil");
    EXPECT_EQ(xml("<string>two</string><string>roots</string>"), "nil");
    EXPECT_EQ(xml("<integer>12x</integer>"), "nil");
    EXPECT_EQ(xml("<color/>"), "nil");
    EXPECT_EQ(xml("<dict>"), "nil");
    std::string opened;
    std::string closed;
    for (int level = 0; level <= PropertyList::MostNested; ++level) {
        opened += "<array>";
        closed += "</array>";
    }
    EXPECT_EQ(xml(opened + closed), "nil");
}

TEST(OldStylePropertyList, ReadsItsOwnForms)
{
    EXPECT_EQ(
        oldStyle("( a, \"b c\", /usr/bin, 'd', )"), "(\n    a,\n    \"b c\",\n    \"/usr/bin\",\n    d\n)");
    EXPECT_EQ(oldStyle("{ k = v; alone; d = <0f bd7 7>; n = {}; }"),
        "{\n    k = v;\n    alone = alone;\n    d = <0fbd77>;\n    n = {\n    };\n}");
    EXPECT_EQ(oldStyle("// one\n/* two */ ( /* three */ x // four\n)"), "(\n    x\n)");
    EXPECT_EQ(PropertyList::readOldStyle(u"\"\\\"\\\\\\n\\U00E9\\Ue9\\U\\q\\101\\200\\\n\""_s),
        Value(u"\"\\\n\u00E9\u00E9UqA\u00A0\n"_s));
    EXPECT_EQ(oldStyle("\"\xE2\x98\x83\""), "\"\\U2603\"");
}

TEST(OldStylePropertyList, RefusesWhatIsBroken)
{
    for (const char* text : { "", "(", "(a b)", "( , )", "{ a = b }", "{ = b; }", "<0>", "<0g>", "\"open",
             "\"\\", "a b", "(a) junk", "/* open" })
        EXPECT_EQ(oldStyle(text), "nil") << text;
    EXPECT_EQ(oldStyle(std::string(1'000'000, '(')), "nil");
    EXPECT_EQ(oldStyle(std::string(200, '(') + std::string(200, ')')).substr(0, 2), "(\n");
}

} // namespace
} // namespace caddis
