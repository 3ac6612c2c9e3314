#pragma once

#include <cstdint>

/// What pictures are asked for and answer with.
namespace caddis {

/// TIFF 6.0, tag Compression.
enum class TIFFCompression { None = 1, LZW = 5 };

/// The files that a bitmap can be written as, in the platform's numbering.
enum class BitmapImageFileType { TIFF, BMP, GIF, JPEG, PNG, JPEG2000 };

/// How pixels are made where a picture is drawn larger or smaller, in the platform's numbering. None takes
/// the nearest pixel; High is bicubic, all others bilinear; what is drawn smaller is averaged.
enum class ImageInterpolation { Default, None, Low, High, Medium };

enum class ColorModel { RGB, Gray, CMYK, Lab };

/// What a picture's header says.
struct ImageInfo {
    std::uint32_t pixelsWide = 0; ///< as stored, before the orientation is applied
    std::uint32_t pixelsHigh = 0;
    int orientation = 0; ///< 1 to 8 as in TIFF 6.0, tag Orientation; 0: the file doesn't say
    bool hasAlpha = false;
    bool isIndexed = false;
    bool isFloat = false;
    std::uint32_t depth = 8; ///< bits of a sample
    ColorModel colorModel = ColorModel::RGB;
    double dpiWidth = 0; ///< pixels per inch; 0: the file doesn't say
    double dpiHeight = 0;

    /// Whether upright means that width and height change places.
    bool isTurned() const { return orientation >= 5; }
};

struct ImageRequest {
    /// The longer side is at most so long; 0: as large as the picture is.
    std::uint32_t maxPixelSize = 0;
    /// Take the small picture that many files carry, even when it is smaller than asked for.
    bool allowsEmbedded = false;
    /// Apply the orientation.
    bool isUpright = true;
};

} // namespace caddis
