#pragma once

#include "markup/HtmlTags.h"
#include "markup/PlainTextContext.h"
#include "markup/TagScanner.h"

namespace caddis {

/// Lays the text out in lines and paragraphs, without what is not to be seen.
///
/// The output is never longer than the input by more than one unit: a run writes one unit more than it has at
/// most, a tag two, or an image's text and one; and a tag has three units at least when it writes any, two
/// when not. Only the last run has no tag behind it.
struct PlainTextHandler {
    PlainTextContext& context;

    Scan operator()(const TagEvent& event);

private:
    bool mayWrite(const TagEvent& event) const;
    void handleText(const TagEvent& event);
    void handleComment(const TagEvent& event);
    void handleDepth(const TagEvent& event, HtmlTag tag);
    void handleBreak(const HtmlTagRow& row);
    void handleState(const TagEvent& event, HtmlTag tag);
    void handleBody(const TagEvent& event);
    void handleFont(const TagEvent& event);
    void handleImage(const TagEvent& event);

    void lookForJunk(std::u16string_view run);
    void writeBreak(unsigned lineFeeds);
};

/// Collects the body's text runs, one space before each. The output has the same bound: all runs but the last
/// have a tag behind them.
struct SimplePlainTextHandler {
    PlainTextContext& context;

    Scan operator()(const TagEvent& event);
};

} // namespace caddis
