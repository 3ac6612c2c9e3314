#include "platform/pdf/engine/StreamBytes.h"

#include <Object.h> // Poppler's other headers count on this one.

#include <Dict.h>
#include <Stream.h>

#include <algorithm>

namespace caddis::pdf {

namespace {

constexpr std::size_t ChunkBytes = 64 * 1024;

bool hasPredictor(Stream& stream)
{
    const Dict* dict = stream.getDict();
    return dict && (dict->hasKey("DecodeParms") || dict->hasKey("DP"));
}

void readFiltered(Stream& stream, std::string& out, Budget& budget)
{
    stream.reset();
    while (budget.bytesLeft() > 0 && !budget.isLate()) {
        const std::size_t wanted = std::min(ChunkBytes, budget.bytesLeft());
        const std::size_t before = out.size();
        out.resize(before + wanted);
        const int got = stream.doGetChars(
            static_cast<int>(wanted), reinterpret_cast<unsigned char*>(out.data() + before));
        const auto count = static_cast<std::size_t>(std::max(got, 0));
        out.resize(before + count);
        budget.takeBytes(count);
        if (count < wanted)
            break;
    }
    stream.close();
}

} // namespace

StreamBytes::~StreamBytes()
{
    if (m_initialized)
        inflateEnd(&m_inflater);
}

// False when the bytes are no zlib data at all; damage further on ends the stream there.
bool StreamBytes::inflateAll(Stream& deflated, std::string& out, Budget& budget)
{
    if (m_initialized)
        inflateReset(&m_inflater);
    else if (inflateInit(&m_inflater) != Z_OK)
        return false;
    m_initialized = true;

    unsigned char input[ChunkBytes];
    const std::size_t start = out.size();
    int status = Z_OK;
    m_inflater.avail_in = 0;
    deflated.reset();
    while (status == Z_OK && budget.bytesLeft() > 0 && !budget.isLate()) {
        if (m_inflater.avail_in == 0) {
            m_inflater.next_in = input;
            m_inflater.avail_in = static_cast<unsigned>(
                std::max(0, deflated.doGetChars(static_cast<int>(ChunkBytes), input)));
        }
        const std::size_t before = out.size();
        const std::size_t room = std::min(ChunkBytes, budget.bytesLeft());
        out.resize(before + room);
        m_inflater.next_out = reinterpret_cast<unsigned char*>(out.data() + before);
        m_inflater.avail_out = static_cast<unsigned>(room);
        status = inflate(&m_inflater, Z_NO_FLUSH); // No input and no progress is Z_BUF_ERROR: the end.
        out.resize(before + room - m_inflater.avail_out);
        budget.takeBytes(room - m_inflater.avail_out);
    }
    deflated.close();
    return status == Z_STREAM_END || out.size() > start;
}

void StreamBytes::append(Stream& stream, std::string& out, Budget& budget)
{
    Stream* const encoded
        = stream.getKind() == strFlate && !hasPredictor(stream) ? stream.getNextStream() : nullptr;
    if (!encoded || !inflateAll(*encoded, out, budget))
        readFiltered(stream, out, budget);
}

} // namespace caddis::pdf
