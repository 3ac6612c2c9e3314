// Pictures, controls, and pages inside the page.

#include "foundation/MIMETypes.h"
#include "html/Converter.h"
#include "platform/base/Format.h"
#include "platform/base/LeftOut.h"
#include "platform/base/Paths.h"

#include <algorithm>
#include <array>

namespace caddis::html {

namespace {

constexpr std::size_t MostAttachedBytes = std::size_t(256) << 20; // Of one import: a picture may come often.

// A grey frame, 16 by 16 pixels, as PNG: what stands for a picture that did not come.
constexpr std::array<std::uint8_t, 93> MissingPicture { 0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A, 0x00,
    0x00, 0x00, 0x0D, 0x49, 0x48, 0x44, 0x52, 0x00, 0x00, 0x00, 0x10, 0x00, 0x00, 0x00, 0x10, 0x01, 0x03,
    0x00, 0x00, 0x00, 0x25, 0x3D, 0x6D, 0x22, 0x00, 0x00, 0x00, 0x06, 0x50, 0x4C, 0x54, 0x45, 0x99, 0x99,
    0x99, 0xFF, 0xFF, 0xFF, 0x83, 0xEE, 0x33, 0x19, 0x00, 0x00, 0x00, 0x12, 0x49, 0x44, 0x41, 0x54, 0x78,
    0xDA, 0x63, 0x60, 0x60, 0x60, 0xA8, 0xFF, 0x47, 0x2C, 0x62, 0x60, 0x00, 0x00, 0xF0, 0xD6, 0x14, 0xD7,
    0x5D, 0xDF, 0x3B, 0xA6, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4E, 0x44, 0xAE, 0x42, 0x60, 0x82 };

std::u16string_view extensionOf(std::u16string_view mimeType)
{
    using Row = std::pair<std::u16string_view, std::u16string_view>;
    constexpr std::array<Row, 9> Extensions { { { u"image/png", u"png" }, { u"image/jpeg", u"jpg" },
        { u"image/gif", u"gif" }, { u"image/svg+xml", u"svg" }, { u"image/webp", u"webp" },
        { u"image/tiff", u"tiff" }, { u"image/bmp", u"bmp" }, { u"image/x-icon", u"ico" },
        { u"application/pdf", u"pdf" } } };
    const auto* const found = std::ranges::find(Extensions, mimeType, &Row::first);
    return found == Extensions.end() ? std::u16string_view() : found->second;
}

// The last part of the URL's path, with an extension that says what it is.
String suggestedName(const Resource& resource)
{
    const bool isData = css::equalsIgnoringCase(resource.url.scheme(), u"data");
    const String last = isData ? String() : lastPathComponent(resource.url.path().value_or(String()));
    const String name = last.isEmpty() || last == u"/" ? String(u"image") : last;
    const std::u16string_view extension = extensionOf(resource.mimeType);
    return pathExtension(name).isEmpty() && !extension.empty() ? format(u"%@.%@", name, extension) : name;
}

Size sizeOf(const css::ComputedStyle& style)
{
    const bool isKnown = style.width.value_or(0) > 0 && style.height.value_or(0) > 0;
    return isKnown ? Size { *style.width, *style.height } : Size();
}

} // namespace

// False when nothing came for the element.
bool Converter::attach(const Frame& frame)
{
    const auto& resources = m_walk->loaded.resources;
    const auto found = resources.find(frame.node);
    if (found == resources.end())
        return false;
    const Resource& resource = *found->second;
    m_attachedBytes += resource.data.size();
    if (m_attachedBytes > MostAttachedBytes) {
        noteLeftOut(u"pictures beyond 256 MiB");
        return false;
    }
    m_builder.appendAttachment(
        { FileWrapper::file(suggestedName(resource), resource.data), sizeOf(*frame.style) },
        characterStyle());
    m_isSoft = false;
    return true;
}

// What is missing shows its alternative text, as in a browser, or else a frame.
void Converter::image(const Frame& frame)
{
    if (!attach(frame)) {
        const auto alternative = m_walk->loaded.page.attribute(frame.node, u"alt");
        if (alternative)
            return collapsedText(*alternative, css::Keyword::None, false);
        const Data picture
            = Data::copyOf({ reinterpret_cast<const char*>(MissingPicture.data()), MissingPicture.size() });
        m_builder.appendAttachment(
            { FileWrapper::file(u"missing.png"_s, picture), sizeOf(*frame.style) }, characterStyle());
        m_isSoft = false;
    }
}

void Converter::object(Frame& frame)
{
    if (attach(frame))
        frame.next = NoNode; // Its content stands for what could not be shown.
}

void Converter::control(Frame& frame)
{
    if (frame.tag == Tag::Textarea)
        return;
    const std::u16string type = css::lowered(attribute(frame, u"type"));
    if (type == u"image")
        return image(frame);
    const bool showsValue = type.empty() || type == u"text" || type == u"search" || type == u"email"
        || type == u"url" || type == u"tel" || type == u"number" || type == u"date" || type == u"submit"
        || type == u"button" || type == u"reset";
    const std::u16string_view value = attribute(frame, u"value");
    if (showsValue && !value.empty())
        appendUnits(value);
}

// The frames of the list move when pages inside add theirs.
void Converter::nestedPage()
{
    const auto& frames = m_walk->loaded.frames;
    const auto found = frames.find(m_frames.back().node);
    m_frames.back().next = NoNode;
    if (found == frames.end() || m_depth == DeepestFrame)
        return;
    convert(*found->second, m_depth + 1);
}

} // namespace caddis::html
