#pragma once

#include "platform/movie/MovieTypes.h"
#include "platform/movie/engine/FFmpeg.h"
#include "platform/movie/engine/Patience.h"

#include <string_view>
#include <vector>

namespace caddis::movie {

/// Finds the frame that is shown at a time, exactly.
///
/// The shown frame is the last one in presentation order that begins at or before the time. Decoding starts
/// at the key frame before it. Frames that no other one refers to and that end before the time are not
/// decoded at all. Containers without an index may lead us behind the time; then we start 10 seconds earlier,
/// and at last at the beginning.
class FrameSearch {
public:
    FrameSearch(AVFormatContext& format, AVStream& stream, const Patience& patience);

    /// Null: nothing decodable there, or patience is over.
    FramePointer frameAt(Time time);

private:
    bool openCodec();
    bool isFormat(std::string_view name) const;
    bool hasNoTimestamps() const;
    std::vector<std::int64_t> startsFor(std::int64_t target) const;
    bool startAt(std::int64_t timestamp);
    FramePointer decodeTo(std::int64_t target);
    bool sendNextPacket(std::int64_t target);

    AVFormatContext& m_format;
    AVStream& m_stream;
    const Patience& m_patience;
    std::int64_t m_usualDuration; // Of a frame, in the stream's unit; 0 when unknown.
    CodecPointer m_codec;
};

} // namespace caddis::movie
