#pragma once

#include "platform/image/Reader.h"

/// The codecs, one file each. Null or Broken: not a file of that kind after all.
namespace caddis::image {

OpenReader openBMP;
OpenReader openGIF;
OpenReader openHEIF;
OpenReader openICNS;
OpenReader openICO;
OpenReader openJPEG;
OpenReader openJPEG2000;
OpenReader openJPEGXL;
OpenReader openPICT;
OpenReader openPNG;
OpenReader openPNM;
OpenReader openPSD;
OpenReader openQTIF;
OpenReader openRAF;
OpenReader openRAW;
OpenReader openSVG;
OpenReader openSVGZ;
OpenReader openTGA;
OpenReader openTIFF;
OpenReader openWebP;

/// The first picture of a file of a rare kind, by a program of its own. `coder` is ImageMagick's name of the
/// kind.
std::unique_ptr<Reader> openRare(const char* coder, const Data& data);

/// Whether the first element is "svg", whatever stands before it.
bool isSVG(std::string_view bytes);
/// Whether a TIFF file is a camera's raw file.
bool isRawTIFF(std::string_view file);
/// Whether the bytes may be a TGA file, which has no signature.
bool isTGA(std::string_view bytes);

} // namespace caddis::image
