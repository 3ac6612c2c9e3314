#include "platform/pdf/engine/TextStyles.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace caddis::pdf {

namespace {

constexpr double LargestSize = 1e6; // Points.

} // namespace

TextStyles::Number TextStyles::numberOf(const std::shared_ptr<Font>& font, double points)
{
    const long tenths = std::lround(std::min(points, LargestSize) * 10);
    const auto [entry, isNew] = m_numbers.try_emplace({ font, tenths }, static_cast<Number>(m_styles.size()));
    if (isNew && m_styles.size() > std::numeric_limits<Number>::max()) {
        m_numbers.erase(entry);
        return std::numeric_limits<Number>::max();
    }
    if (isNew) {
        const FontTraits traits = font->traits();
        m_styles.push_back({ traits.name, static_cast<double>(tenths) / 10, traits.bold, traits.italic });
    }
    return entry->second;
}

} // namespace caddis::pdf
