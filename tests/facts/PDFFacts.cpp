#include "facts/Facts.h"

#include "media/PDFText.h"
#include "platform/files/MappedFile.h"

#include <cstdio>

namespace caddis::facts {

namespace {

String sizeText(Size size)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.6gx%.6g", size.width, size.height);
    return String::fromLatin1(text);
}

Answer attribute(const PDFDocument& document, std::u16string_view name)
{
    return document.documentAttributes().stringForKey(name);
}

} // namespace

// reply, Locked, PageCount, Size, String, attr.NAME.
Answer pdfFact(const Question& question)
{
    const auto data = MappedFile::open(question.path);
    const auto document = data ? PDFDocument::initWithData(*data) : nullptr;
    if (!document)
        return std::nullopt;
    if (question.key == u"reply")
        return String(u"a reply");
    if (question.key == u"Locked")
        return document->isLocked() ? Answer(String(u"YES")) : std::nullopt;
    if (question.key == u"PageCount")
        return decimal(document->pageCount());
    if (question.key == u"String")
        return fixedAndNormalizedString(*document, 60);
    if (question.key == u"Size" && document->pageCount() > 0)
        return sizeText(document->pageAtIndex(0)->boundsForBox(PDFDisplayBox::Media).size());
    if (question.key.view().starts_with(u"attr."))
        return attribute(*document, question.key.view().substr(5));
    return Answer::skip("no such key");
}

} // namespace caddis::facts
