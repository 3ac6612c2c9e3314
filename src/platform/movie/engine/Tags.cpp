#include "platform/movie/engine/Tags.h"

#include <cstring>

namespace caddis::movie {

namespace {

// A common key and the names under which the containers have it; the first one present counts. "com.apple.…"
// are keys of QuickTime files, the others FFmpeg's names.
struct CommonKey {
    std::u16string_view key;
    std::initializer_list<const char*> names;
};

const CommonKey commonKeys[] = {
    { u"title", { "title", "com.apple.quicktime.title" } },
    { u"artist", { "artist", "performer", "com.apple.quicktime.artist" } },
    { u"creator", { "composer" } },
    { u"albumName", { "album", "com.apple.quicktime.album" } },
    { u"type", { "genre", "com.apple.quicktime.genre" } },
    { u"creationDate", { "date", "com.apple.quicktime.creationdate", "creation_time" } },
    { u"copyrights", { "copyright", "com.apple.quicktime.copyright" } },
    { u"publisher", { "publisher", "organization", "com.apple.quicktime.publisher" } },
    { u"description",
        { "description", "comment", "com.apple.quicktime.description", "com.apple.quicktime.comment" } },
    { u"software", { "encoder", "com.apple.quicktime.software" } },
    { u"author", { "author", "com.apple.quicktime.author" } },
    { u"make", { "com.apple.quicktime.make", "make" } },
    { u"model", { "com.apple.quicktime.model", "model" } },
    { u"location", { "com.apple.quicktime.location.ISO6709", "location" } },
    { u"language", { "language" } },
    { u"contributor", { "contributor" } },
};

constexpr std::size_t LanguageLength = 3; // ISO 639-2

std::optional<String> valueOf(const AVDictionaryEntry* entry)
{
    if (!entry || !*entry->value)
        return std::nullopt;
    return String::fromUtf8(entry->value);
}

// ID3 has lyrics in several languages as "lyrics-eng", and with a description as "lyrics-description-eng":
// those without one are the song's own.
const AVDictionaryEntry* lyricsIn(const AVDictionary* tags)
{
    constexpr std::string_view Prefix = "lyrics";
    const AVDictionaryEntry* described = nullptr;
    const AVDictionaryEntry* entry = nullptr;
    while ((entry = av_dict_get(tags, Prefix.data(), entry, AV_DICT_IGNORE_SUFFIX))) {
        const std::size_t rest = std::strlen(entry->key) - Prefix.size();
        if (rest == 0 || (entry->key[Prefix.size()] == '-' && rest == 1 + LanguageLength))
            return entry;
        if (!described)
            described = entry;
    }
    return described ? described : av_dict_get(tags, "unsyncedlyrics", nullptr, 0);
}

} // namespace

// Ogg has its tags on the stream.
std::vector<const AVDictionary*> Tags::dictionaries() const
{
    std::vector<const AVDictionary*> all { m_format.metadata };
    for (unsigned i = 0; i < m_format.nb_streams && av_dict_count(m_format.metadata) == 0; ++i)
        all.push_back(m_format.streams[i]->metadata);
    return all;
}

std::optional<String> Tags::text(const char* name) const
{
    for (const AVDictionary* const tags : dictionaries()) {
        if (auto value = valueOf(av_dict_get(tags, name, nullptr, 0)))
            return value;
    }
    return std::nullopt;
}

std::optional<String> Tags::lyrics() const
{
    for (const AVDictionary* const tags : dictionaries()) {
        if (auto value = valueOf(lyricsIn(tags)))
            return value;
    }
    return std::nullopt;
}

std::optional<Data> Tags::artwork() const
{
    for (unsigned i = 0; i < m_format.nb_streams; ++i) {
        const AVPacket& picture = m_format.streams[i]->attached_pic;
        if (picture.size > 0)
            return Data::copyOf(
                { reinterpret_cast<const char*>(picture.data), static_cast<std::size_t>(picture.size) });
    }
    return std::nullopt;
}

std::vector<MetadataItem> Tags::common() const
{
    std::vector<MetadataItem> items;
    for (const CommonKey& common : commonKeys) {
        for (const char* const name : common.names) {
            if (auto value = text(name)) {
                items.push_back({ String(common.key), *std::move(value) });
                break;
            }
        }
    }
    if (auto picture = artwork())
        items.push_back({ String(u"artwork"), *std::move(picture) });
    return items;
}

} // namespace caddis::movie
