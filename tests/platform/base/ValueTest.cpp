#include "platform/base/Value.h"

#include "support/Text.h"

#include <gtest/gtest.h>

#include <limits>

namespace caddis {
namespace {

TEST(Value, KeepsTheKindsOfNumberApart)
{
    EXPECT_TRUE(Value(true).is<bool>());
    EXPECT_TRUE(Value(7).is<std::int64_t>());
    EXPECT_TRUE(Value(std::size_t { 7 }).is<std::int64_t>());
    EXPECT_TRUE(Value(std::numeric_limits<std::uint64_t>::max()).is<std::uint64_t>());
    EXPECT_TRUE(Value(1.0F).is<float>());
    EXPECT_NE(Value(1), Value(1.0));
    EXPECT_TRUE(Value().is<Null>());
}

TEST(Dictionary, KeepsTheOrderOfItsKeys)
{
    Dictionary dictionary { { u"b"_s, 1 }, { u"a"_s, u"x"_s } };
    dictionary.set(u"b"_s, Value(2));
    dictionary.set(u"c"_s, Value(Array { 1, Null {} }));
    std::u16string keys;
    for (const auto& [key, value] : dictionary)
        keys += key.view();
    EXPECT_EQ(keys, u"bac");
    EXPECT_EQ(*dictionary.find(u"b"), Value(2));
    EXPECT_EQ(dictionary.stringForKey(u"b"), std::nullopt);
    dictionary.set(u"b"_s, std::optional<Value>());
    EXPECT_EQ(dictionary.count(), 2U);
    EXPECT_EQ(dictionary, (Dictionary { { u"c"_s, Array { 1, Null {} } }, { u"a"_s, u"x"_s } }));
}

TEST(Dictionary, BuiltFromPairsEndsAtTheFirstMissingValue)
{
    const auto reply
        = Dictionary::fromPairs({ { u"Size", u"{1, 2}"_s }, { u"Alpha", std::nullopt }, { u"Last", 1 } });
    EXPECT_EQ(reply, (Dictionary { { u"Size"_s, u"{1, 2}"_s } }));
}

TEST(Data, IsHandedOnWithoutACopy)
{
    std::string bytes(1000, 'x');
    const char* address = bytes.data();
    const Data data = Data::adopt(std::move(bytes));
    EXPECT_EQ(data.chars().data(), address);
    Data slice;
    {
        const Data copy = data;
        slice = copy.slice({ 10, 5 });
    }
    EXPECT_EQ(slice.chars(), "xxxxx");
    EXPECT_EQ(slice.chars().data(), address + 10);
}

TEST(Date, DescribesItselfInUTC)
{
    EXPECT_EQ(Date().description(), u"2001-01-01 00:00:00 +0000");
    EXPECT_EQ(Date::fromUnixSeconds(-0.5).description(), u"1969-12-31 23:59:59 +0000");
    EXPECT_EQ(Date { std::numeric_limits<double>::quiet_NaN() }.description(), u"nan");
    EXPECT_EQ(Date { 1e300 }.description(), u"1e+300");
}

TEST(Dictionary, AdoptsEntriesOfWhichTheLastOfAKeyCounts)
{
    const Dictionary adopted = Dictionary::adopt({ { u"a"_s, 1 }, { u"b"_s, 2 }, { u"a"_s, 3 } });
    EXPECT_EQ(adopted, (Dictionary { { u"a"_s, 3 }, { u"b"_s, 2 } }));
    EXPECT_EQ(adopted.begin()->key, u"a"_s);
    EXPECT_TRUE(Dictionary::adopt({}).isEmpty());
}

} // namespace
} // namespace caddis
