#include "platform/unicode/SingleByteEncoding.h"

#include "platform/base/MutableString.h"
#include "platform/base/UnitSearch.h"

#include <algorithm>
#include <atomic>
#include <emmintrin.h>
#include <numeric>

namespace caddis::encodings {

namespace {

constexpr char16_t Undefined = 0xFFFD;
using Units = std::array<char16_t, 256>;

Units legacyUnits(const LegacyTable& table)
{
    Units units;
    std::iota(units.begin(), units.begin() + 0x80, u'\0');
    if (table.low)
        std::copy_n(table.low, 96, units.begin() + 0x20);
    std::copy_n(table.high, 128, units.begin() + 0x80);
    return units;
}

// The engine's answer for all bytes in a row; nil when it is not one unit for each.
std::optional<Units> engineUnits(const Row& row)
{
    std::string bytes(256, '\0');
    std::iota(bytes.begin(), bytes.end(), '\0');
    const Decoded decoded
        = row.engine == Engine::ICU8 ? decodeWithICU(row.name, bytes) : decodeWithIconv(row.name, bytes);
    if (decoded.text.length() != bytes.size())
        return std::nullopt;
    Units units;
    decoded.text.view().copy(units.data(), units.size());
    if (row.rotatesControls) {
        for (const char16_t control : { u'\u001A', u'\u001C', u'\u007F' })
            units[control] = control;
    }
    return units;
}

} // namespace

SingleByteEncoding::SingleByteEncoding(const Units& units, std::span<const Expansion> expansions)
    : m_units(units)
    , m_expansions(expansions)
{
    for (unsigned byte = 0; byte < 256; ++byte) {
        m_hasHoles = m_hasHoles || units[byte] == Undefined;
        m_holdsAscii = m_holdsAscii && (byte >= 0x80 || units[byte] == byte);
        const bool isExpansion = units[byte] == 0 && byte != 0;
        if (units[byte] != Undefined && !isExpansion)
            m_bytes.emplace_back(units[byte], static_cast<char>(byte));
    }
    // Of two bytes with the same meaning the lower one is written.
    std::ranges::stable_sort(m_bytes, {}, &std::pair<char16_t, char>::first);
}

const SingleByteEncoding* SingleByteEncoding::make(const Row& row)
{
    if (const LegacyTable* const table = legacyTableOf(row.encoding))
        return new SingleByteEncoding(legacyUnits(*table), table->expansions);
    const auto units = engineUnits(row);
    return units ? new SingleByteEncoding(*units, {}) : nullptr;
}

const SingleByteEncoding* SingleByteEncoding::of(const Row& row)
{
    static std::array<std::atomic<const SingleByteEncoding*>, RowLimit> made;
    std::atomic<const SingleByteEncoding*>& slot = made[numberOf(row)];
    const SingleByteEncoding* known = slot.load(std::memory_order_acquire);
    if (known)
        return known;
    const SingleByteEncoding* const mine = make(row);
    if (slot.compare_exchange_strong(known, mine, std::memory_order_acq_rel))
        return mine;
    delete mine; // Another thread was faster.
    return known;
}

String SingleByteEncoding::decodeExpanding(std::string_view bytes) const
{
    MutableString text(bytes.size());
    for (const char byte : bytes) {
        const char16_t unit = m_units[static_cast<unsigned char>(byte)];
        if (unit || !byte)
            text.append(unit);
        else
            text.append(
                std::ranges::find(m_expansions, static_cast<unsigned char>(byte), &Expansion::byte)->text);
    }
    return std::move(text).take();
}

// Sixteen bytes at a time: at once when they are ASCII, else each by the table.
void SingleByteEncoding::decodeInto(char16_t* out, std::string_view bytes) const
{
    const auto byTable = [&](std::size_t from, std::size_t count) {
        for (std::size_t index = from; index < from + count; ++index)
            out[index] = m_units[static_cast<unsigned char>(bytes[index])];
    };
    const __m128i zero = _mm_setzero_si128();
    std::size_t index = 0;
    for (; index + 16 <= bytes.size(); index += 16) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes.data() + index));
        if (!m_holdsAscii || _mm_movemask_epi8(block) != 0) {
            byTable(index, 16);
            continue;
        }
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + index), _mm_unpacklo_epi8(block, zero));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + index + 8), _mm_unpackhi_epi8(block, zero));
    }
    byTable(index, bytes.size() - index);
}

Decoded SingleByteEncoding::decode(std::string_view bytes) const
{
    Decoded result;
    if (m_expansions.empty()) {
        MutableString text;
        decodeInto(text.appendUninitialized(bytes.size()), bytes);
        result.text = std::move(text).take();
    } else {
        result.text = decodeExpanding(bytes);
    }
    result.wellFormed = !m_hasHoles || indexOfUnit<Undefined>(result.text, 0) == result.text.length();
    return result;
}

std::optional<std::string> SingleByteEncoding::encode(std::u16string_view text) const
{
    std::string bytes;
    bytes.reserve(text.size());
    for (const char16_t unit : text) {
        if (m_holdsAscii && unit < 0x80) {
            bytes += static_cast<char>(unit);
            continue;
        }
        const auto found = std::ranges::lower_bound(m_bytes, unit, {}, &std::pair<char16_t, char>::first);
        if (found == m_bytes.end() || found->first != unit)
            return std::nullopt;
        bytes += found->second;
    }
    return bytes;
}

} // namespace caddis::encodings
