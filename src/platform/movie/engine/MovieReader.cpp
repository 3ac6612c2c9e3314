#include "platform/movie/engine/MovieReader.h"

#include "platform/base/Paths.h"
#include "platform/movie/engine/FrameConversion.h"
#include "platform/movie/engine/Tags.h"

namespace caddis::movie {

namespace {

// Containers of movies and sound that stand in one file. Playlists, manifests and lists of parts (hls, dash,
// concat, sdp …) name other files and addresses; pictures and subtitles are no movies.
constexpr const char* Formats = "mov,matroska,avi,asf,flv,live_flv,mpeg,mpegts,mpegvideo,m4v,h264,hevc,h263,"
                                "mjpeg,dv,ogg,nut,nuv,rm,swf,flic,mxf,gxf,ivf,obu,aac,ac3,eac3,adts,aiff,amr,"
                                "amrnb,amrwb,ape,au,caf,dts,flac,gsm,mp3,mpc,mpc8,sox,tak,tta,w64,wav,wv";

constexpr std::size_t LargestAllocation = 256U << 20;
constexpr int MostStreams = 100;

int refuseToOpen(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**)
{
    return AVERROR(EACCES);
}

bool isVideo(const AVStream& stream)
{
    constexpr int NoTrack = AV_DISPOSITION_ATTACHED_PIC | AV_DISPOSITION_TIMED_THUMBNAILS;
    return stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO && !(stream.disposition & NoTrack);
}

bool isDescribed(const AVCodecParameters& parameters)
{
    return parameters.codec_id != AV_CODEC_ID_NONE && parameters.width > 0 && parameters.height > 0;
}

} // namespace

std::unique_ptr<Reader> MovieReader::open(const String& path)
{
    av_log_set_level(AV_LOG_QUIET);
    av_max_alloc(LargestAllocation);
    std::unique_ptr<MovieReader> reader(new MovieReader(path));
    const bool isOpen = reader->m_input.context() && reader->openFormat(path);
    if (!isOpen)
        return nullptr;
    if (reader->wantsStreamInfo())
        avformat_find_stream_info(reader->m_format.get(), nullptr);
    reader->chooseStream();
    reader->m_patience.end(false);
    return reader;
}

bool MovieReader::openFormat(const String& path)
{
    AVFormatContext* format = avformat_alloc_context();
    if (!format)
        return false;
    format->pb = m_input.context();
    format->flags |= AVFMT_FLAG_CUSTOM_IO;
    format->io_open = refuseToOpen;
    format->max_streams = MostStreams;
    format->interrupt_callback
        = { [](void* patience) { return static_cast<Patience*>(patience)->isOver() ? 1 : 0; }, &m_patience };
    AVDictionary* options = nullptr;
    av_dict_set(&options, "format_whitelist", Formats, 0);
    // The name only helps to recognise formats without a signature. A failed call frees the context.
    const int result
        = avformat_open_input(&format, lastPathComponent(path).utf8().c_str(), nullptr, &options);
    av_dict_free(&options);
    if (result < 0)
        return false;
    m_format.reset(format);
    return true;
}

// It decodes some frames of each stream, which takes longer than all the rest: most containers say enough in
// their headers.
bool MovieReader::wantsStreamInfo() const
{
    if ((m_format->ctx_flags & AVFMTCTX_NOHEADER) || m_format->nb_streams == 0
        || m_format->duration == AV_NOPTS_VALUE)
        return true;
    for (unsigned i = 0; i < m_format->nb_streams; ++i) {
        if (isVideo(*m_format->streams[i]) && !isDescribed(*m_format->streams[i]->codecpar))
            return true;
    }
    return false;
}

void MovieReader::chooseStream()
{
    for (unsigned i = 0; i < m_format->nb_streams; ++i) {
        AVStream& stream = *m_format->streams[i];
        if (!m_video && isVideo(stream))
            m_video = &stream;
        else
            stream.discard = AVDISCARD_ALL;
    }
    if (m_video)
        m_search.emplace(*m_format, *m_video, m_patience);
}

Time MovieReader::duration() const
{
    if (m_format->duration == AV_NOPTS_VALUE || m_format->duration < 0)
        return {};
    return { m_format->duration, AV_TIME_BASE, true };
}

std::optional<Size> MovieReader::naturalSize() const
{
    if (!m_video)
        return std::nullopt;
    return shownSize(m_video->codecpar->width, m_video->codecpar->height,
        av_guess_sample_aspect_ratio(m_format.get(), m_video, nullptr));
}

std::optional<Bitmap> MovieReader::frame(Time time)
{
    if (!m_search)
        return std::nullopt;
    m_patience.begin();
    const FramePointer frame = m_search->frameAt(time);
    m_patience.end(frame != nullptr);
    if (!frame)
        return std::nullopt;
    return pictureOf(*frame, av_guess_sample_aspect_ratio(m_format.get(), m_video, frame.get()));
}

std::optional<String> MovieReader::lyrics() const { return Tags(*m_format).lyrics(); }

std::vector<MetadataItem> MovieReader::commonMetadata() const { return Tags(*m_format).common(); }

} // namespace caddis::movie
