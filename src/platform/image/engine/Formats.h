#pragma once

#include "platform/image/Reader.h"

#include <string_view>

namespace caddis::image {

/// A kind of file: its content type and its codec, or what the rare pictures' program calls it.
struct Format {
    const char16_t* type;
    OpenReader* open;
    const char* rareCoder = nullptr;
};

/// By the bytes alone; null when they are of no kind that can be read.
const Format* formatOf(std::string_view bytes);

std::unique_ptr<Reader> opened(const Format& format, const Data& data);

} // namespace caddis::image
