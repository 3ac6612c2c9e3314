#pragma once

#include "platform/image/ImageSource.h"
#include "platform/pdf/PDFImageRep.h"

#include <optional>

namespace caddis {

/// A file's picture as a whole, to be drawn at any size: a bitmap, the first page of a PDF, or PostScript,
/// which is converted to PDF when it is opened.
class Picture {
public:
    /// Nil: the file can't be read, or holds nothing that can be drawn.
    static std::optional<Picture> initByReferencingFile(const std::optional<String>& path);
    static std::optional<Picture> initWithData(const Data& data);

    /// Points.
    Size size() const { return m_size; }
    /// The size in points where the picture has no pixels of its own.
    Size pixelSize() const { return m_pixelSize; }
    /// Pages have, too: they are drawn upon something.
    bool hasAlpha() const { return m_hasAlpha; }

    bool isPDFImage() const { return m_page.has_value(); }
    /// Whether the file itself is the PDF.
    bool isDirectPDF() const { return isPDFImage() && !m_isConverted; }
    /// The PDF, converted or not; nil for a bitmap.
    std::optional<Data> PDFRepresentation() const;

    /// The picture, or the part `fromRect` of it (in pixels, y upwards), drawn into exactly so many pixels;
    /// the zero rectangle means all of it. Nil: no such size, or a picture that can't be drawn within its
    /// limits.
    std::optional<Bitmap> bitmapWithPixelSize(Size pixels, Rect fromRect = {}) const;

private:
    Picture(const PDFImageRep& page, bool isConverted);
    Picture(ImageSource source, const ImageInfo& info);

    std::optional<PDFImageRep> m_page;
    std::optional<ImageSource> m_source;
    bool m_isConverted = false;
    bool m_hasAlpha = true;
    Size m_pixelSize;
    Size m_size;
};

} // namespace caddis
