#include "bundles/support/Importer.h"
#include "bundles/support/Properties.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <memory>

namespace caddis::bundles {

namespace {

struct Close {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
};
using Movie = std::unique_ptr<AVFormatContext, Close>;

constexpr Property TagProperties[] = {
    { "title", "kMDItemTitle" },
    { "artist", "kMDItemAuthors", Form::Strings },
    { "author", "kMDItemAuthors", Form::Strings },
    { "album", "kMDItemAlbum" },
    { "composer", "kMDItemComposer" },
    { "genre", "kMDItemMusicalGenre" },
    { "comment", "kMDItemComment" },
    { "description", "kMDItemDescription" },
    { "copyright", "kMDItemCopyright" },
    { "keywords", "kMDItemKeywords", Form::Parts },
    { "director", "kMDItemDirector" },
    { "producer", "kMDItemProducer" },
    { "encoder", "kMDItemEncodingApplications", Form::Strings },
    { "creation_time", "kMDItemContentCreationDate", Form::Date },
};

int shouldInterrupt(void* attributes) { return static_cast<Attributes*>(attributes)->shouldStop(); }

// Only files: a playlist inside the file must not lead elsewhere.
Movie openMovie(const std::string& path, Attributes& attributes)
{
    AVFormatContext* context = avformat_alloc_context();
    if (!context)
        return nullptr;
    context->interrupt_callback = { shouldInterrupt, &attributes };
    context->max_analyze_duration = 2 * AV_TIME_BASE;
    context->probesize = 4 * 1024 * 1024;
    AVDictionary* options = nullptr;
    av_dict_set(&options, "protocol_whitelist", "file", 0);
    const std::string url = "file:" + path;
    const int result = avformat_open_input(&context, url.c_str(), nullptr, &options); // frees it on failure
    av_dict_free(&options);
    Movie movie(result == 0 ? context : nullptr);
    return movie && avformat_find_stream_info(movie.get(), nullptr) >= 0 ? std::move(movie) : nullptr;
}

void setStream(const AVStream& stream, Attributes& attributes)
{
    const AVCodecParameters& codec = *stream.codecpar;
    const bool isPicture = (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0;
    if (const AVCodecDescriptor* descriptor = avcodec_descriptor_get(codec.codec_id);
        descriptor && !isPicture)
        attributes.addString(
            "kMDItemCodecs", descriptor->long_name ? descriptor->long_name : descriptor->name);
    if (codec.codec_type == AVMEDIA_TYPE_VIDEO && !isPicture) {
        attributes.addString("kMDItemMediaTypes", "Video");
        attributes.setInteger("kMDItemPixelWidth", codec.width);
        attributes.setInteger("kMDItemPixelHeight", codec.height);
        if (codec.bit_rate > 0)
            attributes.setInteger("kMDItemVideoBitRate", codec.bit_rate);
    } else if (codec.codec_type == AVMEDIA_TYPE_AUDIO) {
        attributes.addString("kMDItemMediaTypes", "Sound");
        attributes.setInteger("kMDItemAudioSampleRate", codec.sample_rate);
        attributes.setInteger("kMDItemAudioChannelCount", codec.ch_layout.nb_channels);
        if (codec.bit_rate > 0)
            attributes.setInteger("kMDItemAudioBitRate", codec.bit_rate);
    } else if (codec.codec_type == AVMEDIA_TYPE_SUBTITLE) {
        attributes.addString("kMDItemMediaTypes", "Text");
    }
}

} // namespace

bool importFile(Attributes& attributes, std::string_view, const std::string& path)
{
    av_log_set_level(AV_LOG_QUIET);
    const Movie movie = openMovie(path, attributes);
    if (!movie)
        return false;
    for (const Property& property : TagProperties) {
        const std::string name(property.element);
        if (const AVDictionaryEntry* entry = av_dict_get(movie->metadata, name.c_str(), nullptr, 0))
            setProperty(attributes, property.key, property.form, entry->value);
    }
    if (movie->duration != AV_NOPTS_VALUE)
        attributes.setReal("kMDItemDurationSeconds", static_cast<double>(movie->duration) / AV_TIME_BASE);
    if (movie->bit_rate > 0)
        attributes.setInteger("kMDItemTotalBitRate", movie->bit_rate);
    for (unsigned i = 0; i < movie->nb_streams && i < 64; ++i)
        setStream(*movie->streams[i], attributes);
    return true;
}

} // namespace caddis::bundles
