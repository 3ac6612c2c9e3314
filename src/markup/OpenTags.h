#pragma once

#include "markup/MaskedText.h"

#include <array>
#include <vector>

namespace caddis {

/// Where an element's tag ends, by the plain rules: quotes, opened only behind an equals sign, protect a '>'.
///
/// Tags follow each other, so that each unit is looked at once; except when a script's closing tag stands in
/// a value of its own opening tag, and the scan goes on far before the end that was looked for. A text full
/// of those would take quadratic time. From the first return on, the ends are therefore read from an index.
class OpenTags {
public:
    explicit OpenTags(MaskedText& text)
        : m_text(text)
    {
    }

    /// The '>' that ends the tag at `tag`, else NotFound. Asked with rising positions.
    std::size_t closingBracket(std::size_t tag);
    /// The scan goes back behind a tag that was asked for.
    void expectReturns() { m_returning = true; }

private:
    enum State : unsigned char { Outside, AfterEquals, InDouble, InSingle };
    // Per state at a block's beginning, the '>' that ends the tag.
    using Ends = std::array<std::size_t, 4>;

    unsigned follow(std::size_t block, unsigned from, State& state);
    void buildIndex(std::size_t firstBlock);

    MaskedText& m_text;
    bool m_returning = false;
    std::size_t m_indexStart = 0;
    std::vector<Ends> m_index;
};

} // namespace caddis
