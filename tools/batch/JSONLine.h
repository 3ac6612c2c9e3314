#pragma once

#include "platform/base/String.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace caddis::tool {

/// One object on a line, its members by name. Only its outermost level is read; what is nested is passed
/// over.
///
///     const JSONLine line(R"({"file": "/a.pdf", "size": 17, "result": {…}})");
///     if (const auto file = line.text("file")) …
class JSONLine {
public:
    /// The line has to outlive this. One that is cut off, or no object, has no members.
    explicit JSONLine(std::string_view line);

    bool isObject() const { return m_isObject; }
    /// A member that is a string; nil for any other.
    std::optional<std::string> text(std::string_view name) const;
    /// A member as it stands in the line ("17", "true", "{…}"); nil without one.
    std::optional<std::string_view> raw(std::string_view name) const;

private:
    struct Member {
        std::string_view name; // as it stands, without its quotes
        std::string_view value; // as it stands
    };

    bool read(std::string_view rest);

    std::vector<Member> m_members;
    bool m_isObject = false;
};

} // namespace caddis::tool
