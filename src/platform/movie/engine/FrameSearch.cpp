#include "platform/movie/engine/FrameSearch.h"

#include "platform/movie/engine/FrameConversion.h"

#include <algorithm>

namespace caddis::movie {

namespace {

constexpr std::int64_t Beginning = INT64_MIN;
constexpr std::int64_t ShortStepBack = 2; // Seconds.
constexpr std::int64_t StepBack = 10; // Seconds.

std::int64_t firstTimestamp(const AVStream& stream)
{
    return stream.start_time == AV_NOPTS_VALUE ? 0 : std::max<std::int64_t>(stream.start_time, 0);
}

// Whether the packet's picture is over when the target is reached; then it need not be decoded for its own
// sake.
bool endsBefore(const AVPacket& packet, std::int64_t target)
{
    return packet.pts != AV_NOPTS_VALUE && packet.duration > 0 && packet.pts + packet.duration <= target;
}

bool lastsBeyond(const AVFrame& frame, std::int64_t target)
{
    return frame.pkt_duration > 0 && frame.best_effort_timestamp + frame.pkt_duration > target;
}

} // namespace

FrameSearch::FrameSearch(AVFormatContext& format, AVStream& stream, const Patience& patience)
    : m_format(format)
    , m_stream(stream)
    , m_patience(patience)
{
    const AVRational rate = av_guess_frame_rate(&format, &stream, nullptr);
    m_usualDuration = rate.num > 0 ? av_rescale_q(1, av_inv_q(rate), stream.time_base) : 0;
}

// One thread: a second one gains nothing before the first frame is out.
bool FrameSearch::openCodec()
{
    if (m_codec)
        return true;
    const AVCodec* const decoder = avcodec_find_decoder(m_stream.codecpar->codec_id);
    CodecPointer codec(decoder ? avcodec_alloc_context3(decoder) : nullptr);
    if (!codec || avcodec_parameters_to_context(codec.get(), m_stream.codecpar) < 0)
        return false;
    codec->pkt_timebase = m_stream.time_base;
    codec->thread_count = 1;
    codec->max_pixels = MostPixels;
    if (avcodec_open2(codec.get(), decoder, nullptr) < 0)
        return false;
    m_codec = std::move(codec);
    return true;
}

FramePointer FrameSearch::frameAt(Time time)
{
    if (!openCodec())
        return nullptr;
    const AVRational timeBase = m_stream.time_base;
    const std::int64_t target = firstTimestamp(m_stream)
        + av_rescale_q_rnd(time.value, { 1, time.timescale }, timeBase, AV_ROUND_DOWN);
    for (const std::int64_t start : startsFor(target)) {
        if (!startAt(start))
            continue;
        FramePointer frame = decodeTo(target);
        if (m_patience.isOver())
            return nullptr;
        if (frame && (frame->best_effort_timestamp <= target || start == Beginning))
            return frame;
    }
    return nullptr;
}

// MPEG video is not marked, though what the library gives for it are guesses.
bool FrameSearch::hasNoTimestamps() const
{
    return (m_format.iformat->flags & AVFMT_NOTIMESTAMPS) || isFormat("mpegvideo");
}

bool FrameSearch::isFormat(std::string_view name) const { return m_format.iformat->name == name; }

// Where decoding may start, nearest first. Streams without time stamps are counted from the beginning. In
// program streams a packet may hold several frames and a stamp for the first alone; after a seek the others'
// are guesses until the next packet, so we start well before the target.
std::vector<std::int64_t> FrameSearch::startsFor(std::int64_t target) const
{
    const auto before = [&](std::int64_t seconds) {
        return target - av_rescale_q(seconds, { 1, 1 }, m_stream.time_base);
    };
    if (hasNoTimestamps())
        return { Beginning };
    return { isFormat("mpeg") ? before(ShortStepBack) : target, before(StepBack), Beginning };
}

bool FrameSearch::startAt(std::int64_t timestamp)
{
    avcodec_flush_buffers(m_codec.get());
    if (timestamp != Beginning)
        return avformat_seek_file(&m_format, m_stream.index, INT64_MIN, timestamp, timestamp, 0) >= 0;
    const std::int64_t first = firstTimestamp(m_stream);
    return avformat_seek_file(&m_format, m_stream.index, INT64_MIN, first, first, 0) >= 0
        || avformat_seek_file(&m_format, -1, INT64_MIN, 0, INT64_MAX, AVSEEK_FLAG_BYTE) >= 0;
}

// The last frame that begins at or before the target, else the first one behind it. A frame without a time
// stamp follows its predecessor.
FramePointer FrameSearch::decodeTo(std::int64_t target)
{
    FramePointer best;
    std::int64_t next = firstTimestamp(m_stream);
    FramePointer frame(av_frame_alloc());
    while (frame && !m_patience.isOver()) {
        const int result = avcodec_receive_frame(m_codec.get(), frame.get());
        if (result == AVERROR(EAGAIN)) {
            if (!sendNextPacket(target))
                break;
            continue;
        }
        if (result == AVERROR_EOF)
            break;
        if (result < 0)
            continue;
        if (hasNoTimestamps() || frame->best_effort_timestamp == AV_NOPTS_VALUE)
            frame->best_effort_timestamp = next;
        next = frame->best_effort_timestamp + m_usualDuration;
        const bool isBehind = frame->best_effort_timestamp > target;
        if (!isBehind || !best) {
            best.reset(av_frame_alloc());
            if (best)
                av_frame_move_ref(best.get(), frame.get());
        }
        if (isBehind || !best || lastsBeyond(*best, target))
            break;
    }
    return best;
}

// False when the decoder takes nothing more. At the end of the file it gets the empty packet that makes it
// hand out what it holds; damaged packets are passed over.
bool FrameSearch::sendNextPacket(std::int64_t target)
{
    const PacketPointer packet(av_packet_alloc());
    while (packet && !m_patience.isOver()) {
        av_packet_unref(packet.get());
        if (av_read_frame(&m_format, packet.get()) < 0)
            return avcodec_send_packet(m_codec.get(), nullptr) >= 0;
        if (packet->stream_index != m_stream.index)
            continue;
        const bool isInVain = !hasNoTimestamps() && endsBefore(*packet, target);
        m_codec->skip_frame = isInVain ? AVDISCARD_NONREF : AVDISCARD_DEFAULT;
        if (avcodec_send_packet(m_codec.get(), packet.get()) >= 0)
            return true;
    }
    return false;
}

} // namespace caddis::movie
