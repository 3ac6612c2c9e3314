#include "platform/base/LeftOut.h"

#include <algorithm>
#include <utility>

namespace caddis {

namespace {

constexpr std::size_t MostNotes = 8;

thread_local std::vector<String> notes;

} // namespace

void noteLeftOut(std::u16string_view what)
{
    const auto isSame = [&](const String& note) { return note.view() == what; };
    if (notes.size() < MostNotes && std::ranges::none_of(notes, isSame))
        notes.emplace_back(what);
}

std::vector<String> takeLeftOut() { return std::exchange(notes, {}); }

} // namespace caddis
