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

TEST(Wire, DataBecomesADescriptorAbove128KiB)
{
    const auto attaches = [](std::size_t size, Descriptors descriptors) {
        const MessagePointer message = newMessage();
        const Value data = Data::adopt(std::vector<std::uint8_t>(size, 7));
        wire::write(message.get(), "v", { data }, descriptors);
        EXPECT_EQ(wire::read(message.get(), "v", DescriptorTrust::SealedOnly).at(0), data);
        return dbus_message_contains_unix_fds(message.get()) != 0;
    };
    EXPECT_FALSE(attaches(wire::InlineBytes - 1, Descriptors::Attached));
    EXPECT_FALSE(attaches(wire::InlineBytes, Descriptors::Attached));
    EXPECT_TRUE(attaches(wire::InlineBytes + 1, Descriptors::Attached));
    EXPECT_FALSE(attaches(wire::InlineBytes + 1, Descriptors::None));
    EXPECT_EQ(errorOf([&] { attaches(65 << 20, Descriptors::None); }), LimitsExceededError);
}

// One variant around `levels` more, and in the innermost what `type` and `value` say.
template <typename T> MessagePointer foreign(const char* type, T value, int levels = 0)
{
    MessagePointer message = newMessage();
    std::vector<DBusMessageIter> iters(static_cast<std::size_t>(levels) + 2);
    dbus_message_iter_init_append(message.get(), &iters[0]);
    for (std::size_t level = 1; level < iters.size(); ++level)
        dbus_message_iter_open_container(&iters[level - 1], DBUS_TYPE_VARIANT,
            level + 1 < iters.size() ? DBUS_TYPE_VARIANT_AS_STRING : type, &iters[level]);
    dbus_message_iter_append_basic(&iters.back(), *type, &value);
    for (std::size_t level = iters.size() - 1; level > 0; --level)
        dbus_message_iter_close_container(&iters[level - 1], &iters[level]);
    return message;
}

TEST(Wire, ReadsWhatOtherLibrariesSend)
{
    const auto readFrom = [](const MessagePointer& message) {
        return wire::read(message.get(), "v", DescriptorTrust::PlainFiles).at(0);
    };
    EXPECT_EQ(readFrom(foreign("y", std::uint8_t(200))), Value(200));
    EXPECT_EQ(readFrom(foreign("n", std::int16_t(-3))), Value(-3));
    EXPECT_EQ(readFrom(foreign("q", std::uint16_t(60000))), Value(60000));
    EXPECT_EQ(readFrom(foreign("u", std::uint32_t(4000000000))), Value(4000000000));
    EXPECT_EQ(readFrom(foreign("t", std::uint64_t(5))), Value(5));
    EXPECT_EQ(readFrom(foreign("o", "/a/b")), Value(u"/a/b"_s));
    EXPECT_EQ(readFrom(foreign("g", "a{sv}")), Value(u"a{sv}"_s));
    EXPECT_EQ(readFrom(foreign("i", 5, 10)), Value(5));
    EXPECT_EQ(errorOf([&] { readFrom(foreign("i", 5, 60)); }), InvalidArgsError);
    EXPECT_EQ(
        errorOf([&] { wire::read(newMessage().get(), "v", DescriptorTrust::PlainFiles); }), InvalidArgsError);
}

TEST(SharedBytes, TakesFilesOnlyAsFarAsTheyAreTrusted)
{
    const Data text = Data::copyOf("contents");
    const Descriptor sealed = sealedCopyOf(text.span());
    EXPECT_EQ(contentsOf(sealed, DescriptorTrust::SealedOnly), text);
    const Descriptor plain(memfd_create("plain", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    EXPECT_EQ(write(plain.number(), text.bytes(), text.size()), ssize_t(text.size()));
    EXPECT_EQ(contentsOf(plain, DescriptorTrust::SealedOnly), std::nullopt);
    EXPECT_EQ(contentsOf(plain, DescriptorTrust::PlainFiles), text);
    EXPECT_EQ(ftruncate(plain.number(), off_t(3) << 30), 0);
    EXPECT_EQ(contentsOf(plain, DescriptorTrust::PlainFiles), std::nullopt);
    const Descriptor folder(open("/", O_RDONLY | O_CLOEXEC));
    EXPECT_EQ(contentsOf(folder, DescriptorTrust::PlainFiles), std::nullopt);
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    const Descriptor in(ends[0]);
    const Descriptor out(ends[1]);
    EXPECT_EQ(contentsOf(in, DescriptorTrust::PlainFiles), std::nullopt);
    EXPECT_EQ(contentsOf(Descriptor(), DescriptorTrust::PlainFiles), std::nullopt);
}

} // namespace
} // namespace caddis
