#include "platform/base/Format.h"

#include "support/Text.h"

#include <gtest/gtest.h>

#include <limits>

namespace caddis {
namespace {

TEST(Format, FillsEachKindOfArgument)
{
    EXPECT_EQ(format(u"Unable to locate %@ in %@", u"mimetype"_s, u"book.epub"_s),
        u"Unable to locate mimetype in book.epub");
    EXPECT_EQ(format(u"<%s HREF=\"%@\">", "A", u"x"_s), u"<A HREF=\"x\">");
    EXPECT_EQ(
        format(u"%d of %d%%", -5, std::numeric_limits<std::int64_t>::max()), u"-5 of 9223372036854775807%");
    EXPECT_EQ(format(u"%C%C", u'a', u'\u00E4'), u"a\u00E4");
    EXPECT_EQ(format(u"%@", *URL::fromString(u"http://example.org/"_s)), u"http://example.org/");
    EXPECT_EQ(format(u"100%%"), u"100%");
    EXPECT_EQ(format(u""), u"");
}

TEST(Format, TakesArgumentsForTextAndNotForPatterns)
{
    EXPECT_EQ(format(u"[%@]", u"%@ %d %"_s), u"[%@ %d %]");
}

// Which specifier each type of argument must meet; a wrong one does not compile.
static_assert(detail::specifierFor<String>() == u'@');
static_assert(detail::specifierFor<std::u16string_view>() == u'@');
static_assert(detail::specifierFor<const char*>() == u's');
static_assert(detail::specifierFor<std::size_t>() == u'd');
static_assert(detail::specifierFor<char16_t>() == u'C');
static_assert(detail::specifierFor<double>() == 0);

} // namespace
} // namespace caddis
