#include "platform/image/EPSImageRep.h"

#include "platform/postscript/PostScript.h"

#include <array>
#include <charconv>

namespace caddis {

namespace {

constexpr std::size_t SearchedBytes = 64 << 10;

// The box in a comment of the document's head (Document Structuring Conventions 3.0, 5.2), as its size; zero
// when there is none, or when it stands "(atend)".
Size boxOf(std::string_view head, std::string_view comment)
{
    const std::size_t found = head.find(comment);
    if (found == head.npos)
        return {};
    std::array<double, 4> numbers {};
    const char* at = head.data() + found + comment.size();
    const char* const end = head.data() + head.size();
    for (double& number : numbers) {
        while (at != end && (*at == ' ' || *at == '\t'))
            ++at;
        const auto [behind, error] = std::from_chars(at, end, number);
        if (error != std::errc())
            return {};
        at = behind;
    }
    const Size size { numbers[2] - numbers[0], numbers[3] - numbers[1] };
    return size.width > 0 && size.height > 0 ? size : Size();
}

Size boundingBox(const Data& data)
{
    const std::string_view head = data.chars().substr(0, SearchedBytes);
    const Size precise = boxOf(head, "%%HiResBoundingBox:");
    return precise == Size() ? boxOf(head, "%%BoundingBox:") : precise;
}

} // namespace

std::optional<EPSImageRep> EPSImageRep::imageRepWithData(const Data& data)
{
    if (!isPostScript(data))
        return std::nullopt;
    EPSImageRep rep(data);
    rep.m_size = boundingBox(data);
    if (rep.m_size == Size()) {
        const auto pdf = rep.initializePDFImageRep();
        if (!pdf)
            return std::nullopt;
        rep.m_size = pdf->size();
    }
    return rep;
}

std::optional<caddis::PDFImageRep> EPSImageRep::PDFImageRep() const
{
    const std::scoped_lock lock(m_conversion->mutex);
    return m_conversion->pdf;
}

std::optional<caddis::PDFImageRep> EPSImageRep::initializePDFImageRep() const
{
    const std::scoped_lock lock(m_conversion->mutex);
    if (!m_conversion->wasTried) {
        m_conversion->wasTried = true;
        const auto pdf = PDFWithPostScript(m_data);
        m_conversion->pdf = pdf ? caddis::PDFImageRep::imageRepWithData(*pdf) : std::nullopt;
    }
    return m_conversion->pdf;
}

} // namespace caddis
