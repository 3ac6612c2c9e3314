#include "platform/script/FlattenedDescriptor.h"

#include "support/Text.h"

namespace caddis {
namespace {

std::string hex(const Data& data)
{
    std::string text;
    for (std::size_t index = 0; index < data.size(); ++index) {
        char byte[4];
        std::snprintf(byte, sizeof byte, index % 4 == 3 ? "%02x " : "%02x", data.bytes()[index]);
        text += byte;
    }
    if (text.ends_with(' '))
        text.pop_back();
    return text;
}

EventDescriptor text(std::u16string_view units) { return EventDescriptor::withString(String(units)); }

const EventDescriptor listOfOneAndText
    = EventDescriptor::list({ EventDescriptor::withInt32(1), text(u"ab") });
const EventDescriptor userRecord
    = EventDescriptor::record({ { "usrf"_code, EventDescriptor::list({ text(u"a"), text(u"b") }) } });
const EventDescriptor listOfEmptyList = EventDescriptor::list({ EventDescriptor::list({}) });

TEST(FlattenedDescriptor, WritesTheBytesThatOtherProgramsWrite)
{
    EXPECT_EQ(hex(flattenDescriptor(listOfOneAndText)),
        "646c6532 00000000 6c697374 00000030 00000000 00000000 00000018 6c697374 00000002 00000000 "
        "6c6f6e67 00000004 00000001 75747874 00000004 00610062");
    EXPECT_EQ(hex(flattenDescriptor(userRecord)),
        "646c6532 00000000 7265636f 00000040 00000000 00000000 00000018 7265636f 00000001 00000000 "
        "75737266 6c697374 0000001c 00000002 00000000 75747874 00000002 00617574 78740000 00020062");
    EXPECT_EQ(hex(flattenDescriptor(listOfEmptyList)),
        "646c6532 00000000 6c697374 00000028 00000000 00000000 00000018 6c697374 00000001 00000000 "
        "6c697374 00000008 00000000 00000000");
    EXPECT_EQ(hex(flattenDescriptor(EventDescriptor())), "646c6532 00000000 6e756c6c 00000000");
}

TEST(FlattenedDescriptor, PadsOddDataAndTurnsCodesAndDatesAround)
{
    const auto odd = EventDescriptor::list({ EventDescriptor("TEXT"_code, Data::copyOf("/")),
        EventDescriptor::withCode("type"_code, "Test"_code) });
    EXPECT_EQ(hex(flattenDescriptor(odd)),
        "646c6532 00000000 6c697374 0000002e 00000000 00000000 00000018 6c697374 00000002 00000000 "
        "54455854 00000001 2f007479 70650000 00045465 7374");
    const std::int64_t seconds = 3'061'152'000; // 2001-01-01 00:00:00
    const EventDescriptor date(
        "ldt "_code, Data::copyOf({ reinterpret_cast<const char*>(&seconds), sizeof seconds }));
    EXPECT_TRUE(hex(flattenDescriptor(EventDescriptor::list({ date })))
                    .ends_with("6c647420 00000008 00000000 b6757900"));
}

TEST(FlattenedDescriptor, ComesBackAsItWas)
{
    const auto deep = EventDescriptor::list(
        { listOfOneAndText, userRecord, listOfEmptyList, EventDescriptor(), EventDescriptor::withDouble(-1.5),
            EventDescriptor("TEXT"_code, Data::copyOf("odd")), EventDescriptor::withBoolean(true) });
    for (const auto& descriptor : { deep, listOfOneAndText, userRecord, text(u"ä"), EventDescriptor() })
        EXPECT_EQ(unflattenDescriptor(flattenDescriptor(descriptor)), descriptor);
    EXPECT_EQ(EventDescriptor::fromTypeAndData(deep.descriptorType(), deep.data()), deep);
    EXPECT_EQ(EventDescriptor::fromTypeAndData("reco"_code, deep.data()).numberOfItems(), 0U);
}

TEST(FlattenedDescriptor, RefusesLengthsAndCountsBeyondTheData)
{
    const Data good = flattenDescriptor(listOfOneAndText);
    for (std::size_t length = 0; length < good.size(); ++length)
        EXPECT_FALSE(unflattenDescriptor(good.slice({ 0, length }))) << length;
    for (const std::size_t place : { 15U, 35U, 47U, 59U }) {
        std::string bytes(good.chars());
        bytes[place] = '\x7f';
        EXPECT_FALSE(unflattenDescriptor(Data::adopt(std::move(bytes)))) << place;
    }
    EventDescriptor nested;
    for (std::size_t depth = 0; depth <= MaximumDescriptorDepth; ++depth)
        nested = EventDescriptor::list({ nested });
    EXPECT_FALSE(unflattenDescriptor(flattenDescriptor(nested)));
}

TEST(EventDescriptor, CoercesScalarsToTextAndNumbers)
{
    EXPECT_EQ(EventDescriptor::withInt32(-7).stringValue(), u"-7"_s);
    EXPECT_EQ(EventDescriptor::withDouble(1.5).stringValue(), u"1.5"_s);
    EXPECT_EQ(EventDescriptor("utf8"_code, Data::copyOf("\xC3\xA4")).stringValue(), u"ä"_s);
    EXPECT_EQ(EventDescriptor("TEXT"_code, Data::copyOf("\x8A")).stringValue(), u"ä"_s);
    EXPECT_EQ(EventDescriptor("ut16"_code, Data::copyOf(std::string_view("\0a", 2))).stringValue(), u"a"_s);
    EXPECT_EQ(text(u"12").int32Value(), 12);
    EXPECT_EQ(text(u"12x").int32Value(), std::nullopt);
    EXPECT_EQ(EventDescriptor("long"_code, Data::copyOf("ab")).int32Value(), std::nullopt);
    EXPECT_EQ(EventDescriptor::withBoolean(false).booleanValue(), false);
    EXPECT_EQ(listOfOneAndText.stringValue(), std::nullopt);
}

} // namespace
} // namespace caddis
