#include "platform/preview/MD5.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace caddis {

namespace {

using State = std::array<std::uint32_t, 4>;

constexpr std::size_t BlockSize = 64;

// RFC 1321, 3.4: the whole parts of 2^32 times the sines of 1 to 64 radians.
std::array<std::uint32_t, 64> sines()
{
    std::array<std::uint32_t, 64> table {};
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = static_cast<std::uint32_t>(std::floor(std::abs(std::sin(double(i + 1))) * 4294967296.0));
    return table;
}

struct Step {
    std::uint32_t mixed;
    std::size_t word;
};

Step step(std::size_t i, const State& s)
{
    const auto [a, b, c, d] = s;
    switch (i / 16) {
    case 0:
        return { (b & c) | (~b & d), i };
    case 1:
        return { (d & b) | (~d & c), (5 * i + 1) % 16 };
    case 2:
        return { b ^ c ^ d, (3 * i + 5) % 16 };
    default:
        return { c ^ (b | ~d), 7 * i % 16 };
    }
}

void addBlock(State& state, const char* block)
{
    static const auto table = sines();
    constexpr int shifts[4][4]
        = { { 7, 12, 17, 22 }, { 5, 9, 14, 20 }, { 4, 11, 16, 23 }, { 6, 10, 15, 21 } };
    std::array<std::uint32_t, 16> words {};
    std::memcpy(words.data(), block, BlockSize); // The machine is little-endian, as the digest is.
    State s = state;
    for (std::size_t i = 0; i < table.size(); ++i) {
        const auto [mixed, word] = step(i, s);
        const std::uint32_t sum = s[0] + mixed + table[i] + words[word];
        s = { s[3], s[1] + std::rotl(sum, shifts[i / 16][i % 4]), s[1], s[2] };
    }
    for (std::size_t i = 0; i < state.size(); ++i)
        state[i] += s[i];
}

} // namespace

std::string MD5(std::string_view bytes)
{
    std::string padded(bytes);
    padded += '\x80';
    padded.resize((padded.size() + 8 + BlockSize - 1) / BlockSize * BlockSize);
    const std::uint64_t bits = std::uint64_t { bytes.size() } * 8;
    std::memcpy(padded.data() + padded.size() - sizeof bits, &bits, sizeof bits);
    State state { 0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476 };
    for (std::size_t place = 0; place < padded.size(); place += BlockSize)
        addBlock(state, padded.data() + place);
    constexpr char Digits[] = "0123456789abcdef";
    std::string text;
    for (const std::uint32_t word : state) {
        for (int shift = 0; shift < 32; shift += 8) {
            text += Digits[word >> (shift + 4) & 15];
            text += Digits[word >> shift & 15];
        }
    }
    return text;
}

} // namespace caddis
