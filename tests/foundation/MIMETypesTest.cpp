#include "foundation/MIMETypes.h"

#include "foundation/Base64.h"
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
