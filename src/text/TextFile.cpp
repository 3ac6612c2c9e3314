#include "text/TextFile.h"

#include "platform/files/FileSystem.h"

namespace caddis {
inline namespace NSStringOstraExtensions {

std::optional<PlainText> stringWithContentsOfFile(const String& path, NSStringEncoding encoding)
{
    const auto data = FileSystem::contentsOfFile(path);
    if (!data)
        return std::nullopt;
    return plainTextOfData(data->chars(), encoding);
}

} // namespace NSStringOstraExtensions
} // namespace caddis
