#pragma once

#include "platform/image/ImageSource.h"

#include <fstream>
#include <sstream>

namespace caddis {

/// The bytes of a file in tests/data/pictures.
inline std::string bytesOfPicture(const std::string& name)
{
    std::ifstream file(CADDIS_TEST_DATA "/pictures/" + name, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

inline std::optional<ImageSource> sourceOf(const std::string& bytes)
{
    return ImageSource::createWithData(Data::copyOf(bytes));
}

} // namespace caddis
