#pragma once

#include "platform/base/Data.h"
#include "platform/base/Geometry.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

/// What PDF documents and pages answer with. Lengths are points (1/72 inch) of the page's own coordinates:
/// the origin at the lower left, before the page's rotation.
namespace caddis {

/// The page's boxes (ISO 32000-1, 14.11.2). A missing box is the crop box, a missing crop box the media box.
enum class PDFDisplayBox { Media, Crop, Bleed, Trim, Art };

/// When work on a page ends at the latest; none means no limit.
using PDFDeadline = std::optional<std::chrono::steady_clock::time_point>;

/// How text is set.
struct PDFTextStyle {
    String fontName; ///< as "Helvetica-Bold", without the tag of a subset; empty when the font has none
    double size = 0; ///< points on the page, to a tenth
    bool bold = false;
    bool italic = false;

    friend bool operator==(const PDFTextStyle&, const PDFTextStyle&) = default;
};

/// A stretch of text in one style.
struct PDFTextRun {
    std::size_t length = 0; ///< UTF-16 units
    PDFTextStyle style;
};

/// Text, and its runs from its beginning to its end. A blank or a line end belongs to what is before it.
struct PDFStyledText {
    String string;
    std::vector<PDFTextRun> runs;
};

/// One annotation of a page: its place and the entries of its dictionary.
struct PDFAnnotation {
    std::size_t index = 0; ///< in the page's array of annotations
    String subtype; ///< "Link", "Text", "Widget" …; empty when the dictionary has none
    std::vector<String> keys; ///< with their slash, as "/Rect"

    bool isLink() const { return subtype == u"Link"; }
};

/// A place in the document (ISO 32000-1, 12.3.2.2).
struct PDFDestination {
    std::size_t pageIndex = 0;
    String kind; ///< "XYZ", "Fit", "FitH" …
    std::vector<std::optional<double>> numbers; ///< those behind the kind; nil keeps what is shown
};

/// One line of the table of contents; the list holds them in reading order.
struct PDFOutlineItem {
    String label;
    std::size_t level = 0; ///< 0 for the children of the root
    std::optional<std::size_t> pageIndex; ///< where it leads to inside the document
};

/// What opens an encrypted document: for reading, and for everything. An empty one is a password too.
struct PDFPasswords {
    String user;
    String owner;
};

/// What the pictures of a document become when it is written.
struct PDFImageSettings {
    std::optional<double> quality; ///< as JPEG of this quality, 0 to 1; nil: without loss
    double scale = 1; ///< of their sides; they never grow
    double resolution = 0; ///< at most so many pixels an inch where they are drawn largest; 0: any
    std::uint32_t largestSide = 0; ///< at most so many pixels on the longer side; 0: any
    std::uint32_t smallestSide = 0; ///< with so many or fewer on it they are not scaled
    bool interpolates = true; ///< pixels are averaged; else one of them stands for all
};

/// What part of a page is drawn, and into how many pixels.
struct PDFRasterRequest {
    PDFDisplayBox box = PDFDisplayBox::Crop;
    /// In points of the box as it is shown, rotated, origin at its lower left; nil for all of it.
    std::optional<Rect> source {};
    std::uint32_t pixelsWide = 0;
    std::uint32_t pixelsHigh = 0;
    std::uint32_t background = 0xFFFFFF; ///< 0xRRGGBB
    PDFDeadline deadline {};
};

/// Opaque pixels, rows from the top, 4 bytes each: red, green, blue, 255.
struct PDFRaster {
    std::uint32_t pixelsWide = 0;
    std::uint32_t pixelsHigh = 0;
    Data pixels;
};

} // namespace caddis
