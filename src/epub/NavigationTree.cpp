#include "epub/NavigationTree.h"

#include <algorithm>
#include <unordered_map>

namespace caddis {

namespace {

const Array* childrenOf(const Value& entry)
{
    const auto* dictionary = entry.as<Dictionary>();
    const Value* children = dictionary ? dictionary->find(u"children") : nullptr;
    return children ? children->as<Array>() : nullptr;
}

} // namespace

std::size_t countChildren(const Array& entries)
{
    std::size_t count = entries.size();
    for (const Value& entry : entries) {
        if (const Array* children = childrenOf(entry))
            count += countChildren(*children);
    }
    return count;
}

Array treeOfSpine(
    const Array& ncx, std::span<const String> contents, FunctionRef<String(const String&)> titleOf)
{
    if (std::ranges::any_of(ncx, [](const Value& entry) { return childrenOf(entry) != nullptr; }))
        return ncx;
    Array listed = ncx;
    std::unordered_map<String, Dictionary*> entryOfContent;
    for (Value& entry : listed)
        entryOfContent[*entry.as<Dictionary>()->find(u"content")->as<String>()] = entry.as<Dictionary>();

    Array tree; // The unlisted documents before the first listed one; the NCX list follows them.
    Array* current = &tree;
    for (const String& content : contents) {
        const auto entry = entryOfContent.find(content);
        if (entry != entryOfContent.end()) {
            entry->second->set(u"children"_s, Value(Array()));
            current = entry->second->find(u"children")->as<Array>();
        } else
            current->push_back(Dictionary { { u"content"_s, content }, { u"label"_s, titleOf(content) } });
    }
    tree.insert(tree.end(), std::make_move_iterator(listed.begin()), std::make_move_iterator(listed.end()));
    return tree;
}

} // namespace caddis
