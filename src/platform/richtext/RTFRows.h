#pragma once

#include "platform/richtext/RTFTables.h"

/// Inside this folder: how the cells of a row look, from the words between \trowd and the row's end. They may
/// stand before the row's text or behind it.
namespace caddis::rtf {

/// A cell's looks, from the words before its \cellx. Twips.
struct CellDefinition {
    std::int64_t left = 0; ///< as `right`, from the margin: their difference is exact
    std::int64_t right = 0;
    std::int32_t background = 0;
    std::int32_t borderColor = 0;
    std::int32_t borderWidth = 0;
    std::int32_t minimumHeight = 0;
    std::uint8_t borderSides = 0; ///< bits of TableCell::BorderSide
    VerticalAlignment alignment = VerticalAlignment::Top;
    std::optional<std::int32_t> paddingTop, paddingLeft, paddingBottom, paddingRight; ///< nil: the row's
    bool hasNoWidth = false; ///< \clftsWidth1: `right` is only where it happens to be
    bool isTall = false; ///< \clvmgf: those below it may be parts of it
    bool isMergedAcross = false; ///< \clmrg: a part of the cell before it
    bool isMergedDown = false; ///< \clvmrg: a part of the one above
    std::uint32_t span = 1; ///< columns, with those that it covers behind it
};

class RowDefinition {
public:
    /// False for a word that is not about rows and cells.
    bool takeWord(std::string_view name, std::int32_t value);

    /// Whether the cell is only a part of another one.
    bool isCovered(std::uint32_t column) const;
    /// Whether the table ends with the row, even if another one follows at once.
    bool isLast() const { return m_isLast; }
    bool isTall(std::uint32_t column) const { return column < m_cells.size() && m_cells[column].isTall; }
    bool isMergedDown(std::uint32_t column) const
    {
        return column < m_cells.size() && m_cells[column].isMergedDown;
    }
    /// The columns up to the end of the cell.
    std::uint32_t columnsUntil(std::uint32_t column) const;
    /// Gives `cell` the looks of its column.
    void style(TableCell& cell, const ColorTable& colors) const;

private:
    void begin();
    void endCell(std::int32_t right);
    bool borderWord(std::string_view name, std::int32_t value);
    CellPadding paddingOf(const CellDefinition& cell) const;

    struct Words;

    std::vector<CellDefinition> m_cells;
    std::size_t m_leading = 0; // Index of the last one that is not merged into another.
    CellDefinition m_next;
    std::uint8_t m_borderSide = 0; // Of the next cell, that the next words are about; 0: none.
    bool m_isLast = false;
    std::int32_t m_left = 0;
    std::int32_t m_minimumHeight = 0;
    std::int32_t m_gap = 0; // Half of what is between the texts of two cells.
    std::optional<std::int32_t> m_paddingTop, m_paddingLeft, m_paddingBottom, m_paddingRight;
};

} // namespace caddis::rtf
