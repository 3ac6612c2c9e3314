#include "platform/pdf/writer/QpdfSource.h"

#include "platform/pdf/writer/ImageFilter.h"

namespace caddis::pdf {

// QPDF throws for damage and for lack of memory alike; either way there is no document.
std::optional<Data> written(QPDF& document, const PDFPasswords* passwords)
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

QpdfSource::QpdfSource(const Data& data)
    : m_data(data)
{
    m_document.setSuppressWarnings(true);
    m_document.processMemoryFile("", m_data.chars().data(), m_data.size());
}

QpdfSource* QpdfSource::open(const Data& data)
try {
    return new QpdfSource(data);
} catch (const std::exception&) {
    return nullptr;
}

std::optional<std::size_t> QpdfSource::pageCount() const
try {
    return m_document.getAllPages().size();
} catch (const std::exception&) {
    return std::nullopt;
}

bool QpdfSource::isForOwnerOnly() const
{
    return m_document.ownerPasswordMatched() && !m_document.userPasswordMatched();
}

std::optional<Data> QpdfSource::dataOfPage(std::size_t page) const
try {
    QPDF document;
    document.setSuppressWarnings(true);
    document.emptyPDF();
    document.addPage(m_document.getAllPages().at(page), false);
    return written(document);
} catch (const std::exception&) {
    return std::nullopt;
}

std::optional<Data> QpdfSource::dataWithPasswords(const PDFPasswords& passwords) const
{
    return written(m_document, &passwords);
}

// The pictures of a document of its own: this one's stay as they are.
std::optional<Data> QpdfSource::dataWithImages(const PDFImageSettings& settings) const
try {
    QpdfSource copy(m_data);
    ImageFilter(settings).applyToAll(copy.m_document);
    return written(copy.m_document);
} catch (const std::exception&) {
    return std::nullopt;
}

} // namespace caddis::pdf
