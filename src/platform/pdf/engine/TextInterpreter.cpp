#include "platform/pdf/engine/TextInterpreter.h"

#include "platform/pdf/engine/TextString.h"

#include <Array.h>
#include <Dict.h>
#include <OptionalContent.h>
#include <Page.h>
#include <Stream.h>

#include <algorithm>

namespace caddis::pdf {

namespace {

constexpr std::size_t DeepestForm = 24;
constexpr std::size_t MostSavedStates = 16 * 1024;

// The characters of an operator's name as one number.
constexpr std::uint32_t operator""_op(const char* name, std::size_t length)
{
    std::uint32_t value = 0;
    for (std::size_t index = 0; index < length; ++index)
        value = value << 8 | static_cast<unsigned char>(name[index]);
    return value;
}

std::uint32_t code(std::string_view name)
{
    return name.size() <= 3 ? operator""_op(name.data(), name.size()) : 0;
}

Matrix matrixOf(const Object& array)
{
    double values[6] = { 1, 0, 0, 1, 0, 0 };
    for (int index = 0; array.isArray() && index < std::min(6, array.getArray()->getLength()); ++index) {
        const Object value = array.getArray()->get(index);
        values[index] = value.isNum() ? value.getNum() : 0;
    }
    return { values[0], values[1], values[2], values[3], values[4], values[5] };
}

} // namespace

TextInterpreter::TextInterpreter(const TextSources& sources, Budget& budget, Rect visible, TextStyles* styles)
    : m_sources(sources)
    , m_budget(budget)
    , m_sink(visible, styles)
{
}

TextPage TextInterpreter::read(Page& page)
{
    std::string content;
    const Object contents = page.getContents();
    const auto append = [&](const Object& part) {
        if (part.isStream())
            m_sources.streams.append(*part.getStream(), content, m_budget);
        content += '\n'; // A word may not go on in the next part.
    };
    if (contents.isArray()) {
        for (int index = 0; index < contents.getArray()->getLength() && m_budget.bytesLeft() > 0; ++index)
            append(contents.getArray()->get(index));
    } else {
        append(contents);
    }
    Resources resources(page.getResourceDictObject()->copy(), m_sources.xref, m_sources.fonts);
    run(std::move(content), resources);
    return std::move(m_sink.page());
}

// A stream closes only what it opened itself: Q and EMC do not reach below where it began.
void TextInterpreter::run(std::string content, Resources& resources)
{
    Resources* const outerResources = std::exchange(m_resources, &resources);
    const std::size_t outerSaved = std::exchange(m_savedFloor, m_saved.size());
    const std::size_t outerMarks = std::exchange(m_markFloor, m_marks.size());
    ContentLexer lexer(std::move(content));
    while (lexer.next() && m_budget.takeOperator() && m_sink.page().length() < Budget::MostUnits) {
        m_operands = lexer.operands();
        carryOut(lexer);
    }
    while (m_marks.size() > m_markFloor)
        endMark();
    m_saved.resize(m_savedFloor);
    m_resources = outerResources;
    m_savedFloor = outerSaved;
    m_markFloor = outerMarks;
}

void TextInterpreter::runForm(const Object& entry)
{
    if (!entry.isRef() || m_openForms.size() >= DeepestForm
        || std::find(m_openForms.begin(), m_openForms.end(), entry.getRef()) != m_openForms.end())
        return;
    const Object form = entry.fetch(m_sources.xref);
    if (!form.isStream() || !form.getStream()->getDict()->lookup("Subtype").isName("Form")
        || isHidden(form.getStream()->getDict()->lookupNF("OC")))
        return;
    m_openForms.push_back(entry.getRef());
    enterForm(form);
    m_openForms.pop_back();
}

void TextInterpreter::enterForm(const Object& form)
{
    const Dict& dict = *form.getStream()->getDict();
    std::string content;
    m_sources.streams.append(*form.getStream(), content, m_budget);

    const State outer = m_state;
    const Matrix textMatrix = m_textMatrix;
    const Matrix lineMatrix = m_lineMatrix;
    m_state.matrix = matrixOf(dict.lookup("Matrix")).then(m_state.matrix);
    Object own = dict.lookup("Resources");
    if (own.isDict()) {
        Resources resources(std::move(own), m_sources.xref, m_sources.fonts);
        run(std::move(content), resources);
    } else {
        run(std::move(content), *m_resources);
    }
    m_state = outer;
    m_textMatrix = textMatrix;
    m_lineMatrix = lineMatrix;
}

void TextInterpreter::carryOut(ContentLexer& lexer)
{
    const std::uint32_t op = code(lexer.op());
    switch (op) {
    case "BI"_op:
    case "ID"_op:
        lexer.skipInlineImage();
        break;
    case "Do"_op:
        runForm(m_resources->xObject(bytes(0)));
        break;
    case "BMC"_op:
    case "BDC"_op:
        beginMark();
        break;
    case "EMC"_op:
        endMark();
        break;
    case "Tj"_op:
        show(bytes(0));
        break;
    case "TJ"_op:
        showArray();
        break;
    default:
        carryOutText(op);
        break;
    }
}

void TextInterpreter::carryOutText(std::uint32_t op)
{
    TextState& text = m_state.text;
    switch (op) {
    case "BT"_op:
        m_textMatrix = m_lineMatrix = {};
        break;
    case "Td"_op:
        moveLine(number(0), number(1));
        break;
    case "TD"_op:
        text.leading = -number(1);
        moveLine(number(0), number(1));
        break;
    case "Tm"_op:
        m_textMatrix = m_lineMatrix = matrixOperand();
        break;
    case "T*"_op:
        moveLine(0, -text.leading);
        break;
    case "'"_op:
        moveLine(0, -text.leading);
        show(bytes(0));
        break;
    case "\""_op:
        text.wordSpace = number(0);
        text.charSpace = number(1);
        moveLine(0, -text.leading);
        show(bytes(2));
        break;
    default:
        carryOutState(op);
        break;
    }
}

void TextInterpreter::carryOutState(std::uint32_t op)
{
    TextState& text = m_state.text;
    switch (op) {
    case "q"_op:
        if (m_saved.size() < MostSavedStates)
            m_saved.push_back(m_state);
        break;
    case "Q"_op:
        if (m_saved.size() > m_savedFloor) {
            m_state = std::move(m_saved.back());
            m_saved.pop_back();
        }
        break;
    case "cm"_op:
        m_state.matrix = matrixOperand().then(m_state.matrix);
        break;
    case "gs"_op:
        if (auto [font, size] = m_resources->fontOfGraphicsState(bytes(0)); font)
            setFont(std::move(font), size);
        break;
    case "Tf"_op:
        setFont(m_resources->font(bytes(0)), number(1));
        break;
    case "Tc"_op:
        text.charSpace = number(0);
        break;
    case "Tw"_op:
        text.wordSpace = number(0);
        break;
    case "Tz"_op:
        text.scale = number(0) / 100;
        break;
    case "TL"_op:
        text.leading = number(0);
        break;
    case "Ts"_op:
        text.rise = number(0);
        break;
    default:
        break;
    }
}

double TextInterpreter::number(std::size_t index) const
{
    return index < m_operands.size() ? m_operands[index].number : 0;
}

std::string_view TextInterpreter::bytes(std::size_t index) const
{
    return index < m_operands.size() ? m_operands[index].bytes : std::string_view();
}

Matrix TextInterpreter::matrixOperand() const
{
    return { number(0), number(1), number(2), number(3), number(4), number(5) };
}

void TextInterpreter::setFont(std::shared_ptr<Font> font, double size)
{
    m_state.text.font = std::move(font);
    m_state.text.size = size;
}

void TextInterpreter::moveLine(double x, double y)
{
    m_lineMatrix.translate(x, y);
    m_textMatrix = m_lineMatrix;
}

void TextInterpreter::show(std::string_view string)
{
    if (!m_state.text.font)
        return;
    TextShow show(m_state.text, m_textMatrix.then(m_state.matrix), m_sink);
    show.string(string);
    finish(show);
}

void TextInterpreter::showArray()
{
    if (!m_state.text.font)
        return;
    TextShow show(m_state.text, m_textMatrix.then(m_state.matrix), m_sink);
    for (const Operand& element : m_operands) {
        if (element.kind == Operand::Kind::String)
            show.string(element.bytes);
        else if (element.kind == Operand::Kind::Number)
            show.step(element.number);
    }
    finish(show);
}

void TextInterpreter::finish(const TextShow& show) { m_textMatrix.translate(show.moved().x, show.moved().y); }

bool TextInterpreter::isHidden(const Object& layer) const
{
    return m_sources.layers && (layer.isRef() || layer.isDict())
        && !m_sources.layers->optContentIsVisible(&layer);
}

void TextInterpreter::beginMark()
{
    Mark mark;
    if (m_operands.size() >= 2 && m_operands[1].kind == Operand::Kind::Name) {
        const Object& entry = m_resources->properties(bytes(1));
        mark.hides = bytes(0) == "OC" && isHidden(entry);
        const Object properties = entry.fetch(m_sources.xref);
        const Object text
            = properties.isDict() ? properties.getDict()->lookup("ActualText") : Object(objNull);
        mark.replaces
            = text.isString() && m_sink.beginReplacement(singleLine(textString(text.getString()->toStr())));
    } else if (const auto text = replacementInOperands()) {
        mark.replaces = m_sink.beginReplacement(singleLine(textString(*text)));
    }
    if (mark.hides)
        m_sink.hide();
    m_marks.push_back(mark);
}

// /Span << /Lang (en) /ActualText (…) >> BDC
std::optional<std::string_view> TextInterpreter::replacementInOperands() const
{
    for (std::size_t index = 1; index + 1 < m_operands.size(); ++index) {
        if (m_operands[index].kind == Operand::Kind::Name && m_operands[index].bytes == "ActualText"
            && m_operands[index + 1].kind == Operand::Kind::String)
            return m_operands[index + 1].bytes;
    }
    return std::nullopt;
}

void TextInterpreter::endMark()
{
    if (m_marks.size() <= m_markFloor)
        return;
    if (m_marks.back().hides)
        m_sink.unhide();
    if (m_marks.back().replaces)
        m_sink.endReplacement();
    m_marks.pop_back();
}

} // namespace caddis::pdf
