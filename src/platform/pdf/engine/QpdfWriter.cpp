#include "platform/pdf/engine/QpdfWriter.h"

#include <Link.h>

#include <algorithm>

namespace caddis::pdf {

namespace {

// QPDF takes about 2 KB for each object that it has read.
constexpr int MostObjects = 300'000;
constexpr std::size_t MostBytesToRepair = std::size_t { 32 } << 20;

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

// The destination's array behind its page (ISO 32000-1, table 151).
QPDFObjectHandle placeOf(const LinkDest& destination)
{
    static constexpr const char* kinds[]
        = { "/XYZ", "/Fit", "/FitH", "/FitV", "/FitR", "/FitB", "/FitBH", "/FitBV" };
    auto array = QPDFObjectHandle::newArray();
    array.appendItem(QPDFObjectHandle::newName(kinds[destination.getKind()]));
    const auto put = [&](double value, bool isGiven) {
        array.appendItem(isGiven ? QPDFObjectHandle::newReal(value, 2) : QPDFObjectHandle::newNull());
    };
    switch (destination.getKind()) {
    case destXYZ:
        put(destination.getLeft(), destination.getChangeLeft());
        put(destination.getTop(), destination.getChangeTop());
        put(destination.getZoom(), destination.getChangeZoom());
        break;
    case destFitH:
    case destFitBH:
        put(destination.getTop(), destination.getChangeTop());
        break;
    case destFitV:
    case destFitBV:
        put(destination.getLeft(), destination.getChangeLeft());
        break;
    case destFitR:
        for (const double value :
            { destination.getLeft(), destination.getBottom(), destination.getRight(), destination.getTop() })
            put(value, true);
        break;
    default:
        break;
    }
    return array;
}

// QPDF throws for damage and for lack of memory alike; either way there is no document.
std::optional<Data> written(QPDF& document, const PDFPasswords* passwords = nullptr)
try {
    QPDFWriter writer(document);
    writer.setOutputMemory();
    writer.setObjectStreamMode(qpdf_o_generate);
    writer.setStreamDataMode(qpdf_s_preserve);
    if (passwords)
        writer.setR6EncryptionParameters(passwords->user.utf8().c_str(), passwords->owner.utf8().c_str(),
            true, true, true, true, true, true, qpdf_r3p_full, true);
    writer.write();
    const std::shared_ptr<Buffer> buffer = writer.getBufferSharedPointer();
    return Data::keptBy(buffer, buffer->getBuffer(), buffer->getSize());
} catch (const std::exception&) {
    return std::nullopt;
}

void open(QPDF& document, const Data& data)
{
    document.setSuppressWarnings(true);
    document.processMemoryFile("", data.chars().data(), data.size());
}

// With its list of pages read. Null when that can't be done.
std::shared_ptr<QPDF> opened(const Data& data)
try {
    auto document = std::make_shared<QPDF>();
    open(*document, data);
    static_cast<void>(document->getAllPages());
    return document;
} catch (const std::exception&) {
    return nullptr;
}

std::optional<Data> documentOf(const QPDFObjectHandle& page)
try {
    QPDF document;
    document.setSuppressWarnings(true);
    document.emptyPDF();
    document.addPage(page, false);
    return written(document);
} catch (const std::exception&) {
    return std::nullopt;
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
    const auto& poppler = static_cast<const PopplerDocument&>(document); // This module has no other kind.
    const auto source = poppler.forWriting();
    m_failed |= !source;
    attempt([&] {
        m_sources.push_back(source);
        QPDFObjectHandle original = source->getAllPages().at(page);
        flushOperators();
        auto contents = copy(*source, original.getKey("/Contents"));
        for (int index = 0; contents.isArray() && index < contents.getArrayNItems(); ++index)
            m_contents.push_back(contents.getArrayItem(index));
        if (contents.isStream())
            m_contents.push_back(contents);
        auto resources = QPDFPageObjectHelper(original).getAttribute("/Resources", false);
        if (resources.isDictionary())
            m_page.replaceKey("/Resources", copy(*source, resources));
        if (!m_annotations.empty())
            m_page.replaceKey("/Annots", QPDFObjectHandle::newArray());
        for (const PDFAnnotation& annotation : m_annotations)
            copyAnnotation(poppler, original, page, annotation);
        m_written.emplace(std::pair(&poppler, page), m_page);
    });
}

void QpdfWriter::copyAnnotation(const PopplerDocument& document, QPDFObjectHandle page, std::size_t number,
    const PDFAnnotation& annotation)
{
    QPDFObjectHandle list = page.getKey("/Annots");
    if (!list.isArray() || static_cast<int>(annotation.index) >= list.getArrayNItems())
        return;
    QPDFObjectHandle original = list.getArrayItem(static_cast<int>(annotation.index));
    if (!original.isDictionary())
        return;
    const Object entry = document.annotation(number, annotation.index);
    const auto destination = entry.isDict() ? document.destinationOf(*entry.getDict()) : nullptr;
    auto kept = QPDFObjectHandle::newDictionary();
    for (const String& key : annotation.keys) {
        const bool isLeftOut
            = std::find(std::begin(leftOut), std::end(leftOut), key.view()) != std::end(leftOut);
        if (!isLeftOut && !(destination && key == u"/A"))
            kept.replaceKey(key.utf8(), original.getKey(key.utf8()));
    }
    auto copied = copy(*document.forWriting(), kept);
    m_page.getKey("/Annots").appendItem(copied);
    const auto target = destination ? document.pageOf(*destination) : std::nullopt;
    if (target)
        m_destinations.push_back({ copied, &document, *target, placeOf(*destination) });
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
    for (Destination& destination : m_destinations) {
        const auto target = m_written.find({ destination.document, destination.page });
        if (target == m_written.end())
            continue;
        destination.place.insertItem(0, target->second);
        destination.holder.replaceKey("/Dest", destination.place);
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

std::shared_ptr<QPDF> PopplerDocument::forWriting() const
{
    if (!std::exchange(m_writableIsTried, true) && isOpen()
        && m_document->getXRef()->getNumObjects() <= MostObjects) {
        m_writable = opened(m_data);
        if (m_writable && m_writable->getAllPages().size() != m_pageCount)
            m_writable = nullptr;
    }
    return m_writable;
}

bool isReadableByQpdf(const Data& data) { return data.size() <= MostBytesToRepair && opened(data); }

std::optional<Data> PopplerDocument::dataWithPasswords(const PDFPasswords& passwords) const
{
    const auto source = forWriting();
    return source ? written(*source, &passwords) : std::nullopt;
}

bool isForOwnerOnly(const Data& data)
try {
    QPDF document;
    open(document, data);
    return document.ownerPasswordMatched() && !document.userPasswordMatched();
} catch (const std::exception&) {
    return false;
}

std::optional<Data> PopplerDocument::dataOfPage(std::size_t page) const
{
    const auto source = forWriting();
    return source ? documentOf(source->getAllPages().at(page)) : std::nullopt;
}

} // namespace caddis::pdf
