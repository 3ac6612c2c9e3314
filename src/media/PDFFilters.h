#pragma once

#include "platform/pdf/PDFDocument.h"

/// Writing PDF documents through Quartz filters: what they make smaller are the pictures.
namespace caddis {

/// What a filter does.
///
/// A filter file (".qfilter") is a property list:
///
///     Name         Reduce File Size
///     FilterData   ColorSettings   ImageSettings
///         ImageCompression         "ImageJPEGCompress"; anything else packs without loss
///         Compression Quality      0 to 1, 0.5 when it is missing
///         ImageScaleSettings
///             ImageScaleFactor, ImageResolution (pixels an inch), ImageSizeMax, ImageSizeMin (pixels of the
///             longer side), ImageScaleInterpolate
///
/// Between ColorSettings and ImageSettings may stand DocumentColorSettings. Filters that only change colours
/// are not carried out. The form is that of the filters which the platform's own programs write.
struct QuartzFilter {
    String name;
    PDFImageSettings images;

    /// Nil when the list asks for nothing that is carried out.
    static std::optional<QuartzFilter> quartzFilterWithProperties(const Dictionary& properties);
    /// Nil when the file can't be read, too.
    static std::optional<QuartzFilter> quartzFilterWithContentsOfFile(const String& path);
    /// The first of that name in "~/Library/Filters", "/Library/Filters" and "/System/Library/Filters": the
    /// name of the file without ".qfilter", else the one inside it. Nil when there is none.
    static std::optional<QuartzFilter> quartzFilterNamed(const String& name);
};

inline namespace OstraPDFDocumentExtensions {

/// The document written through the filter. Nil when it can't be written: it is locked, damaged, or has more
/// than 300,000 objects.
std::optional<Data> dataRepresentationUsingQuartzFilter(
    const PDFDocument& document, const QuartzFilter& filter);
/// Nil when there is no such filter, too.
std::optional<Data> dataRepresentationUsingQuartzFilterNamed(const PDFDocument& document, const String& name);

enum class Interpolation : bool { None = false, Average = true };

/// Without a filter file. `compression` is the quality of JPEG, 0 to 1; `resolution` in pixels an inch where
/// a picture is drawn largest, 0 for any; `scaleFactor` is that of its sides.
std::optional<Data> dataRepresentationUsingQuartzFilterCompression(const PDFDocument& document,
    double compression, double resolution = 0, double scaleFactor = 1,
    Interpolation interpolation = Interpolation::Average);

} // namespace OstraPDFDocumentExtensions

} // namespace caddis
