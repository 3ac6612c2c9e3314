#pragma once

#include "platform/office/Properties.h"

#include <array>
#include <map>
#include <memory>

/// Inside this folder: lists, and the markers that stand before their items.
namespace caddis::office {

struct ListLevel {
    static constexpr std::u16string_view Bullet = u"bullet";

    /// A CSS list style ("decimal", "lower-roman"), "none", or Bullet.
    String format { u"decimal" };
    /// Of a bullet the bullet itself; else "%1" stands for the number of the first level and so on:
    /// "%1.%2)".
    String pattern;
    std::int32_t start = 1;
    ParagraphProperties indents;
};

/// Levels count from 0.
inline constexpr int LastListLevel = 8;
using ListLevels = std::array<ListLevel, LastListLevel + 1>;

/// The lists of a document by name, and how far each has counted.
class Numbering {
public:
    /// The levels of a list, to be filled. Beyond 4,096 lists they are those of one that nobody sees.
    ListLevels& define(const String& list);
    /// Makes `list` another name of `original`: both count together.
    void alias(const String& list, const String& original);
    /// Makes `list` a list with the levels it had, which counts on its own.
    ListLevels& separate(const String& list);
    bool has(const String& list) const { return m_lists.contains(list); }

    /// Null pointer for a list that is not defined.
    const ListLevel* level(const String& list, int level) const;
    /// The next item's marker: "3.", "•"; empty when its items have none.
    String nextMarker(const String& list, int level);
    /// Items of the level count from `number` again.
    void restart(const String& list, int level, std::int32_t number);
    /// All levels count from their start again.
    void restart(const String& list);
    TextList textList(const String& list, int level) const;

private:
    struct List {
        ListLevels levels;
        std::array<std::optional<std::int32_t>, LastListLevel + 1>
            numbers; // Of the last item; nil: none yet.
    };
    const List* find(const String& list) const;

    std::unordered_map<String, std::shared_ptr<List>> m_lists;
    ListLevels m_surplus;
};

/// The style of an item's paragraph: its stops put the marker before the text.
ParagraphStyle listItemStyle(const ParagraphProperties& properties, std::vector<std::uint32_t> lists);

/// The character that a bullet of a symbol font shows, in Unicode.
String bulletOfSymbol(const String& bullet);

} // namespace caddis::office
