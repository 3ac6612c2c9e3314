#pragma once

#include <memory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

/// FFmpeg's objects with owners. Its functions free through a pointer to the pointer.
namespace caddis::movie {

template <typename Object, void (*Free)(Object**)> struct FreeWith {
    void operator()(Object* object) const { Free(&object); }
};

using FormatPointer = std::unique_ptr<AVFormatContext, FreeWith<AVFormatContext, avformat_close_input>>;
using CodecPointer = std::unique_ptr<AVCodecContext, FreeWith<AVCodecContext, avcodec_free_context>>;
using PacketPointer = std::unique_ptr<AVPacket, FreeWith<AVPacket, av_packet_free>>;
using FramePointer = std::unique_ptr<AVFrame, FreeWith<AVFrame, av_frame_free>>;

} // namespace caddis::movie
