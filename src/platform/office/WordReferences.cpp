// What a document in Word's markup refers to: addresses, notes, pictures.

#include "platform/base/Paths.h"
#include "platform/office/Values.h"
#include "platform/office/WordReader.h"
#include "platform/richtext/FieldInstruction.h"

namespace caddis::office {

namespace {

constexpr double UnitsPerPoint = 12700; // English metric units.
constexpr std::size_t MostNotes = 65536;

// The length behind `property` in a style like that of HTML elements: "width:12pt;height:3cm".
double lengthIn(std::string_view style, std::string_view property)
{
    for (std::size_t at = style.find(property); at != style.npos; at = style.find(property, at + 1)) {
        const std::string_view rest = style.substr(at + property.size());
        const bool begins = at == 0 || style[at - 1] == ';' || style[at - 1] == ' ';
        if (begins && rest.starts_with(':'))
            return lengthOf(rest.substr(1, rest.find(';', 1) - 1)).value_or(0);
    }
    return 0;
}

} // namespace

// Null pointer unless the attribute names one.
const Relation* WordReader::relation(const XMLAttributes& attributes, std::string_view name) const
{
    const auto identifier = m_relations ? attributes.value(name) : std::nullopt;
    const auto found = identifier ? m_relations->find(*identifier) : Relations::const_iterator();
    return identifier && found != m_relations->end() ? &found->second : nullptr;
}

void WordReader::beginLink(String link) { m_links.push_back(std::move(link)); }

void WordReader::startHyperlink(const XMLAttributes& attributes)
{
    MutableString link;
    if (const Relation* found = relation(attributes, "r:id"))
        link.appendUtf8(found->target);
    if (const auto anchor = attributes.value("w:anchor"))
        link.append(u'#').append(*anchor);
    beginLink(std::move(link).take());
}

void WordReader::startHlink(const XMLAttributes& attributes)
{
    MutableString link;
    link.append(attributes.value("w:dest").value_or(String()));
    if (const auto bookmark = attributes.value("w:bookmark"))
        link.append(u'#').append(*bookmark);
    beginLink(std::move(link).take());
}

void WordReader::startSimpleField(const XMLAttributes& attributes)
{
    beginLink(linkOfFieldInstruction(attributes.value("w:instr").value_or(String())));
}

void WordReader::endHyperlink()
{
    if (!m_links.empty())
        m_links.pop_back();
}

// A field is parted by characters: its instruction stands between the first and the second, what it shows
// between the second and the third.
void WordReader::fieldCharacter(const XMLAttributes& attributes)
{
    constexpr std::size_t DeepestField = 100;
    const auto type = attributes.utf8("w:fldCharType");
    if (type == "begin" && m_fields.size() < DeepestField)
        m_fields.emplace_back();
    if (m_fields.empty())
        return;
    if (type == "separate") {
        m_fields.back().link = linkOfFieldInstruction(m_fields.back().instruction);
        m_fields.back().isResult = true;
    } else if (type == "end") {
        m_fields.pop_back();
    }
}

void WordReader::noteReference(const XMLAttributes& attributes) { refer(attributes, NoteKind::Footnote); }

void WordReader::endnoteReference(const XMLAttributes& attributes) { refer(attributes, NoteKind::Endnote); }

// Footnotes are counted in digits, endnotes in Roman numerals.
void WordReader::refer(const XMLAttributes& attributes, NoteKind kind)
{
    const auto identifier = attributes.value("w:id");
    if (!identifier || m_noteMarks.size() >= MostNotes)
        return;
    const auto [mark, isNew] = m_noteMarks.try_emplace({ kind, *identifier });
    if (isNew)
        mark->second = kind == NoteKind::Endnote ? TextList { String(u"{lower-roman}") }.marker(++m_endnotes)
                                                 : TextList { String(u"{decimal}") }.marker(++m_footnotes);
    appendSuperscript(mark->second);
}

void WordReader::appendSuperscript(const String& mark)
{
    if (m_runs.empty())
        return;
    const LetterProperties kept = m_runs.back();
    m_runs.back().superscript = 1;
    appendText(mark);
    m_runs.back() = kept;
}

void WordReader::readNotes(const Data& part, const Relations& relations, NoteKind kind)
{
    m_noteKind = kind;
    m_isNoteWanted = false;
    read(part, relations);
    m_noteKind.reset();
}

// In parts of their own, notes have the id that the text refers to; in one document with the text, they stand
// where they are referred to.
void WordReader::startNote(const XMLAttributes& attributes)
{
    if (!m_noteKind && (m_text.isInNote() || m_paragraphs.empty()))
        return;
    if (m_noteKind) {
        const auto mark = m_noteMarks.find({ *m_noteKind, attributes.value("w:id").value_or(String()) });
        m_isNoteWanted = mark != m_noteMarks.end();
        if (!m_isNoteWanted)
            return;
        m_noteMark = mark->second;
    } else {
        m_noteMark = TextList { String(u"{decimal}") }.marker(++m_footnotes);
        appendSuperscript(m_noteMark);
    }
    m_text.beginNote();
    m_paragraphsOutside = m_paragraphs.size();
}

void WordReader::endNote()
{
    m_text.endNote();
    m_paragraphsOutside = 0;
    m_isNoteWanted = false;
}

void WordReader::noteMark(const XMLAttributes&)
{
    if (m_text.isInNote())
        appendSuperscript(m_noteMark);
}

void WordReader::extent(const XMLAttributes& attributes)
{
    m_pictureSize = { numberAtFront(attributes.utf8("cx").value_or("")) / UnitsPerPoint,
        numberAtFront(attributes.utf8("cy").value_or("")) / UnitsPerPoint };
}

void WordReader::shape(const XMLAttributes& attributes)
{
    const std::string_view style = attributes.utf8("style").value_or("");
    m_pictureSize = { lengthIn(style, "width"), lengthIn(style, "height") };
}

void WordReader::pictureData(const XMLAttributes& attributes)
{
    m_pictureName = attributes.value("w:name").value_or(String());
    m_target = TextTarget::Picture;
}

void WordReader::blip(const XMLAttributes& attributes) { pictureOfRelation(relation(attributes, "r:embed")); }

void WordReader::imageData(const XMLAttributes& attributes)
{
    if (const auto source = attributes.value("src")) {
        if (const auto found = m_pictures.find(*source); found != m_pictures.end())
            picture(found->first, found->second);
        return;
    }
    pictureOfRelation(relation(attributes, "r:id"));
}

void WordReader::pictureOfRelation(const Relation* relation)
{
    const bool isPart = relation && !relation->isExternal && m_parts;
    if (const Data* contents = isPart ? partNamed(*m_parts, relation->target) : nullptr)
        picture(String::fromUtf8(relation->target), *contents);
}

void WordReader::picture(const String& name, const Data& contents)
{
    if (m_paragraphs.empty() || !isWanted())
        return;
    beginParagraph();
    const String last = safeMemberName(lastPathComponent(name));
    m_text.appendAttachment({ FileWrapper::file(last, contents), m_pictureSize }, runStyle());
    m_pictureSize = {};
}

} // namespace caddis::office
