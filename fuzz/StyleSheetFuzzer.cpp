// Style sheets, on a small page that they style.
//
// Invariants: every rule has a block, every block lies in the declarations; every element gets a style, with
// a size that letters can have.

#include "Fuzz.h"
#include "html/Cascade.h"

using namespace caddis;
using namespace caddis::css;

static const Page& smallPage()
{
    static const Page page
        = html::parsePage(String(u"<body id=a class='b c'><p>1<b style='--x: 2em'>2</b><i title=d>"
                                 u"<ul><li>3<li class=b>4</ul><table><tr><td>5<th>6</table>"));
    return page;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const StyleSheet sheet = parseStyleSheet(String::fromUtf8({ reinterpret_cast<const char*>(data), size }));
    for (const StyleSheet::Rule& rule : sheet.rules)
        INVARIANT(rule.block < sheet.blocks.size() && !rule.selector.compounds.empty());
    for (const StyleSheet::Block& block : sheet.blocks)
        INVARIANT(block.count > 0 && block.first + block.count <= sheet.declarations.size());
    const Page& page = smallPage();
    Cascade cascade(page);
    cascade.add(sheet);
    std::vector<const ComputedStyle*> styles(page.size());
    for (NodeIndex node = 0; node < page.size(); ++node) {
        if (page[node].tag == html::Tag::Text)
            continue;
        const NodeIndex parent = page[node].parent;
        styles[node] = &cascade.styleOf(node, parent == NoNode ? nullptr : styles[parent]);
        INVARIANT(styles[node]->fontSize >= 1 && styles[node]->fontSize <= 1000);
    }
    return 0;
}
