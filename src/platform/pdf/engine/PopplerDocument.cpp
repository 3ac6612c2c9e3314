#include "platform/pdf/engine/PopplerDocument.h"

#include "platform/pdf/PDFModule.h"
#include "platform/pdf/engine/TextInterpreter.h"
#include "platform/pdf/engine/TextString.h"

#include <Catalog.h>
#include <ErrorCodes.h>
#include <GlobalParams.h>
#include <Page.h>

#include <algorithm>

namespace caddis::pdf {

namespace {

// The module that writes takes about 2 KB for each object that it has read.
constexpr int MostObjects = 300'000;
constexpr std::size_t MostBytesToRepair = std::size_t { 32 } << 20;

// Poppler's settings stand for the life of the process; its complaints about files are nobody's concern.
void initializePoppler()
{
    static const bool done = [] {
        globalParams = std::make_unique<GlobalParams>();
        setErrorCallback([](ErrorCategory, Goffset, const char*) {});
        return true;
    }();
    static_cast<void>(done);
}

Rect rectOf(const PDFRectangle& box)
{
    return { std::min(box.x1, box.x2), std::min(box.y1, box.y2), std::abs(box.x2 - box.x1),
        std::abs(box.y2 - box.y1) };
}

// A repair that has lost the trailer takes an encrypted document for a plain one, and its text would be
// noise.
bool hasLostItsEncryption(PDFDoc& document, const Data& data)
{
    return document.isOk() && !document.isEncrypted()
        && data.chars().find("/Encrypt") != std::string_view::npos;
}

std::shared_ptr<const Source> openSource(const Data& data)
{
    auto* const open = writerModule().entry<OpenSource>("caddisOpenPDFSource");
    return std::shared_ptr<const Source>(open ? open(data) : nullptr);
}

// It repairs other damage. False when there is too much of it to try.
bool isReadableForWriting(const Data& data)
{
    const auto source = data.size() <= MostBytesToRepair ? openSource(data) : nullptr;
    return source && source->pageCount();
}

// A document may have an empty owner password beside a user password; Poppler then opens it as its owner
// would. Readers for people don't: nobody has named himself its owner. Only AES-256 can tell the two.
bool isOpenOnlyToItsOwner(const PDFDoc& document, const Data& data)
{
    constexpr int bytesOfAES256 = 32;
    unsigned char* key = nullptr;
    CryptAlgorithm algorithm = cryptNone;
    int length = 0;
    document.getXRef()->getEncryptionParameters(&key, &algorithm, &length);
    if (algorithm != cryptAES256 || length != bytesOfAES256)
        return false;
    const auto source = openSource(data);
    return source && source->isForOwnerOnly();
}

} // namespace

PopplerDocument::PopplerDocument(const Data& data)
    : m_data(data)
    , m_document(read())
    , m_pageCount(isOpen() ? static_cast<std::size_t>(std::max(0, m_document->getNumPages())) : 0)
    , m_fonts(m_document->getXRef())
{
}

std::unique_ptr<PDFDoc> PopplerDocument::read()
{
    initializePoppler();
    auto* const bytes
        = new MemStream(m_data.chars().data(), 0, static_cast<Goffset>(m_data.size()), Object(objNull));
    auto document = std::make_unique<PDFDoc>(
        bytes, std::nullopt, std::nullopt, nullptr, [this] { m_isRepaired = true; });
    m_locked = (!document->isOk() && document->getErrorCode() == errEncrypted)
        || (m_isRepaired && hasLostItsEncryption(*document, m_data))
        || (document->isOk() && document->isEncrypted() && isOpenOnlyToItsOwner(*document, m_data));
    return document;
}

PopplerDocument* PopplerDocument::open(const Data& data)
{
    std::unique_ptr<PopplerDocument> document(new PopplerDocument(data));
    const bool hasContent = document->m_locked || document->m_pageCount > 0;
    return hasContent || isReadableForWriting(data) ? document.release() : nullptr;
}

PopplerDocument::~PopplerDocument() = default;

Page* PopplerDocument::pageAt(std::size_t page) const
{
    Page* const found = page < m_pageCount ? m_document->getPage(static_cast<int>(page) + 1) : nullptr;
    return found && found->isOk() ? found : nullptr;
}

std::optional<TextPage> PopplerDocument::read(
    std::size_t page, PDFDeadline deadline, TextStyles* styles) const
{
    Page* const source = pageAt(page);
    if (!source)
        return std::nullopt;
    Budget budget(deadline);
    const TextSources sources { m_document->getXRef(), m_document->getOptContentConfig(), m_fonts,
        m_streams };
    auto text = TextInterpreter(sources, budget, rectOf(*source->getCropBox()), styles).read(*source);
    m_lastPageWasCut = budget.isSpent() || text.length() >= Budget::MostUnits;
    return text;
}

std::optional<String> PopplerDocument::text(std::size_t page, PDFDeadline deadline) const
{
    auto text = read(page, deadline, nullptr);
    return text ? std::optional(std::move(*text).take()) : std::nullopt;
}

std::optional<PDFStyledText> PopplerDocument::styledText(std::size_t page, PDFDeadline deadline) const
{
    TextStyles styles;
    auto text = read(page, deadline, &styles);
    return text ? std::optional(std::move(*text).take(styles)) : std::nullopt;
}

String PopplerDocument::label(std::size_t page) const
{
    GooString label;
    if (isOpen() && m_document->getCatalog()->indexToLabel(static_cast<int>(page), &label))
        return textString(label.toStr());
    return String::fromLatin1(std::to_string(page + 1));
}

Rect PopplerDocument::bounds(std::size_t page, PDFDisplayBox box) const
{
    Page* const source = pageAt(page);
    if (!source)
        return {};
    switch (box) {
    case PDFDisplayBox::Media:
        return rectOf(*source->getMediaBox());
    case PDFDisplayBox::Crop:
        return rectOf(*source->getCropBox());
    case PDFDisplayBox::Bleed:
        return rectOf(*source->getBleedBox());
    case PDFDisplayBox::Trim:
        return rectOf(*source->getTrimBox());
    case PDFDisplayBox::Art:
        return rectOf(*source->getArtBox());
    }
    return {};
}

int PopplerDocument::rotation(std::size_t page) const
{
    Page* const source = pageAt(page);
    const int degrees = source ? ((source->getRotate() % 360) + 360) % 360 : 0;
    return degrees % 90 == 0 ? degrees : 0; // As pages are drawn, too.
}

std::shared_ptr<const Source> PopplerDocument::source() const
{
    if (!std::exchange(m_sourceIsTried, true) && isOpen()
        && m_document->getXRef()->getNumObjects() <= MostObjects) {
        m_source = openSource(m_data);
        if (m_source && m_source->pageCount() != m_pageCount)
            m_source = nullptr;
    }
    return m_source;
}

} // namespace caddis::pdf
