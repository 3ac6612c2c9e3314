#include "bundles/support/Importer.h"
#include "bundles/support/Properties.h"
#include "bundles/support/TextSink.h"

#include <fileref.h>
#include <tpropertymap.h>

namespace caddis::bundles {

namespace {

// TagLib's common names for what every tagging scheme calls by its own.
constexpr Property TagProperties[] = {
    { "TITLE", "kMDItemTitle" },
    { "ARTIST", "kMDItemAuthors", Form::Strings },
    { "ALBUM", "kMDItemAlbum" },
    { "COMPOSER", "kMDItemComposer" },
    { "LYRICIST", "kMDItemLyricist" },
    { "PERFORMER", "kMDItemPerformers", Form::Strings },
    { "GENRE", "kMDItemMusicalGenre" },
    { "TRACKNUMBER", "kMDItemAudioTrackNumber", Form::Integer },
    { "DATE", "kMDItemRecordingYear", Form::Integer },
    { "BPM", "kMDItemTempo", Form::Integer },
    { "INITIALKEY", "kMDItemKeySignature" },
    { "COPYRIGHT", "kMDItemCopyright" },
    { "COMMENT", "kMDItemComment" },
    { "LABEL", "kMDItemPublishers", Form::Strings },
    { "LANGUAGE", "kMDItemLanguages", Form::Strings },
    { "ENCODING", "kMDItemAudioEncodingApplication" },
};

void setTags(const TagLib::PropertyMap& tags, Attributes& attributes)
{
    for (const Property& property : TagProperties) {
        const auto found = tags.find(std::string(property.element));
        if (found == tags.end())
            continue;
        for (const TagLib::String& value : found->second) {
            setProperty(attributes, property.key, property.form, value.to8Bit(true));
            if (property.form != Form::Strings)
                break;
        }
    }
}

void setSound(const TagLib::AudioProperties& sound, Attributes& attributes)
{
    attributes.addString("kMDItemMediaTypes", "Sound");
    attributes.setReal("kMDItemDurationSeconds", sound.lengthInMilliseconds() / 1000.0);
    attributes.setInteger("kMDItemAudioBitRate", sound.bitrate() * 1000LL);
    attributes.setInteger("kMDItemAudioSampleRate", sound.sampleRate());
    attributes.setInteger("kMDItemAudioChannelCount", sound.channels());
}

} // namespace

bool importFile(Attributes& attributes, std::string_view, const std::string& path)
{
    const TagLib::FileRef file(path.c_str(), true, TagLib::AudioProperties::Fast);
    if (file.isNull())
        return false;
    const TagLib::PropertyMap tags = file.file()->properties();
    const auto* sound = file.audioProperties();
    // Any bytes are an MP3 file to the library: without a frame and a tag it is none to us.
    if (tags.isEmpty() && (!sound || sound->sampleRate() == 0))
        return false;
    setTags(tags, attributes);
    if (sound)
        setSound(*sound, attributes);
    if (const auto lyrics = tags.find("LYRICS"); lyrics != tags.end())
        TextSink(attributes).append(lyrics->second.toString("\n").to8Bit(true));
    return true;
}

} // namespace caddis::bundles
