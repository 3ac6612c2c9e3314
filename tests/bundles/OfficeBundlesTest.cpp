#include "bundles/BundleHost.h"
#include "support/CompoundFileBuilder.h"
#include "support/TemporaryFolder.h"
#include "support/ZipBuilder.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

constexpr const char* Title = "kMDItemTitle";
constexpr const char* Text = "kMDItemTextContent";
constexpr std::uint64_t FirstOfMarch2026 = 134168310000000000; // 09:30, counted from 1601

std::string utf16(const std::string& ascii)
{
    std::string units;
    for (const char c : ascii)
        units += littleEndian(static_cast<unsigned char>(c), 2);
    return units;
}

// One set of properties, each an identifier and a value with its type.
std::string propertySet(const std::vector<std::pair<std::uint32_t, std::string>>& properties)
{
    std::string table;
    std::string values;
    for (const auto& [identifier, value] : properties) {
        table += littleEndian(identifier, 4) + littleEndian(8 + 8 * properties.size() + values.size(), 4);
        values += value;
    }
    return littleEndian(0xFFFE, 2) + std::string(22, '\0') + littleEndian(1, 4) + std::string(16, '\0')
        + littleEndian(48, 4) + littleEndian(8 + table.size() + values.size(), 4)
        + littleEndian(properties.size(), 4) + table + values;
}
std::string narrow(const std::string& text)
{
    return littleEndian(30, 4) + littleEndian(text.size() + 1, 4) + text + '\0';
}

class OfficeBundles : public testing::Test {
protected:
    Imported import(const std::string& bundle, const char* type, const std::string& bytes)
    {
        return importWith(bundle, type, m_folder.write("file", bytes).utf8());
    }
    Imported importOffice(const CompoundFileBuilder& file)
    {
        return import("OfficeLegacy", "com.microsoft.word.doc", file.bytes());
    }

private:
    TemporaryFolder m_folder;
};

// Two pieces: the first in 8 bits at 2048, the second in UTF-16 at 3072.
CompoundFileBuilder wordDocument(const std::string& first, const std::string& second)
{
    std::string main = littleEndian(0xA5EC, 2) + littleEndian(0xC1, 2);
    main.resize(0x1A2, '\0');
    const std::string table = littleEndian(0, 4) + littleEndian(first.size(), 4)
        + littleEndian(first.size() + second.size() / 2, 4) + littleEndian(0, 2)
        + littleEndian(0x40000000 | 2 * 2048, 4) + littleEndian(0, 4) + littleEndian(3072, 4)
        + littleEndian(0, 2);
    const std::string clx = std::string("\1\2\0xx\2", 6) + littleEndian(table.size(), 4) + table;
    main += littleEndian(7, 4) + littleEndian(clx.size(), 4);
    main.resize(2048, '\0');
    main += first;
    main.resize(3072, '\0');
    main += second;
    main.resize(5000, '\0');
    CompoundFileBuilder file;
    file.add("WordDocument", main).add("0Table", "padding" + clx);
    return file;
}

TEST_F(OfficeBundles, ReadWordDocuments)
{
    const auto document = importOffice(
        wordDocument("Oil \x93lamp\x94\r\x13 HYPERLINK x \x14link\x15", utf16(" caf\xE9\x07next\x07\r"))
            .add("\5SummaryInformation",
                propertySet({ { 1, littleEndian(2, 4) + littleEndian(1251, 4) },
                    { 2, narrow("\xCB\xE0\xEC\xEF\xE0") }, { 4, narrow("Ada; Charles") },
                    { 12, littleEndian(64, 4) + littleEndian(FirstOfMarch2026, 8) },
                    { 14, littleEndian(3, 4) + littleEndian(7, 4) } })));
    EXPECT_EQ(document[Title], "\u041B\u0430\u043C\u043F\u0430");
    EXPECT_EQ(document["kMDItemAuthors"], "Ada | Charles");
    EXPECT_EQ(document["kMDItemContentCreationDate"], "1772357400");
    EXPECT_EQ(document["kMDItemNumberOfPages"], "7");
    EXPECT_EQ(document[Text], "Oil \u201Clamp\u201D\nlink caf\u00E9\tnext\t\n");
    std::string locked = littleEndian(0xA5EC, 2) + std::string(8, '\0') + littleEndian(0x0100, 2);
    EXPECT_EQ(importOffice(CompoundFileBuilder().add("WordDocument", locked))["kMDItemSecurityMethod"],
        "Password Encrypted");
}

