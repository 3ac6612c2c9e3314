#include "markup/PlainTextContext.h"

#include "markup/Entities.h"
#include "markup/WhiteSpace.h"
#include "platform/base/UnitSearch.h"
#include "text/StringUtilities.h"

#include <algorithm>

namespace caddis {

namespace {

constexpr std::size_t ShortestWithEntity = 4;
constexpr std::size_t LongestRun = 10'000;
constexpr std::size_t LongestLink = 3'500;
constexpr std::ptrdiff_t LongestParagraph = 20'000; // 40,000 bytes

bool isWhite(char16_t unit) { return whiteCharacterSetRep().contains(unit); }

// Only the eight written forms, as they are written.
std::size_t convertWrittenEntities(std::u16string_view text, char16_t* out)
{
    static constexpr std::pair<std::u16string_view, char16_t> Forms[]
        = { { u"&quot;", u'"' }, { u"&amp;", u'&' }, { u"&lt;", u'<' }, { u"&gt;", u'>' }, { u"&#34;", u'"' },
              { u"&#38;", u'&' }, { u"&#60;", u'<' }, { u"&#62;", u'>' } };
    char16_t* const start = out;
    for (std::size_t at = 0; at < text.size();) {
        const auto* form = std::ranges::find_if(Forms,
            [rest = text.substr(at)](const auto& candidate) { return rest.starts_with(candidate.first); });
        *out++ = form != std::end(Forms) ? form->second : text[at];
        at += form != std::end(Forms) ? form->first.size() : 1;
    }
    return static_cast<std::size_t>(out - start);
}

bool isJunk(const PlainTextContext& context, std::u16string_view run)
{
    return context.options.removeJunk
        && ((run.size() > LongestRun && context.flowing)
            || (run.size() > LongestLink && context.linkDepth > 0));
}

// Kept on purpose: behind text of the same paragraph the space is written even where the output ends in one,
// between table cells and around code.
void writeOwedSpace(PlainTextContext& context)
{
    if (context.textSinceBreak
        || (context.flowing && context.cursor != context.start && !context.endsInWhite()))
        context.write(u' ');
}

// False, and nothing done, when there are ampersands and they are refused.
bool appendConverted(PlainTextContext& context, std::u16string_view run, Ampersands ampersands)
{
    if (run.empty())
        return true;
    const bool beganWhite = isWhite(run.front());
    const bool endedWhite = isWhite(run.back());
    if (context.flowing && (beganWhite || endedWhite)) {
        run = trimmingWhiteSpaces(run);
        if (run.empty()) {
            context.pendingSpace = true;
            return true;
        }
    }
    // A converted run stands one unit behind the cursor: the owed space does not touch it.
    char16_t* const before = context.cursor;
    if (beganWhite || context.pendingSpace)
        writeOwedSpace(context);
    const bool keepLines = !context.flowing && context.options.reformat;
    char16_t* const end
        = keepLines ? copyReformatted(run, context.cursor) : copyCollapsed(run, context.cursor, ampersands);
    context.cursor = end ? end : before;
    if (!end)
        return false;
    context.pendingSpace = endedWhite;
    context.textSinceBreak = context.textSinceBreak || end != before;
    return true;
}

} // namespace

std::u16string_view convertedEntities(const PlainTextContext& context, std::u16string_view run)
{
    const EntityConversion& conversion = context.conversion;
    if (run.size() < ShortestWithEntity || !conversion.any() || indexOfUnit<u'&'>(run, 0) == run.size())
        return run;
    char16_t* const out = context.cursor + 1;
    if (!conversion.entities)
        return { out, convertWrittenEntities(run, out) };
    return { out,
        convertEntities2Characters(
            run, out, { .quotes = conversion.stdEntities, .nonUmlauted = conversion.nonUmlauted }) };
}

void appendRangeToPlainText(PlainTextContext& context, std::u16string_view run)
{
    if (isJunk(context, run)) {
        context.didRemoveJunk = true;
        return;
    }
    // Most runs have no entity: they are looked for while copying.
    const bool converts = run.size() >= ShortestWithEntity && context.conversion.any();
    const bool copiesAtOnce = context.flowing || !context.options.reformat;
    if (!converts || !copiesAtOnce || !appendConverted(context, run, Ampersands::Refused))
        appendConverted(context, convertedEntities(context, run), Ampersands::Copied);
    if (context.options.removeJunk && context.cursor - context.paragraphStart > LongestParagraph) {
        context.cursor = context.paragraphStart;
        context.didRemoveJunk = true;
    }
}

} // namespace caddis
