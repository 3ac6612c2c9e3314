#pragma once

#include "platform/pdf/PDFTypes.h"
#include "platform/pdf/writer/ImagePlacements.h"
#include "platform/pdf/writer/Qpdf.h"

namespace caddis::pdf {

/// Makes the pictures of a document smaller: fewer pixels, and JPEG in place of what they were packed with.
///
/// Changed are pictures of 8 bits a sample in gray, RGB or CMYK, whatever the profile, packed with Flate,
/// LZW, run lengths or JPEG; and only where the result takes fewer bytes. Masks, pictures of one bit, of JPEG
/// 2000 and those with a transparent colour stay as they are.
class ImageFilter {
public:
    explicit ImageFilter(const PDFImageSettings& settings);

    void applyToAll(QPDF& document);

private:
    struct Samples {
        std::uint32_t wide;
        std::uint32_t high;
        std::uint32_t components;
        std::string bytes; ///< rows without gaps
    };

    std::optional<Samples> samplesOf(QPDFObjectHandle& image);
    double factorFor(const Samples& samples, const QPDFObjGen& image) const;
    Samples scaled(const Samples& samples, double factor) const;
    std::string packed(const Samples& samples) const;
    void apply(QPDFObjectHandle& image);

    PDFImageSettings m_settings;
    ImagePlacements m_placements;
    std::size_t m_bytesLeft;
};

} // namespace caddis::pdf
