#pragma once

#include <librevenge/librevenge.h>

namespace caddis::bundles {

/// Where a document's contents go, by what it turns out to be.
struct Receivers {
    librevenge::RVNGTextInterface& text;
    librevenge::RVNGSpreadsheetInterface& sheets;
    librevenge::RVNGPresentationInterface& slides;
    librevenge::RVNGDrawingInterface& drawing;
};

/// Reads a document of any of the old kinds with the library that knows it: iWork, WordPerfect, Works and
/// Lotus, the word processors of old Macintoshes, AbiWord, StarOffice, Visio, Publisher, FreeHand, PageMaker,
/// QuarkXPress, CorelDRAW, Zoner, and old e-books. False when none does. What receivers throw may come out.
bool readDocument(librevenge::RVNGInputStream& input, const Receivers& receivers);

} // namespace caddis::bundles
