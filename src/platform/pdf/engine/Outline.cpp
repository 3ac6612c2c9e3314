#include "platform/pdf/engine/PopplerDocument.h"
#include "platform/pdf/engine/TextString.h"

#include <Array.h>
#include <Dict.h>
#include <Link.h>
#include <Page.h>

#include <unordered_set>

// The table of contents is a tree of linked lists in the file, which may be looped in any way: each item
// counts once.
namespace caddis::pdf {

namespace {

constexpr std::size_t MostItems = 100'000;
constexpr std::size_t DeepestLevel = 32;

class OutlineReader {
public:
    OutlineReader(const PopplerDocument& document, XRef* xref)
        : m_document(document)
        , m_xref(xref)
    {
    }

    std::vector<PDFOutlineItem> read(const Object& root)
    {
        if (root.isDict())
            readList(root.getDict()->lookupNF("First").copy(), 0);
        return std::move(m_items);
    }

private:
    void readList(Object reference, std::size_t level)
    {
        while (reference.isRef() && m_items.size() < MostItems && level < DeepestLevel
            && m_seen.insert(reference.getRef()).second) {
            const Object item = reference.fetch(m_xref);
            if (!item.isDict())
                return;
            const Object title = item.getDict()->lookup("Title");
            const auto destination = m_document.destinationOf(*item.getDict());
            m_items.push_back({ title.isString() ? textString(title.getString()->toStr()) : String(), level,
                destination ? m_document.pageOf(*destination) : std::nullopt });
            readList(item.getDict()->lookupNF("First").copy(), level + 1);
            reference = item.getDict()->lookupNF("Next").copy();
        }
    }

    const PopplerDocument& m_document;
    XRef* m_xref;
    std::vector<PDFOutlineItem> m_items;
    std::unordered_set<Ref> m_seen;
};

} // namespace

std::unique_ptr<LinkDest> PopplerDocument::destination(const Object& entry) const
{
    std::unique_ptr<LinkDest> link;
    if (entry.isArray()) {
        link = std::make_unique<LinkDest>(entry.getArray());
    } else if (entry.isName() || entry.isString()) {
        const GooString name(entry.isName() ? std::string(entry.getName()) : entry.getString()->toStr());
        link = m_document->findDest(&name);
    }
    return link && link->isOk() ? std::move(link) : nullptr;
}

std::unique_ptr<LinkDest> PopplerDocument::destinationOf(const Dict& item) const
{
    const Object own = item.lookup("Dest");
    if (!own.isNull())
        return destination(own);
    const Object action = item.lookup("A");
    if (!action.isDict() || !action.getDict()->lookup("S").isName("GoTo"))
        return nullptr;
    return destination(action.getDict()->lookup("D"));
}

std::optional<std::size_t> PopplerDocument::pageOf(const LinkDest& destination) const
{
    const int number
        = destination.isPageRef() ? m_document->findPage(destination.getPageRef()) : destination.getPageNum();
    return number > 0 ? std::optional(static_cast<std::size_t>(number - 1)) : std::nullopt;
}

std::vector<PDFOutlineItem> PopplerDocument::outline() const
{
    const Object* root = isOpen() ? m_document->getCatalog()->getOutline() : nullptr;
    return root ? OutlineReader(*this, m_document->getXRef()).read(*root) : std::vector<PDFOutlineItem>();
}

} // namespace caddis::pdf
