#include "platform/files/PropertyList.h"

#include "platform/files/FileSystem.h"

#include <algorithm>

namespace caddis::PropertyList {

namespace {

constexpr std::string_view White = " \t\r\n\v\f";

// Old-style data begins with "<" too, but never with "<" and one of these. XML in UTF-16 begins with a mark.
bool looksLikeXML(std::string_view bytes)
{
    if (bytes.starts_with("\xFE\xFF") || bytes.starts_with("\xFF\xFE"))
        return true;
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.remove_prefix(3);
    bytes.remove_prefix(std::min(bytes.find_first_not_of(White), bytes.size()));
    return bytes.starts_with("<?") || bytes.starts_with("<!") || bytes.starts_with("<plist");
}

} // namespace

std::optional<Value> read(const Data& data)
{
    if (data.chars().starts_with("bplist"))
        return readBinary(data);
    if (looksLikeXML(data.chars()))
        return readXML(data);
    const auto text = String::fromStrictUtf8(data.chars());
    return text ? readOldStyle(*text) : std::nullopt;
}

std::optional<Dictionary> dictionaryWithContentsOfFile(const String& path)
{
    const auto data = FileSystem::contentsOfFile(path);
    auto value = data ? read(*data) : std::nullopt;
    auto* dictionary = value ? value->as<Dictionary>() : nullptr;
    return dictionary ? std::optional(std::move(*dictionary)) : std::nullopt;
}

} // namespace caddis::PropertyList