std::string record(int type, const std::string& body)
{
    return littleEndian(static_cast<unsigned>(type), 2) + littleEndian(body.size(), 2) + body;
}
std::string cell(unsigned row, unsigned style)
{
    return littleEndian(row, 2) + littleEndian(0, 2) + littleEndian(style, 2);
}

TEST_F(OfficeBundles, ReadBinaryWorkbooks)
{
    const std::string globals = record(0x809, littleEndian(0x600, 2) + littleEndian(5, 2))
        + record(0x41E, littleEndian(164, 2) + littleEndian(5, 2) + '\0' + "d/m/y")
        + record(0xE0, littleEndian(0, 4)) + record(0xE0, littleEndian(0, 2) + littleEndian(164, 2))
        + record(0x85, std::string(6, '\0') + '\5' + '\0' + "Costs")
        // A string that goes on in the next record, there in 16 bits.
        + record(0xFC,
            littleEndian(2, 4) + littleEndian(2, 4) + littleEndian(3, 2) + '\0' + "Oil" + littleEndian(4, 2)
                + '\0' + "Wi")
        + record(0x3C, '\1' + utf16("ck")) + record(0x0A, "");
    const std::string sheet = record(0x809, littleEndian(0x600, 2) + littleEndian(0x10, 2))
        + record(0xFD, cell(0, 0) + littleEndian(0, 4)) + record(0xFD, cell(0, 0) + littleEndian(1, 4))
        + record(0x27E, cell(1, 0) + littleEndian(250 << 2 | 3, 4))
        + record(0x27E, cell(1, 1) + littleEndian(46082 << 2 | 2, 4))
        + record(0xFD, cell(2, 0) + littleEndian(9, 4))
        + record(0x06, cell(2, 0) + std::string(6, '\0') + "\xFF\xFF")
        + record(0x207, littleEndian(1, 2) + '\0' + "x") + record(0x0A, "");
    const auto workbook = importOffice(CompoundFileBuilder().add("Workbook", globals + sheet));
    EXPECT_TRUE(workbook.result);
    EXPECT_EQ(workbook[Text], "Costs\nOil\tWick\n2.5\t2026-03-01\nx\n");
    EXPECT_EQ(importOffice(
                  CompoundFileBuilder().add("Workbook", globals + record(0x2F, "")))["kMDItemSecurityMethod"],
        "Password Encrypted");
}

std::string slideRecord(int type, const std::string& body, unsigned head = 0)
{
    return littleEndian(head, 2) + littleEndian(static_cast<unsigned>(type), 2) + littleEndian(body.size(), 4)
        + body;
}

TEST_F(OfficeBundles, ReadSlideShowsInTheirOrder)
{
    const std::string one
        = slideRecord(0x03EE, slideRecord(0xF00D, slideRecord(0x0FA8, "First\rline"), 0xF), 0xF);
    const std::string two = slideRecord(0x03EE, slideRecord(0x0F9E, littleEndian(0, 4)), 0xF);
    const std::string list = slideRecord(0x0FF0,
        slideRecord(0x03F3, littleEndian(3, 4)) + slideRecord(0x0FA0, utf16("Title"))
            + slideRecord(0x03F3, littleEndian(2, 4)),
        0xF);
    const std::string document = slideRecord(0x03E8, list, 0xF);
    std::string stream = document + one + two;
    const auto directory = stream.size();
    stream += slideRecord(0x1772,
        littleEndian(3 << 20 | 1, 4) + littleEndian(0, 4) + littleEndian(document.size(), 4)
            + littleEndian(document.size() + one.size(), 4));
    const auto edit = stream.size();
    stream += slideRecord(
        0x0FF5, littleEndian(0, 8) + littleEndian(0, 4) + littleEndian(directory, 4) + littleEndian(1, 4));
    const auto show = importOffice(CompoundFileBuilder()
                                       .add("PowerPoint Document", stream)
                                       .add("Current User", std::string(16, '\0') + littleEndian(edit, 4)));
    EXPECT_EQ(show[Text], "Title\nFirst\nline\n");
}

