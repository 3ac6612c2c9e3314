#pragma once

#include "platform/image/GraphicsContext.h"
#include "platform/image/ImageFiles.h"
#include "platform/image/ImageRep.h"

namespace caddis {

/// A picture in one or more forms ("representations"), shown at one size in points.
///
/// Pixels are decoded, and PostScript is converted, when they are first drawn: an image whose header is sound
/// may turn out to have nothing to draw. Used by one thread at a time.
class Image {
public:
    explicit Image(Size size = {})
        : m_size(size)
    {
    }

    /// Nil: the bytes are no picture of a kind that can be read: PDF, PostScript, or what ImageSource reads.
    /// Pages of a TIFF file and sizes of an icon become representations of one image.
    static std::optional<Image> initWithData(const Data& data);
    static std::optional<Image> initWithContentsOfFile(const String& path);

    /// Points; that of the largest representation unless it was set.
    Size size() const { return m_size; }
    void setSize(Size size) { m_size = size; }
    /// Whether the representations follow the image's size; else they are drawn in their own.
    bool scales() const { return m_scales; }
    void setScales(bool scales) { m_scales = scales; }
    Color backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(Color color) { m_backgroundColor = color; }

    const std::vector<ImageRep>& representations() const { return m_representations; }
    void addRepresentation(ImageRep rep) { m_representations.push_back(std::move(rep)); }

    /// The representation to draw where so many pixels are wanted: the smallest bitmap that has enough of
    /// them, else one that is drawn by commands, else the largest bitmap. Null: the image has none.
    const ImageRep* bestRepresentationForRect(Rect rect) const;

    /// Draws one of the representations over what is there; what has no pixels of its own upon the background
    /// colour.
    void drawRepresentation(const ImageRep& rep, GraphicsContext& context, Rect rect) const;
    /// Draws the part `from` (in points of the image; the zero rectangle: all of it) over what is there.
    void drawInRect(GraphicsContext& context, Rect rect, Rect from = {}) const;

    /// The image's best representation as TIFF, drawn at the image's size unless it is a bitmap. Nil: there
    /// is nothing to draw.
    std::optional<Data> TIFFRepresentation(TIFFCompression compression = TIFFCompression::None) const;

private:
    Size m_size;
    bool m_scales = false;
    Color m_backgroundColor = Color::clear();
    std::vector<ImageRep> m_representations;
};

} // namespace caddis
