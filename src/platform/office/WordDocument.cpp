#include "platform/office/OfficeFormats.h"
#include "platform/office/WordReader.h"

namespace caddis::office {

namespace {

void setKind(AttributedString& text, std::u16string_view type, std::u16string_view uti)
{
    text.documentAttributes.set(String(DocumentAttribute::DocumentType), Value(String(type)));
    text.documentAttributes.set(String(DocumentAttribute::UTI), Value(String(uti)));
}

void readNotes(WordReader& reader, const Parts& parts, const Relations& relations, NoteKind kind)
{
    const FoundPart notes
        = partOfType(parts, relations, kind == NoteKind::Footnote ? "footnotes" : "endnotes");
    if (notes.contents)
        reader.readNotes(*notes.contents, relationsOf(parts, notes.name), kind);
}

} // namespace

std::optional<AttributedString> attributedStringWithOfficeOpenParts(const Parts& parts)
{
    const Relations package = relationsOf(parts, "");
    FoundPart main = partOfType(parts, package, "officeDocument");
    if (!main.contents)
        main = { "word/document.xml", partNamed(parts, "word/document.xml") };
    if (!main.contents)
        return std::nullopt;
    const Relations relations = relationsOf(parts, main.name);
    WordReader reader(&parts);
    if (const auto theme = partOfType(parts, relations, "theme"); theme.contents)
        reader.setThemeFonts(*theme.contents);
    for (const auto* const type : { "styles", "numbering" }) {
        if (const auto part = partOfType(parts, relations, type); part.contents)
            reader.read(*part.contents);
    }
    reader.read(*main.contents, relations);
    readNotes(reader, parts, relations, NoteKind::Footnote);
    readNotes(reader, parts, relations, NoteKind::Endnote);
    for (const auto* const type : { "core-properties", "extended-properties" }) {
        if (const auto part = partOfType(parts, package, type); part.contents)
            reader.properties().read(*part.contents);
    }
    if (!reader.hasBody())
        return std::nullopt;
    AttributedString text = std::move(reader).finish();
    setKind(text, u"NSOfficeOpenXML", u"org.openxmlformats.wordprocessingml.document");
    return text;
}

std::optional<AttributedString> attributedStringWithWordML(const Data& document)
{
    WordReader reader;
    reader.read(document);
    if (!reader.hasBody())
        return std::nullopt;
    AttributedString text = std::move(reader).finish();
    setKind(text, u"NSWordML", u"com.microsoft.word.wordml");
    return text;
}

} // namespace caddis::office