TEST_F(OfficeBundles, ReadSavedMessages)
{
    const std::string fixed = std::string(32, '\0') + littleEndian(0x00390040, 4) + littleEndian(0, 4)
        + littleEndian(FirstOfMarch2026, 8);
    CompoundFileBuilder message;
    message.add("__properties_version1.0", fixed)
        .add("__substg1.0_0037001F", utf16("Lamps"))
        .add("__substg1.0_0042001E", "Ada")
        .add("__substg1.0_5D01001F", utf16("ada@e.org"))
        .add("__substg1.0_10130102", "<p>Oil <b>and</b> wick")
        .add("__recip_version1.0_#00000000/__substg1.0_3001001F", utf16("Charles"))
        .add("__recip_version1.0_#00000000/__substg1.0_39FE001F", utf16("c@e.org"))
        .add("__attach_version1.0_#00000000/__substg1.0_3707001F", utf16("plan.pdf"));
    const auto mail = import("OutlookMessage", "com.microsoft.outlook.msg", message.bytes());
    EXPECT_EQ(mail["kMDItemSubject"], "Lamps");
    EXPECT_EQ(mail["kMDItemAuthors"] + mail["kMDItemAuthorEmailAddresses"], "Adaada@e.org");
    EXPECT_EQ(mail["kMDItemRecipients"] + mail["kMDItemRecipientEmailAddresses"], "Charlesc@e.org");
    EXPECT_EQ(mail["kMDItemContentCreationDate"], "1772357400");
    EXPECT_EQ(mail[Text], "Oil and wick\nplan.pdf\n");

    // The example of the format's description: a text whose end repeats itself.
    const std::string rich(
        "\x1A\0\0\0\x1C\0\0\0LZFu\xE2\xD4\x4B\x51\x41\0\x04\x20WXYZ\x0D\x6E\x7D\1\x0E\xB0", 30);
    CompoundFileBuilder repeated;
    repeated.add("__properties_version1.0", fixed).add("__substg1.0_10090102", rich);
    EXPECT_EQ(import("OutlookMessage", "com.microsoft.outlook.msg", repeated.bytes())[Text],
        "WXYZWXYZWXYZWXYZWXYZ\n");
}

TEST_F(OfficeBundles, ReadDatesAndSlidesAsTheyAreShown)
{
    const std::string relationships = "<x><Relationship Id='R1' Target='one.xml'/><Relationship Id='R2' "
                                      "Target='/ppt/two.xml'/></x>";
    const auto workbook = import("OfficeOpen", "org.openxmlformats.spreadsheetml.sheet",
        ZipBuilder()
            .add(
                "xl/workbook.xml", "<w xmlns:r='r'><workbookPr date1904='1'/><sheet name='A' r:id='R1'/></w>")
            .add("xl/_rels/workbook.xml.rels", relationships)
            .add("xl/styles.xml",
                "<s><numFmt numFmtId='170' formatCode='[Red]0.0\" days\"'/><cellStyleXfs><xf numFmtId='14'/>"
                "</cellStyleXfs><cellXfs><xf numFmtId='0'/><xf numFmtId='22'/><xf "
                "numFmtId='170'/></cellXfs></s>")
            .add("xl/one.xml",
                "<x><row><c s='1'><v>44620.5</v></c><c s='2'><v>2</v></c><c s='1'><v>0.25</v></c>"
                "<c t='b'><v>1</v></c></row></x>")
            .bytes());
    EXPECT_EQ(workbook[Text], "A\n2026-03-01 12:00:00\t2\t06:00:00\tTRUE\n");
    const auto slide = [](const char* text) { return std::string("<s><p><t>") + text + "</t></p></s>"; };
    const auto show = import("OfficeOpen", "org.openxmlformats.presentationml.presentation",
        ZipBuilder()
            .add("ppt/presentation.xml",
                "<p xmlns:r='r'><sldId id='256' r:id='R2'/><sldId id='257' r:id='R1'/></p>")
            .add("ppt/_rels/presentation.xml.rels", relationships)
            .add("ppt/one.xml", slide("made first"))
            .add("ppt/two.xml", slide("shown first"))
            .bytes());
    EXPECT_EQ(show[Text], "shown first\nmade first\n");
}

TEST_F(OfficeBundles, EndHostileChains)
{
    const std::string good = wordDocument("Oil", utf16("x")).bytes();
    // A chain that leads to itself, tables that are nowhere, and every header byte off by one bit.
    for (std::size_t at = 0; at < 512; at += 3) {
        for (const int bit : { 1, 0x80 }) {
            std::string bad = good;
            bad[at] = static_cast<char>(bad[at] ^ bit);
            import("OfficeLegacy", "com.microsoft.word.doc", bad);
        }
    }
    std::string circle = good;
    const auto fat = circle.size() - 512;
    for (std::size_t i = 0; i < 20; ++i)
        circle.replace(fat + 4 * i, 4, littleEndian(i, 4));
    EXPECT_LE(import("OfficeLegacy", "com.microsoft.word.doc", circle)[Text].size(), circle.size());
    EXPECT_FALSE(import("OfficeLegacy", "com.microsoft.word.doc", good.substr(0, 600)).result);
    EXPECT_FALSE(import("OutlookMessage", "com.microsoft.outlook.msg", good).result);
}

} // namespace
} // namespace caddis
