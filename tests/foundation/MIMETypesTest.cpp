#include "foundation/MIMETypes.h"

#include "foundation/Base64.h"
#include "platform/files/SharedMIMEDatabase.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

TEST(MIMETypes, KnowsTheTypesOfPagesAndBooks)
{
    EXPECT_EQ(MIMETypeForExtension(u"JPG"_s), u"image/jpeg"_s);
    EXPECT_EQ(MIMETypeForExtension(u"xhtml"_s), u"application/xhtml+xml"_s);
    EXPECT_EQ(MIMETypeForExtension(u"woff2"_s), u"font/woff2"_s);
    EXPECT_EQ(MIMETypeForExtension(u"no such extension"_s), std::nullopt);
    EXPECT_EQ(MIMETypeForExtension(u""_s), std::nullopt);
    EXPECT_EQ(MIMETypeForExtension(u"odt"_s), u"application/vnd.oasis.opendocument.text"_s)
        << "of the system's";
}

TEST(MIMETypes, ReadsTheSharedDatabaseByWeight)
{
    SharedMIMEDatabase database;
    database.add("# comment\n50:a/light:*.x\n80:a/heavy:*.x:cs\n80:a/late:*.x\n50:a/b:*.tar.gz\nx:a/b:*.y\n"
                 "50:a/b:y*\n50::*.y\n50:a/b:*.y*\n50");
    EXPECT_EQ(database.typeForExtension(u"x"_s), u"a/heavy"_s);
    EXPECT_EQ(database.typeForExtension(u"tar.gz"_s), u"a/b"_s);
    EXPECT_EQ(database.typeForExtension(u"y"_s), std::nullopt);
}

TEST(MIMETypes, TellsMarkup)
{
    for (const auto* type :
        { u"text/html", u"TEXT/HTML; charset=utf-8", u"application/xhtml+xml", u"image/svg+xml" })
        EXPECT_TRUE(isMarkupMIMEType(String(type))) << readable(type);
    for (const auto* type : { u"", u"text/plain", u"application/xmlfoo", u"text/htmlx" })
        EXPECT_FALSE(isMarkupMIMEType(String(type))) << readable(type);
}

// The test vectors of RFC 4648, section 10.
TEST(Base64, EncodesWithPadding)
{
    const std::pair<const char*, const char16_t*> vectors[]
        = { { "", u"" }, { "f", u"Zg==" }, { "fo", u"Zm8=" }, { "foo", u"Zm9v" }, { "foob", u"Zm9vYg==" },
              { "fooba", u"Zm9vYmE=" }, { "foobar", u"Zm9vYmFy" } };
    for (const auto& [bytes, text] : vectors)
        EXPECT_EQ(base64EncodedString(Data::copyOf(bytes)), text);
    EXPECT_EQ(base64EncodedString(Data::copyOf("\xFF\xFE\x00")), u"//4=") << "a literal ends at its NUL";
}

} // namespace
} // namespace caddis
