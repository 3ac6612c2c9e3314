#pragma once

#include "html/CSSDeclarations.h"
#include "html/CSSSelector.h"
#include "platform/base/String.h"

namespace caddis::css {

/// A style sheet, read once: rules as they stand, those of @media, @supports and @layer blocks among them
/// where the blocks apply to a screen of 1024 by 768.
struct StyleSheet {
    struct Block {
        std::uint32_t first; ///< index into declarations
        std::uint32_t count;
    };
    struct Rule {
        Selector selector;
        std::uint32_t block; ///< index into blocks
        bool isLayered; ///< yields to rules outside layers
    };

    String source {}; ///< what the texts in it are views into
    std::vector<String> imports {}; ///< the addresses of @import rules that apply, as written
    std::vector<Declaration> declarations {};
    std::vector<Block> blocks {};
    std::vector<Rule> rules {};
};

/// Every text is a style sheet; what is not understood is passed over. Linear in the text, at most 200,000
/// rules.
StyleSheet parseStyleSheet(const String& source);

/// Whether a media query list ("screen and (max-width: 60em), print") applies; an empty one does.
bool mediaApply(std::u16string_view queries);

} // namespace caddis::css
