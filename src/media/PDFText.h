#pragma once

#include "platform/pdf/PDFDocument.h"

/// The text of PDF documents and pages. What one page throws is that page's affair: the others still give
/// theirs.
namespace caddis {

inline namespace OstraPDFPageExtensions {

/// The page's text, repaired and normalised. Nil when it has none, or when the page throws.
std::optional<String> fixedAndNormalizedString(const PDFPage& page);

/// Asks the page for its description, whatever it throws: this makes sure that the page is loaded.
void fixPage(const PDFPage& page);

} // namespace OstraPDFPageExtensions

inline namespace OstraPDFDocumentExtensions {

/// The text of all pages in order, each repaired and normalised and followed by U+000A; pages without text
/// leave nothing. Nil for a document without pages; the empty string when no page has text.
///
/// `timeout`, in seconds, ends the work when it is above 0: after the page at whose end the time since the
/// start and the time spent on that page together reach it, and inside a page when the time since the start
/// does. The text until there is the result.
std::optional<String> fixedAndNormalizedString(const PDFDocument& document, double timeout = 0);

/// The widest page label, for sizing a page-number field: the longest, in UTF-16 units, of the number of
/// pages and the labels of the first 100 pages. Nil for a document without pages.
std::optional<String> longestLabel(const PDFDocument& document);

} // namespace OstraPDFDocumentExtensions

} // namespace caddis
