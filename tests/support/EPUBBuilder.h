#pragma once

#include "support/ZipBuilder.h"

namespace caddis {

inline const std::string containerDocument
    = "<?xml version='1.0'?><container><rootfiles><rootfile full-path='OPS/a.opf'/></rootfiles></container>";

inline std::string packageDocument(const std::string& content)
{
    return "<package xmlns:dc='d' xmlns:opf='o'>" + content + "</package>";
}

/// A book whose package file OPS/a.opf holds `content`.
inline std::string epubWithPackage(const std::string& content)
{
    return ZipBuilder()
        .add({ "mimetype", "application/epub+zip", true })
        .add("META-INF/container.xml", containerDocument)
        .add("OPS/a.opf", packageDocument(content))
        .bytes();
}

} // namespace caddis
