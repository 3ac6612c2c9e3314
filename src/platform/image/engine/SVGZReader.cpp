// An SVG document packed with gzip.

#include "platform/image/engine/Readers.h"

#include <zlib.h>

namespace caddis::image {

namespace {

constexpr std::size_t MostText = 32 << 20;
constexpr std::size_t Step = 64 << 10;

class Inflater {
public:
    explicit Inflater(const Data& data)
    {
        constexpr int gzip = 15 + 16;
        m_stream.next_in = const_cast<Bytef*>(data.bytes());
        m_stream.avail_in = static_cast<uInt>(std::min<std::size_t>(data.size(), UINT32_MAX));
        if (inflateInit2(&m_stream, gzip) != Z_OK)
            throw Broken();
    }
    ~Inflater() { inflateEnd(&m_stream); }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;

    /// Up to `most` bytes more behind the text; false at the end, whether it is a good or a bad one.
    bool append(std::string& text, std::size_t most)
    {
        const std::size_t before = text.size();
        text.resize(before + most);
        m_stream.next_out = reinterpret_cast<Bytef*>(text.data() + before);
        m_stream.avail_out = static_cast<uInt>(most);
        const int result = inflate(&m_stream, Z_NO_FLUSH);
        text.resize(text.size() - m_stream.avail_out);
        return result == Z_OK && text.size() > before;
    }

private:
    z_stream m_stream {};
};

} // namespace

std::unique_ptr<Reader> openSVGZ(const Data& data)
{
    Inflater inflater(data);
    std::string text;
    bool isMore = inflater.append(text, Step);
    if (!isSVG(text))
        return nullptr;
    while (isMore && text.size() < MostText)
        isMore = inflater.append(text, text.size());
    return isMore ? nullptr : openSVG(Data::adopt(std::move(text)));
}

} // namespace caddis::image
