#include "service/MovieRequests.h"

#include "media/MovieFileTypes.h"
#include "media/MovieFrames.h"
#include "platform/image/ImageFiles.h"
#include "service/FileArgument.h"

namespace caddis {

namespace {

// The file is open for as long as this works, and no longer.
MovieThumbnail movieOf(FileArgument file)
{
    const auto& path = file.path();
    return path && supportsFile(*path) ? thumbnailImageForItemWithFile(*path) : MovieThumbnail();
}

Dictionary dictionaryOf(const std::vector<MetadataItem>& items)
{
    Dictionary metadata;
    for (const MetadataItem& item : items)
        metadata.set(item.commonKey, item.value);
    return metadata;
}

} // namespace

Dictionary posterImageForMovie(FileArgument file)
{
    const MovieThumbnail movie = movieOf(std::move(file));
    Dictionary reply { { u"Duration"_s, Value(static_cast<float>(movie.duration)) },
        { u"Size"_s, Value(stringFromSize(movie.size)) } };
    if (movie.image) {
        const auto tiff = TIFFRepresentation(*movie.image, movie.image->size(), TIFFCompression::LZW);
        reply.set(u"Thumbnail"_s, std::optional<Value>(tiff));
    }
    if (movie.lyrics)
        reply.set(u"Lyrics"_s, Value(*movie.lyrics));
    if (movie.commonMetadata)
        reply.set(u"Metadata"_s, Value(dictionaryOf(*movie.commonMetadata)));
    return reply;
}

} // namespace caddis
