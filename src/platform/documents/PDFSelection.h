#pragma once

#include "platform/pdf/PDFDocument.h"
#include "platform/richtext/AttributedString.h"

#include <optional>

namespace caddis {

/// What is selected in a PDF document: its text, with the fonts, sizes, bold and italic letters of the pages.
class PDFSelection {
public:
    static constexpr std::u16string_view ClassName = u"PDFSelection";
    static bool respondsToSelector(std::u16string_view selector) { return selector == u"rtfdData"; }

    /// Everything, each page's text followed by a line break. Pages that can't be read, and all that would be
    /// read after the deadline, are left out. Nil for a document without pages.
    static std::optional<PDFSelection> selectionForEntireDocument(
        const PDFDocument& document, PDFDeadline deadline = {});

    const AttributedString& attributedString() const { return m_text; }
    /// Without document attributes. Nil when it would be longer than 2 GiB.
    std::optional<Data> rtfdData() const;

private:
    AttributedString m_text;
};

} // namespace caddis
