// The values that an importer fills in.
//
// Each byte pair is one call of the host's functions on values that the importer holds. Invariants: what
// comes of it has at most one value a call; the circles and the sharing that are tried end nowhere; nothing
// is left over (the sanitizer sees that).

#include "Fuzz.h"
#include "ValueCount.h"
#include "platform/plugin/ImporterValues.h"

#include <array>

namespace {

using namespace caddis;

void replaceValue(CaddisValue*& place, CaddisValue* value)
{
    importerHost().release(place);
    place = value;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const CaddisHost& host = importerHost();
    constexpr std::array Keys { "a", "b", "kMDItemTextContent", "d" };
    const Dictionary result = attributesOfImport([&](CaddisValue* attributes) {
        std::array<CaddisValue*, 8> held {};
        held[0] = attributes;
        for (std::size_t at = 0; at + 1 < size; at += 2) {
            CaddisValue*& left = held[data[at] >> 3U & 7U];
            CaddisValue*& right = held[1 + data[at + 1] % 7];
            const char* key = Keys[data[at + 1] >> 3U & 3U];
            switch (data[at] & 7U) {
            case 0:
                replaceValue(right, host.make(static_cast<CaddisKind>(data[at] >> 4U), "12345678", 8));
                break;
            case 1:
                host.retain(right);
                host.append(left, right);
                break;
            case 2:
                host.retain(right);
                host.set(left, key, right);
                break;
            case 3:
                replaceValue(right, nullptr);
                break;
            case 4:
                host.add_string(left, key, "text", 4);
                break;
            case 5:
                host.append_text(left, "text", data[at + 1] % 5);
                break;
            case 6:
                INVARIANT(!host.get(left, key) || host.kind(host.get(left, key)) <= CADDIS_DICTIONARY);
                break;
            default:
                host.set_integer(left, key, data[at + 1]);
            }
        }
        for (std::size_t i = 1; i < held.size(); ++i)
            host.release(held[i]);
    });
    INVARIANT(countOf(result) <= 2 * size + 1);
    return 0;
}
