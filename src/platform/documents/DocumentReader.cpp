#include "platform/documents/DocumentReader.h"

#include "platform/files/FileSystem.h"
#include "platform/files/MappedFile.h"
#include "platform/office/OfficeDocument.h"
#include "platform/richtext/AttributedStringBuilder.h"
#include "platform/richtext/FlatRTFD.h"
#include "platform/richtext/RTF.h"
#include "platform/richtext/RTFD.h"
#include "platform/unicode/PlainText.h"

namespace caddis {

namespace {

bool startsWithUnicodeMark(std::string_view bytes)
{
    return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")
        || bytes.starts_with(std::string_view("\0\0\xFE\xFF", 4));
}

bool isText(std::string_view bytes)
{
    constexpr std::size_t Looked = 4096;
    if (bytes.starts_with("%PDF-"))
        return false;
    return startsWithUnicodeMark(bytes) || bytes.substr(0, Looked).find('\0') == std::string_view::npos;
}

std::optional<AttributedString> plainText(const Data& data)
{
    if (!isText(data.chars()))
        return std::nullopt;
    const PlainText plain = plainTextOfData(data.chars());
    AttributedStringBuilder builder;
    builder.append(plain.text, {});
    AttributedString text = std::move(builder).finish();
    text.documentAttributes = {
        { String(DocumentAttribute::DocumentType), Value(u"NSPlainText"_s) },
        { String(DocumentAttribute::UTI), Value(u"public.plain-text"_s) },
        { String(DocumentAttribute::CharacterEncoding),
            Value(static_cast<std::uint64_t>(plain.usedEncoding)) },
    };
    return text;
}

} // namespace

std::optional<AttributedString> attributedStringWithPath(const String& path)
{
    if (FileSystem::isDirectory(path)) {
        const auto folder = readFileWrapper(path);
        return folder ? attributedStringWithRTFDFileWrapper(*folder) : std::nullopt;
    }
    const auto data = MappedFile::open(path);
    if (!data)
        return std::nullopt;
    const std::string_view bytes = data->chars();
    if (isFlatRTFD(bytes))
        return initWithRTFD(*data);
    if (bytes.starts_with("PK\3\4"))
        return attributedStringWithOfficePackage(path);
    if (bytes.starts_with("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"))
        return attributedStringWithOldWordFile(path);
    if (auto text = attributedStringWithRTF(*data))
        return text;
    if (auto text = attributedStringWithOfficeXML(*data))
        return text;
    return plainText(*data);
}

} // namespace caddis
