#pragma once

#include "platform/image/engine/Reader.h"

/// The codecs, one file each. Null or Broken: not a file of that kind after all.
namespace caddis::image {

OpenReader openJPEG;
OpenReader openPNG;
OpenReader openTIFF;
OpenReader openWebP;
OpenReader openGIF;

} // namespace caddis::image
