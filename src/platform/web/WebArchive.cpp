#include "platform/web/WebArchive.h"

#include "platform/files/PropertyList.h"

#include <algorithm>

namespace caddis {

namespace {

const Value* member(const Value& record, std::u16string_view key)
{
    const auto* const dictionary = record.as<Dictionary>();
    return dictionary ? dictionary->find(key) : nullptr;
}

String text(const Value& record, std::u16string_view key)
{
    const Value* const value = member(record, key);
    const String* const string = value ? value->as<String>() : nullptr;
    return string ? *string : String();
}

// The elements of an array that may be missing or something else.
const Array& elements(const Value& record, std::u16string_view key)
{
    static const Array none;
    const Value* const value = member(record, key);
    const Array* const array = value ? value->as<Array>() : nullptr;
    return array ? *array : none;
}

bool namesUtf8(std::u16string_view name)
{
    const auto fits = [&](std::u16string_view wanted) {
        return std::ranges::equal(name, wanted,
            [](char16_t left, char16_t right) { return left == right || (left | 0x20) == right; });
    };
    return fits(u"utf-8") || fits(u"utf8");
}

} // namespace

std::optional<WebResource> WebResource::initWithPropertyList(const Value& record)
{
    const Value* const bytes = member(record, u"WebResourceData");
    const Data* const data = bytes ? bytes->as<Data>() : nullptr;
    const auto url = URL::fromString(text(record, u"WebResourceURL"));
    if (!data || !url)
        return std::nullopt;
    WebResource resource(*url);
    resource.m_data = *data;
    resource.m_mimeType = text(record, u"WebResourceMIMEType");
    resource.m_textEncodingName = text(record, u"WebResourceTextEncodingName");
    resource.m_frameName = text(record, u"WebResourceFrameName");
    return resource;
}

String WebResource::_stringValue() const
{
    constexpr char16_t ByteOrderMark = 0xFEFF;
    if (!namesUtf8(m_textEncodingName))
        return {};
    const String string = String::fromStrictUtf8(m_data.chars()).value_or(String());
    return !string.isEmpty() && string[0] == ByteOrderMark ? string.substringFrom(1) : string;
}

std::optional<WebArchive> WebArchive::initWithData(const Data& data)
{
    const auto list = PropertyList::read(data);
    return list ? initWithPropertyList(*list) : std::nullopt;
}

std::optional<WebArchive> WebArchive::initWithPropertyList(const Value& record)
{
    const Value* const main = member(record, u"WebMainResource");
    auto mainResource = main ? WebResource::initWithPropertyList(*main) : std::nullopt;
    if (!mainResource)
        return std::nullopt;
    WebArchive archive(std::move(*mainResource));
    for (const Value& element : elements(record, u"WebSubresources")) {
        if (auto resource = WebResource::initWithPropertyList(element))
            archive.m_subresources.push_back(std::move(*resource));
    }
    for (const Value& element : elements(record, u"WebSubframeArchives")) {
        if (auto subframe = initWithPropertyList(element))
            archive.m_subframeArchives.push_back(std::move(*subframe));
    }
    return archive;
}

} // namespace caddis
