#pragma once

#include "platform/pdf/PDFTypes.h"
#include "platform/pdf/engine/Font.h"

#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace caddis::pdf {

/// The styles that a page's text is set in, numbered as they come up. Sizes are told apart to a tenth of a
/// point.
class TextStyles {
public:
    using Number = std::uint16_t;

    /// A page with more styles than there are numbers has its last ones as one.
    Number numberOf(const std::shared_ptr<Font>& font, double points);
    const PDFTextStyle& operator[](Number number) const { return m_styles[number]; }

private:
    using Key = std::pair<std::shared_ptr<Font>, long>; ///< font and tenths of points

    std::vector<PDFTextStyle> m_styles;
    std::map<Key, Number> m_numbers;
};

} // namespace caddis::pdf
