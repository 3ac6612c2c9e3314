#pragma once

#include "platform/base/Data.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace caddis {

/// One "mime.cache" of the desktop's shared MIME database, as far as names of files decide types.
///
/// Source: the Shared MIME-info Database specification 0.21, "The mime.cache files". All numbers are
/// big-endian and most of them places in the file:
///
///     header      version 1.1 or 1.2, then the places of the lists
///     aliases     (alias, type)*            sorted by the first; so are the parents
///     parents     (type, (type)*)*
///     suffixes    a tree over the characters of name endings, last character first; a node is
///                 (character, children, place of the first child), its character 0 (type, weight)
///
/// Nothing in the file is believed: a place outside it, or a list that would reach beyond it, is empty.
class MIMECache {
public:
    /// Nil for another file or another version. A copy shares the bytes.
    static std::optional<MIMECache> open(const Data& bytes);

    /// The heaviest type whose pattern is "*." and the extension, which is in lower case and may have dots.
    /// Of equally heavy ones the first.
    std::optional<std::string> typeForExtension(std::string_view extension) const;
    /// What the type is another name for; nil for a name that is no alias.
    std::optional<std::string> typeForAlias(std::string_view alias) const;
    /// The types that a type is a kind of, the nearest only.
    std::vector<std::string> parentsOf(std::string_view type) const;

private:
    struct List {
        std::uint64_t count = 0;
        std::uint64_t place = 0;
    };

    explicit MIMECache(const Data& bytes)
        : m_data(bytes)
        , m_bytes(bytes.chars())
    {
    }
    std::uint32_t number(std::uint64_t place) const;
    std::string_view text(std::uint64_t place) const;
    /// Cut to what the file has room for.
    List list(std::uint64_t place, std::size_t entrySize) const;
    List bounded(std::uint64_t count, std::uint64_t place, std::size_t entrySize) const;
    std::optional<std::uint64_t> find(const List& list, std::size_t entrySize, std::string_view key) const;
    List childrenFor(const List& nodes, std::uint32_t character) const;

    Data m_data;
    std::string_view m_bytes;
};

} // namespace caddis
