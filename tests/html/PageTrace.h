#pragma once

#include "html/Page.h"

namespace caddis::html {

/// A page on one line: `html(body(p("text")))`.
inline std::string traceOf(const Page& page, NodeIndex node = 0)
{
    const Node& shown = page[node];
    if (shown.tag == Tag::Text)
        return '"' + String(shown.text).utf8() + '"';
    std::string trace = String(shown.text).utf8();
    for (NodeIndex child = shown.firstChild; child != NoNode; child = page[child].next)
        trace += (child == shown.firstChild ? "(" : " ") + traceOf(page, child);
    return shown.firstChild == NoNode ? trace : trace + ')';
}

} // namespace caddis::html
