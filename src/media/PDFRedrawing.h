#pragma once

#include "platform/pdf/PDFContext.h"
#include "platform/pdf/PDFDocument.h"
#include "platform/pdf/PDFImageRep.h"

/// Drawing pages anew, into a PDF that holds nothing but what the pages show.
namespace caddis {

inline namespace OstraPDFPageExtensions {

/// The page, taken out of its document, as an image; nil when it can't be taken out.
std::optional<PDFImageRep> imageRepresentation(const PDFPage& page);

/// Saves the context's graphics state and puts the box's lower left corner at the origin, the way the page is
/// shown.
void willDrawToContext(const PDFPage& page, PDFContext& context, PDFDisplayBox box);
/// Restores the graphics state.
void didDrawToContext(const PDFPage& page, PDFContext& context);

} // namespace OstraPDFPageExtensions

inline namespace OstraPDFDocumentExtensions {

/// Draws every page into `context`, with its media box and its annotations, but without their appearance
/// streams
/// ("/AP"): the program that shows the page draws them from what they are. An annotation that is nothing but
/// its appearance is left out.
void _drawToPDFContext(const PDFDocument& document, PDFContext& context);

/// The document for writing out. On the platform releases whose own writing is at fault it is redrawn, where
/// that loses nothing: no outline, no rotated page, no annotation but links. Title, author, subject, creator
/// and keywords are kept. Else, and when redrawing fails, it is the plain dataRepresentation.
Data fixedDataRepresentation(const PDFDocument& document);

/// The same with options. "PDFDocumentUserPasswordOption", "PDFDocumentOwnerPasswordOption": strings for
/// which the result is encrypted; who knows the user's is the owner when only that one is given. "Redraw":
/// true redraws on every release, where that loses nothing. Nil: it could not be encrypted.
std::optional<Data> fixedDataRepresentationWithOptions(
    const PDFDocument& document, const Dictionary& options);

} // namespace OstraPDFDocumentExtensions

} // namespace caddis
