#include "platform/pdf/writer/QpdfWriter.h"

#include "platform/pdf/writer/QpdfSource.h"

#include <algorithm>

namespace caddis::pdf {

namespace {

// What would bring the old page tree along, and what is replaced by a destination of the new document.
constexpr std::u16string_view leftOut[] = { u"/P", u"/Parent", u"/Popup", u"/Dest" };

QPDFObjectHandle rectangle(Rect box)
{
    return QPDFObjectHandle::newArray(
        QPDFObjectHandle::Rectangle(box.x, box.y, box.x + box.width, box.y + box.height));
}

QPDFObjectHandle textObject(const String& text) { return QPDFObjectHandle::newUnicodeString(text.utf8()); }

QPDFObjectHandle attributeObject(const Value& value)
{
    if (const auto* text = value.as<String>())
        return textObject(*text);
    std::string joined;
    if (const auto* list = value.as<Array>()) {
        for (const Value& item : *list) {
            if (const auto* text = item.as<String>())
                joined.append(joined.empty() ? "" : ", ").append(text->utf8());
        }
    }
    return QPDFObjectHandle::newUnicodeString(joined);
}

QPDFObjectHandle arrayOf(const PDFDestination& destination, const QPDFObjectHandle& page)
{
    auto array = QPDFObjectHandle::newArray({ page });
    array.appendItem(QPDFObjectHandle::newName(std::string("/").append(destination.kind.utf8())));
    for (const auto& number : destination.numbers)
        array.appendItem(number ? QPDFObjectHandle::newReal(*number, 2) : QPDFObjectHandle::newNull());
    return array;
}

} // namespace

QpdfWriter::QpdfWriter(Rect mediaBox, const Dictionary& attributes)
    : m_mediaBox(mediaBox)
{
    attempt([&] {
        m_output.setSuppressWarnings(true);
        m_output.emptyPDF();
        auto info = QPDFObjectHandle::newDictionary();
        for (const auto& [key, value] : attributes)
            info.replaceKey(std::string("/").append(key.utf8()), attributeObject(value));
        if (!attributes.isEmpty())
            m_output.getTrailer().replaceKey("/Info", m_output.makeIndirectObject(info));
    });
}

template <typename Work> void QpdfWriter::attempt(Work&& work)
{
    if (m_failed)
        return;
    try {
        work();
    } catch (const std::exception&) {
        m_failed = true;
    }
}

void QpdfWriter::beginPage(Rect mediaBox, std::vector<PDFAnnotation> annotations)
{
    const bool isEmpty = mediaBox.width <= 0 || mediaBox.height <= 0;
    attempt([&] {
        m_page = m_output.makeIndirectObject(QPDFObjectHandle::newDictionary());
        m_page.replaceKey("/Type", QPDFObjectHandle::newName("/Page"));
        m_page.replaceKey("/MediaBox", rectangle(isEmpty ? m_mediaBox : mediaBox));
        m_page.replaceKey("/Resources", QPDFObjectHandle::newDictionary());
    });
    m_annotations = std::move(annotations);
    m_contents.clear();
    m_operators.clear();
}

void QpdfWriter::appendContent(std::string_view operators) { m_operators += operators; }

void QpdfWriter::flushOperators()
{
    if (!m_operators.empty())
        m_contents.push_back(QPDFObjectHandle::newStream(&m_output, std::exchange(m_operators, {})));
}

// Copies can only be made of indirect objects.
QPDFObjectHandle QpdfWriter::copy(QPDF& source, const QPDFObjectHandle& object)
{
    return m_output.copyForeignObject(object.isIndirect() ? object : source.makeIndirectObject(object));
}

void QpdfWriter::drawPage(const Document& document, std::size_t page)
{
    const auto kept = document.source();
    m_failed |= !kept;
    attempt([&] {
        m_sources.push_back(kept);
        QPDF& source = static_cast<const QpdfSource&>(*kept).qpdf(); // This module has no other kind.
        QPDFObjectHandle original = source.getAllPages().at(page);
        flushOperators();
        auto contents = copy(source, original.getKey("/Contents"));
        for (int index = 0; contents.isArray() && index < contents.getArrayNItems(); ++index)
            m_contents.push_back(contents.getArrayItem(index));
        if (contents.isStream())
            m_contents.push_back(contents);
        auto resources = QPDFPageObjectHelper(original).getAttribute("/Resources", false);
        if (resources.isDictionary())
            m_page.replaceKey("/Resources", copy(source, resources));
        if (!m_annotations.empty())
            m_page.replaceKey("/Annots", QPDFObjectHandle::newArray());
        for (const PDFAnnotation& annotation : m_annotations)
            copyAnnotation(original, annotation, { &document, page });
        m_written.emplace(PageOf { &document, page }, m_page);
    });
}

void QpdfWriter::copyAnnotation(QPDFObjectHandle page, const PDFAnnotation& annotation, PageOf place)
{
    QPDFObjectHandle list = page.getKey("/Annots");
    if (!list.isArray() || static_cast<int>(annotation.index) >= list.getArrayNItems())
        return;
    QPDFObjectHandle original = list.getArrayItem(static_cast<int>(annotation.index));
    if (!original.isDictionary())
        return;
    auto destination = place.document->destinationOf(place.page, annotation);
    auto kept = QPDFObjectHandle::newDictionary();
    for (const String& key : annotation.keys) {
        const bool isLeftOut
            = std::find(std::begin(leftOut), std::end(leftOut), key.view()) != std::end(leftOut);
        if (!isLeftOut && !(destination && key == u"/A"))
            kept.replaceKey(key.utf8(), original.getKey(key.utf8()));
    }
    auto copied = copy(*page.getOwningQPDF(), kept);
    m_page.getKey("/Annots").appendItem(copied);
    if (destination)
        m_links.push_back({ copied, place.document, std::move(*destination) });
}

void QpdfWriter::endPage()
{
    attempt([&] {
        flushOperators();
        if (m_contents.size() == 1)
            m_page.replaceKey("/Contents", m_contents.front());
        else if (!m_contents.empty())
            m_page.replaceKey("/Contents", QPDFObjectHandle::newArray(m_contents));
        QPDFPageDocumentHelper(m_output).addPage(QPDFPageObjectHelper(m_page), false);
    });
}

// Only now all pages are there that a link may lead to.
void QpdfWriter::setDestinations()
{
    for (Link& link : m_links) {
        const auto target = m_written.find({ link.document, link.destination.pageIndex });
        if (target != m_written.end())
            link.annotation.replaceKey("/Dest", arrayOf(link.destination, target->second));
    }
}

std::optional<Data> QpdfWriter::close()
{
    std::optional<Data> result;
    attempt([&] {
        setDestinations();
        result = written(m_output);
    });
    return m_failed ? std::nullopt : result;
}

} // namespace caddis::pdf
