#include "bundles/BundleHost.h"
#include "support/TemporaryFolder.h"
#include "support/ZipBuilder.h"

#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace caddis {
namespace {

class HostileFiles : public testing::Test {
protected:
    Imported import(const std::string& bundle, const char* type, const std::string& bytes,
        std::size_t textLimit = 16 * 1024 * 1024)
    {
        return importWith(bundle, type, m_folder.write("file", bytes).utf8(), textLimit);
    }

private:
    TemporaryFolder m_folder;
};

constexpr const char* Word = "org.openxmlformats.wordprocessingml.document";
constexpr const char* Text = "kMDItemTextContent";

TEST_F(HostileFiles, EndAtTheTextLimit)
{
    std::string body = "<d><p><t>";
    body.append(40 * 1024 * 1024, 'a').append("</t></p></d>");
    const auto bomb
        = import("OfficeOpen", Word, ZipBuilder().add("word/document.xml", body).bytes(), 1024 * 1024);
    EXPECT_LE(bomb[Text].size(), 1024 * 1024U);
    EXPECT_GT(bomb[Text].size(), 512 * 1024U);
}

TEST_F(HostileFiles, AreNotUnpackedWithoutEnd)
{
    // What stands behind the first 128 MiB is not looked at.
    std::string body = "<d>";
    body.append(130 * 1024 * 1024, ' ').append("<p><t>behind</t></p></d>");
    const auto bomb = import("OfficeOpen", Word, ZipBuilder().add("word/document.xml", body).bytes());
    EXPECT_EQ(bomb[Text], "(absent)");
    EXPECT_EQ(bomb.leftOut, "what the parts of the document inflate to beyond 128 MiB");
}

TEST_F(HostileFiles, CannotBlowUpEntities)
{
    std::string xml = "<!DOCTYPE d [<!ENTITY a0 'aaaaaaaaaa'>";
    for (int i = 1; i < 12; ++i) {
        const std::string below = "&a" + std::to_string(i - 1) + ";";
        xml += "<!ENTITY a" + std::to_string(i) + " '";
        for (int n = 0; n < 10; ++n)
            xml += below;
        xml += "'>";
    }
    xml += "]><d x='&a11;'><p><t>&a11;</t></p></d>";
    const auto bomb = import("OfficeOpen", Word, ZipBuilder().add("word/document.xml", xml).bytes());
    EXPECT_LT(bomb[Text].size(), 1024U);
}

TEST_F(HostileFiles, OfManyPartsAreCutShort)
{
    if (!hasBundle("Mail"))
        GTEST_SKIP();
    std::string mail = "Subject: many\nMIME-Version: 1.0\nContent-Type: multipart/mixed; boundary=b\n\n";
    for (int i = 0; i < 100'000; ++i)
        mail += "--b\nContent-Type: text/plain\n\npart\n";
    const auto parts = import("Mail", "com.apple.mail.email", mail);
    EXPECT_EQ(parts["kMDItemSubject"], "many");
    EXPECT_LE(parts[Text].size(), 6000U);
    EXPECT_EQ(parts.leftOut, "parts of a message after the first 1000, or very deep in it");

    const auto folder = import("Mail", "com.apple.mail.mbox",
        "From a\nSubject: one\n\nx\n\nFrom b\n" + mail + "\n\nFrom c\nSubject: behind\n\nx\n");
    EXPECT_TRUE(folder[Text].starts_with("one\nx\nmany\npart\n")) << folder[Text].substr(0, 40);
    EXPECT_EQ(folder[Text].find("behind"), std::string::npos);
    EXPECT_EQ(folder.leftOut, parts.leftOut);
    std::string many;
    for (int i = 0; i < 900; ++i)
        many += "From a\nSubject: s\n\nx\n" + std::string("\n--\n\n--\n\n--\n\n--\n\n--\n\n--\n")
            + "\n--\n\n--\n\n--\n\n--\n\n--\n\n--\n\n";
    EXPECT_EQ(import("Mail", "com.apple.mail.mbox", many).leftOut, "") << "not so many in one message";

    std::string nested = "Subject: deep\nMIME-Version: 1.0\n";
    for (int i = 0; i < 2000; ++i) {
        const std::string boundary = "b" + std::to_string(i);
        nested.append("Content-Type: multipart/mixed; boundary=").append(boundary);
        nested.append("\n\n--").append(boundary).append("\n");
    }
    EXPECT_EQ(import("Mail", "com.apple.mail.email", nested)["kMDItemSubject"], "deep");

    std::string recipients = "To: a@e.org";
    for (int i = 0; i < 20'000; ++i)
        recipients += ", a@e.org";
    EXPECT_LE(import("Mail", "com.apple.mail.email", recipients + "\n\nx").items, 10'000U);
}

TEST_F(HostileFiles, WithHeadersWithoutEndAreRead)
{
    if (!hasBundle("Mail"))
        GTEST_SKIP();
    std::string mail = "Subject: endless\nX-Long: ";
    mail.append(20 * 1024 * 1024, 'x');
    EXPECT_EQ(import("Mail", "com.apple.mail.email", mail)["kMDItemSubject"], "endless");
    std::string lines = "Subject: many\n";
    for (int i = 0; i < 100'000; ++i)
        lines += "X-Line: y\n";
    EXPECT_EQ(import("Mail", "com.apple.mail.email", lines)["kMDItemSubject"], "many");
}

// A member of a cpio archive: a head of octal numbers, the name, no contents.
std::string cpioMember(const std::string& name)
{
    char head[77];
    std::snprintf(head, sizeof head, "070707%06o%06o%06o%06o%06o%06o%06o%011o%06o%011o", 0, 1, 0100644, 0, 0,
        1, 0, 0, static_cast<unsigned>(name.size() + 1), 0);
    return head + name + '\0';
}

TEST_F(HostileFiles, OfManyNamesAreCutShort)
{
    if (!hasBundle("Archive"))
        GTEST_SKIP();
    std::string archive;
    for (int i = 0; i < 50'000; ++i)
        archive += cpioMember("some/folder/with/a/file/of/number/" + std::to_string(i));
    archive += cpioMember("TRAILER!!!");
    const auto names = import("Archive", "public.cpio-archive", archive, 256 * 1024);
    EXPECT_TRUE(names[Text].starts_with("some/folder/with/a/file/of/number/0\n"));
    EXPECT_LE(names[Text].size(), 256U * 1024);
    EXPECT_GT(names[Text].size(), 128U * 1024);
}

TEST_F(HostileFiles, ThatAreFontsDoNoHarm)
{
    if (!hasBundle("Font"))
        GTEST_SKIP();
    std::ifstream file("/usr/share/fonts/type1/urw-base35/NimbusRoman-Regular.t1", std::ios::binary);
    const std::string good { std::istreambuf_iterator<char>(file), {} };
    ASSERT_FALSE(good.empty());
    std::uint32_t state = 7;
    for (unsigned round = 0; round < 60; ++round) {
        std::string bad = good;
        for (int i = 0; i < 20; ++i) {
            state = state * 1664525 + 1013904223;
            bad[(state >> 8) % (round % 2 ? 4096 : bad.size())] = static_cast<char>(state);
        }
        import("Font", "com.adobe.postscript-pfb-font", bad.substr(0, bad.size() - (round % 3) * 1000));
    }
    // A table of a TrueType font that is said to be longer than anything.
    EXPECT_FALSE(import("Font", "public.truetype-ttf-font",
        std::string("\0\1\0\0\0\1\0\0\0\0\0\0name\0\0\0\0\0\0\0\x1C\xFF\xFF\xFF\xFF", 28))
                     .result);
}

TEST_F(HostileFiles, InOpenDocumentsAreBoundedToo)
{
    std::string body = "<d><body><p>";
    body.append(40 * 1024 * 1024, 'a').append("</p></body></d>");
    const auto bomb = import("OpenDocument", "org.oasis-open.opendocument.text",
        ZipBuilder().add("content.xml", body).bytes(), 1024 * 1024);
    EXPECT_LE(bomb[Text].size(), 1024 * 1024U);
    const auto entities = import("OpenDocument", "org.oasis-open.opendocument.text",
        "<!DOCTYPE d [<!ENTITY a 'aaaaaaaaaa'><!ENTITY b "
        "'&a;&a;&a;&a;'>]><d><meta><title>&b;</title></meta></d>");
    EXPECT_EQ(entities["kMDItemTitle"], "(absent)");
}

TEST_F(HostileFiles, LeaveEveryBundleStanding)
{
    // Each bundle gets what belongs to another, cut short, and noise.
    std::string noise;
    std::uint32_t state = 1;
    for (int i = 0; i < 100'000; ++i) {
        state = state * 1664525 + 1013904223;
        noise += static_cast<char>(state >> 24);
    }
    const std::string archive
        = ZipBuilder().add("word/document.xml", "<d><p>").add("content.xml", noise).bytes();
    const std::string files[] = { "", noise, archive, archive.substr(0, archive.size() / 2), "RIFF" + noise,
        "%PDF-1.7\n" + noise, "Content-Type: multipart/related; boundary=\n\n--\n--\n",
        "\x89PNG\r\n\x1A\n" + noise, std::string("ID3\4\0\0\x7F\x7F\x7F\x7F", 10) + noise,
        std::string("\0\0\0\x18"
                    "ftypmp42",
            12)
            + noise };
    for (const char* bundle : { "PlainText", "Web", "PDF", "OfficeOpen", "OpenDocument", "Mail", "Cards",
             "Image", "Audio", "Video", "Archive", "Outline", "Font", "PostScript", "RichText", "DjVu",
             "Help", "Ebook", "Legacy", "OfficeLegacy", "OutlookMessage" }) {
        if (!hasBundle(bundle))
            continue;
        for (const std::string& file : files)
            import(bundle, "public.data", file);
        EXPECT_FALSE(importWith(bundle, "public.data", "/nowhere/at/all").result) << bundle;
    }
}

} // namespace
} // namespace caddis
