#include "platform/ipc/Wire.h"

#include "platform/base/Exception.h"
#include "platform/ipc/Message.h"
#include "support/Text.h"

#include <cstdlib>
#include <dbus/dbus.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <limits>
#include <sys/mman.h>

namespace caddis {
namespace {

using wire::Descriptors;

MessagePointer newMessage()
{
    MessagePointer message(dbus_message_new_method_call(nullptr, "/Test", "org.caddis.Test", "Test"));
    dbus_message_set_serial(message.get(), 1);
    return message;
}

// What the bytes of a message are to the process that receives them; null when that would hang up.
MessagePointer transmitted(const MessagePointer& message)
{
    char* bytes = nullptr;
    int count = 0;
    if (!dbus_message_marshal(message.get(), &bytes, &count))
        return nullptr;
    DBusError error = DBUS_ERROR_INIT;
    MessagePointer received(dbus_message_demarshal(bytes, count, &error));
    EXPECT_TRUE(received) << (error.message ? error.message : "");
    dbus_error_free(&error);
    dbus_free(bytes);
    return received;
}

std::optional<Value> roundTrip(const char* signature, const std::optional<Value>& value)
{
    const MessagePointer message = newMessage();
    wire::write(message.get(), signature, { value }, Descriptors::None);
    return wire::read(transmitted(message).get(), signature, DescriptorTrust::SealedOnly).at(0);
}

// The name of the exception that `work` throws; empty when it throws none.
template <typename Work> String errorOf(Work work)
{
    try {
        work();
        return {};
    } catch (const Exception& exception) {
        return exception.name();
    }
}

Value nested(int levels, bool dictionaries)
{
    Value value = Date { 1 };
    for (int level = 0; level < levels; ++level)
        value = dictionaries ? Value(Dictionary { { u"k"_s, value } }) : Value(Array { value });
    return value;
}

TEST(Wire, EveryKindOfValueComesBackAsItWas)
{
    const Value values[] = { true, false, 0, -1, std::numeric_limits<std::int64_t>::min(),
        std::numeric_limits<std::uint64_t>::max(), 0.1, u""_s, u"Zo\u00EB \U0001F600 \uFFFF"_s,
        String(std::u16string_view(u"a\0b", 3)), String(std::u16string_view(u"\xD800z", 2)), Data(),
        Data::copyOf(std::string_view("\0\xFF", 2)), Date::fromUnixSeconds(0), Date { 1e300 },
        *URL::fromString(u"file:///a%20b"_s), Array {}, Array { 1, Null(), Array { u"x"_s } }, Dictionary {},
        Dictionary { { u"z"_s, Null() }, { u"a"_s, Dictionary { { u""_s, 1.5 } } } } };
    for (const Value& value : values)
        EXPECT_EQ(roundTrip("v", value), value);
    EXPECT_EQ(roundTrip("v", 12.34F), Value(12.34000015258789));
}

TEST(Wire, NilIsNoValueAndNullIsOneInsideACollection)
{
    EXPECT_EQ(roundTrip("v", std::nullopt), std::nullopt);
    EXPECT_EQ(roundTrip("av", std::nullopt), std::nullopt);
    EXPECT_EQ(roundTrip("av", Data()), Value(Data()));
    EXPECT_EQ(roundTrip("aa{sv}", std::nullopt), std::nullopt);
    EXPECT_EQ(roundTrip("aa{sv}", Dictionary()), Value(Dictionary()));
    EXPECT_EQ(roundTrip("(uay)", std::nullopt), std::nullopt);
    const Array record { 0x75747874, Data::copyOf("x") };
    EXPECT_EQ(roundTrip("(uay)", record), Value(record));
}

TEST(Wire, NestingHasALimitThatReceiversCanRead)
{
    for (const bool dictionaries : { false, true }) {
        const Value deepest = nested(wire::MaximumNesting, dictionaries);
        EXPECT_EQ(roundTrip("v", deepest), deepest);
        const Value tooDeep = nested(wire::MaximumNesting + 1, dictionaries);
        EXPECT_EQ(errorOf([&] { roundTrip("v", tooDeep); }), LimitsExceededError);
    }
}

} // namespace
} // namespace caddis
