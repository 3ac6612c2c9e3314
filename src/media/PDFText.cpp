#include "media/PDFText.h"

#include "platform/base/Exception.h"
#include "platform/base/Format.h"
#include "platform/base/LeftOut.h"
#include "text/TextRepair.h"

#include <algorithm>

namespace caddis {

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr std::size_t UnitsPerPage = 2048;
constexpr std::size_t MostUnitsReserved
    = 16 * 1024 * 1024; // A damaged document may claim any number of pages.
constexpr std::size_t PagesWithLabels = 100;

// A guard that does not log: what a page throws only means that it has no text.
template <typename Work> std::invoke_result_t<Work&> withoutExceptions(Work&& work)
{
    try {
        return work();
    } catch (const Exception&) {
        return std::invoke_result_t<Work&>();
    }
}

MutableString repaired(const String& text)
{
    MutableString copy(text.length());
    copy.append(text);
    fixAndNormalizeString(copy);
    return copy;
}

void appendText(MutableString& result, const PDFDocument& document, std::size_t index, PDFDeadline deadline)
{
    withoutExceptions([&] {
        const auto page = document.pageAtIndex(index);
        const auto text = page ? page->string(deadline) : std::nullopt;
        if (text && !text->isEmpty())
            result.append(repaired(*text).view()).append(u'\n');
    });
}

} // namespace

inline namespace OstraPDFPageExtensions {

std::optional<String> fixedAndNormalizedString(const PDFPage& page)
{
    return withoutExceptions([&]() -> std::optional<String> {
        const auto text = page.string();
        return text && !text->isEmpty() ? std::optional(repaired(*text).take()) : std::nullopt;
    });
}

void fixPage(const PDFPage& page)
{
    withoutExceptions([&] { static_cast<void>(page.description()); });
}

} // namespace OstraPDFPageExtensions

inline namespace OstraPDFDocumentExtensions {

std::optional<String> fixedAndNormalizedString(const PDFDocument& document, double timeout)
{
    const std::size_t pages = document.pageCount();
    if (pages == 0)
        return std::nullopt;
    const Clock::time_point start = Clock::now();
    const bool isLimited = timeout > 0;
    PDFDeadline deadline;
    if (isLimited)
        deadline = start + std::chrono::duration_cast<Clock::duration>(Seconds(std::min(timeout, 1e9)));

    MutableString result(std::min(pages, MostUnitsReserved / UnitsPerPage) * UnitsPerPage);
    for (std::size_t index = 0; index < pages; ++index) {
        const Clock::time_point pageStart = isLimited ? Clock::now() : start;
        appendText(result, document, index, deadline);
        if (!isLimited)
            continue;
        // Kept on purpose: the page's own time counts twice, in both parts of the sum.
        const Clock::time_point now = Clock::now();
        if (Seconds(now - start).count() + Seconds(now - pageStart).count() >= timeout) {
            if (index + 1 < pages)
                noteLeftOut(u"pages that were not read in time");
            break;
        }
    }
    return std::move(result).take();
}

std::optional<String> longestLabel(const PDFDocument& document)
{
    const std::size_t pages = document.pageCount();
    if (pages == 0)
        return std::nullopt;
    String longest = format(u"%d", pages);
    for (std::size_t index = 0; index < std::min(pages, PagesWithLabels); ++index) {
        const auto page = document.pageAtIndex(index);
        const String label = page ? page->label() : String();
        if (label.length() > longest.length())
            longest = label;
    }
    return longest;
}

} // namespace OstraPDFDocumentExtensions

} // namespace caddis
