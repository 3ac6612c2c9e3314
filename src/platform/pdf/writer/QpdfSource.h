#pragma once

#include "platform/pdf/PDFEngine.h"
#include "platform/pdf/writer/Qpdf.h"

namespace caddis::pdf {

/// The document as a file. Nil when it can't be written.
std::optional<Data> written(QPDF& document, const PDFPasswords* passwords = nullptr);

/// A document read by QPDF, which repairs other damage than Poppler.
class QpdfSource final : public Source {
public:
    /// Null when QPDF makes out no document that it may read.
    static QpdfSource* open(const Data& data);

    std::optional<std::size_t> pageCount() const override;
    bool isForOwnerOnly() const override;
    std::optional<Data> dataOfPage(std::size_t page) const override;
    std::optional<Data> dataWithPasswords(const PDFPasswords& passwords) const override;
    std::optional<Data> dataWithImages(const PDFImageSettings& settings) const override;

    /// QPDF reads lazily, and says so by having no const functions.
    QPDF& qpdf() const { return m_document; }

private:
    explicit QpdfSource(const Data& data);

    Data m_data;
    mutable QPDF m_document;
};

} // namespace caddis::pdf
