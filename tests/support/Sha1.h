#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <string>
#include <string_view>

namespace caddis {

/// The SHA-1 (FIPS 180-4) of some bytes, in hexadecimal: how lists of expected results name long data.
inline std::string sha1(std::string_view bytes)
{
    std::string message(bytes);
    message.push_back('\x80');
    while (message.size() % 64 != 56)
        message.push_back('\0');
    for (int shift = 56; shift >= 0; shift -= 8)
        message.push_back(static_cast<char>(std::uint64_t { bytes.size() } * 8 >> shift));

    std::array<std::uint32_t, 5> hash { 0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0 };
    for (std::size_t block = 0; block < message.size(); block += 64) {
        std::array<std::uint32_t, 80> words {};
        for (std::size_t index = 0; index < 64; ++index)
            words[index / 4] = words[index / 4] << 8 | static_cast<unsigned char>(message[block + index]);
        for (std::size_t index = 16; index < 80; ++index)
            words[index]
                = std::rotl(words[index - 3] ^ words[index - 8] ^ words[index - 14] ^ words[index - 16], 1);
        auto [a, b, c, d, e] = hash;
        for (std::size_t index = 0; index < 80; ++index) {
            const std::uint32_t choice = index < 20 ? ((b & c) | (~b & d)) + 0x5A827999
                : index < 40                        ? (b ^ c ^ d) + 0x6ED9EBA1
                : index < 60                        ? ((b & c) | (b & d) | (c & d)) + 0x8F1BBCDC
                                                    : (b ^ c ^ d) + 0xCA62C1D6;
            const std::uint32_t next = std::rotl(a, 5) + choice + e + words[index];
            e = d;
            d = c;
            c = std::rotl(b, 30);
            b = a;
            a = next;
        }
        hash = { hash[0] + a, hash[1] + b, hash[2] + c, hash[3] + d, hash[4] + e };
    }
    std::string text;
    for (const std::uint32_t word : hash) {
        for (int shift = 28; shift >= 0; shift -= 4)
            text.push_back("0123456789abcdef"[word >> shift & 15]);
    }
    return text;
}

} // namespace caddis
