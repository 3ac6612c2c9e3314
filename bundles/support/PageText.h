#pragma once

#include "markup/Html2Text.h"

namespace caddis::bundles {

/// What a page shows. For bundles that depend on `markup`.
inline String plainTextOfPage(const String& html)
{
    return stringByConvertingHtml2PlainTextNonUmlauted(html, false, { .reformat = true, .onlyBody = true })
        .text;
}

} // namespace caddis::bundles
