#include "platform/dates/ZoneRules.h"

#include <gtest/gtest.h>

#include <string>

namespace caddis {
namespace {

constexpr int Hour = 3600;

std::string bigEndian(std::int64_t value, int bytes)
{
    std::string result;
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8)
        result += static_cast<char>(value >> shift);
    return result;
}

struct Block {
    std::vector<std::pair<std::int64_t, int>> transitions; // from when, which type
    std::vector<int> offsets; // by type

    std::string bytes(char version, int timeSize) const
    {
        const auto count = [](std::size_t number) { return bigEndian(static_cast<std::int64_t>(number), 4); };
        std::string result = std::string("TZif") + version + std::string(15, '\0');
        result
            += count(0) + count(0) + count(0) + count(transitions.size()) + count(offsets.size()) + count(4);
        for (const auto& [from, type] : transitions)
            result += bigEndian(from, timeSize);
        for (const auto& [from, type] : transitions)
            result += static_cast<char>(type);
        for (const int offset : offsets)
            result += bigEndian(offset, 4) + std::string(2, '\0');
        return result + std::string("LMT\0", 4);
    }
};

std::optional<ZoneRules> rules(std::string_view bytes)
{
    return ZoneRules::fromFile(std::as_bytes(std::span(bytes)));
}

const Block TwoChanges { { { 1000, 1 }, { 2000, 0 } }, { Hour, 2 * Hour } };

TEST(ZoneRules, FollowsTheTransitionsAndThenTheRule)
{
    const Block now { { { -5'000'000'000, 0 }, { 1000, 1 } }, { -Hour, Hour } };
    const auto zone = rules(TwoChanges.bytes('2', 4) + now.bytes('2', 8) + "\nCET-1CEST,M3.5.0,M10.5.0/3\n");
    ASSERT_TRUE(zone);
    EXPECT_EQ(zone->offsetAt(-6'000'000'000), -Hour);
    EXPECT_EQ(zone->offsetAt(999), -Hour);
    EXPECT_EQ(zone->offsetAt(1'711'846'799), Hour); // 31 March 2024, 00:59:59
    EXPECT_EQ(zone->offsetAt(1'711'846'800), 2 * Hour);
    EXPECT_EQ(zone->offsetAt(1'729'990'800), Hour); // 27 October 2024, 01:00:00
}

TEST(ZoneRules, ReadsTheFirstVersion)
{
    const auto zone = rules(TwoChanges.bytes('\0', 4));
    ASSERT_TRUE(zone);
    EXPECT_EQ(zone->offsetAt(999), Hour);
    EXPECT_EQ(zone->offsetAt(1000), 2 * Hour);
    EXPECT_EQ(zone->offsetAt(2000), Hour);
}

TEST(ZoneRules, RefusesDamagedFiles)
{
    const std::string sound = TwoChanges.bytes('2', 4) + TwoChanges.bytes('2', 8);
    ASSERT_TRUE(rules(sound));
    for (std::size_t length = 0; length < sound.size(); ++length)
        EXPECT_FALSE(rules(sound.substr(0, length))) << length;
    EXPECT_FALSE(rules(Block { { { 2000, 0 }, { 1000, 0 } }, { 0 } }.bytes('\0', 4))) << "times go back";
    EXPECT_FALSE(rules(Block { { { 1000, 7 } }, { 0 } }.bytes('\0', 4))) << "no such type";
    EXPECT_FALSE(rules(Block { {}, { 27 * Hour } }.bytes('\0', 4))) << "no such offset";
    EXPECT_FALSE(rules(Block {}.bytes('\0', 4))) << "no type";
    std::string huge = sound;
    huge.replace(32, 4, "\xFF\xFF\xFF\xFF");
    EXPECT_FALSE(rules(huge));
}

TEST(PosixZoneRule, ReadsEveryFormOfARule)
{
    constexpr std::int64_t July2023 = 1688169600;
    constexpr std::int64_t January2024 = 1704067200;
    const auto offsets = [](std::u16string_view text) {
        const auto rule = PosixZoneRule::parse(text);
        return rule ? std::pair(rule->offsetAt(July2023), rule->offsetAt(January2024)) : std::pair(-1, -1);
    };
    EXPECT_EQ(offsets(u"<+0330>-3:30"), std::pair(Hour * 7 / 2, Hour * 7 / 2));
    EXPECT_EQ(offsets(u"EST5EDT"), std::pair(-4 * Hour, -5 * Hour));
    EXPECT_EQ(offsets(u"AEST-10AEDT,M10.1.0,M4.1.0/3"), std::pair(10 * Hour, 11 * Hour))
        << "over the new year";
    EXPECT_EQ(offsets(u"IST-1GMT0,M10.5.0,M3.5.0/1"), std::pair(Hour, 0)) << "daylight time that is winter";
    EXPECT_EQ(offsets(u"XXX3YYY,J60/0,J300"), std::pair(-2 * Hour, -3 * Hour));
    EXPECT_EQ(offsets(u"XXX3YYY,0/0,365/25"), std::pair(-2 * Hour, -2 * Hour)) << "daylight time all year";
}

TEST(PosixZoneRule, RefusesWhatIsNone)
{
    for (const auto* text :
        { u"", u"CE-1", u"CET", u"CET-25", u"CET-1CEST,M3.5.0", u"CET-1CEST,M13.1.0,M1.1.0",
            u"CET-1CEST,M3.6.0,M10.5.0", u"CET-1CEST,M3.5.7,M10.5.0", u"CET-1CEST,J0,J1", u"CET-1CEST,1,366",
            u"CET-1CEST,M3.5.0,M10.5.0/168", u"CET-1CEST,M3.5.0,M10.5.0x", u"<CET-1", u"CET-1:60" })
        EXPECT_FALSE(PosixZoneRule::parse(text))
            << std::string(text, text + std::u16string_view(text).size());
}

} // namespace
} // namespace caddis
