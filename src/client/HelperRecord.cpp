#include "client/HelperRecord.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace caddis {

namespace {

// In the order of the enumeration.
constexpr std::array<std::u16string_view, 8> Names { u"ok", u"partial", u"unsupported", u"encrypted",
    u"timed out", u"too big", u"crashed", u"refused" };

} // namespace

std::u16string_view nameOf(HelperOutcome outcome) { return Names.at(static_cast<std::size_t>(outcome)); }

std::optional<HelperOutcome> helperOutcomeNamed(std::u16string_view name)
{
    const auto* const found = std::ranges::find(Names, name);
    if (found == Names.end())
        return std::nullopt;
    return static_cast<HelperOutcome>(found - Names.begin());
}

bool isHarm(HelperOutcome outcome)
{
    return outcome == HelperOutcome::TimedOut || outcome == HelperOutcome::TooBig
        || outcome == HelperOutcome::Crashed;
}

std::optional<FileState> stateOfFile(const String& path, String& whyNot)
{
    if (path.isEmpty()) {
        whyNot = u"no file is named"_s;
        return std::nullopt;
    }
    const std::string name = path.utf8();
    struct stat status = {};
    if (stat(name.c_str(), &status) != 0 || access(name.c_str(), R_OK) != 0) {
        const bool mayBeMisspelt
            = errno == ENOENT && path.view().find(u'\xFFFD') != std::u16string_view::npos;
        whyNot = mayBeMisspelt ? u"its name is not UTF-8"_s : String::fromUtf8(std::strerror(errno));
        return std::nullopt;
    }
    if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode)) {
        whyNot = u"neither a file nor a folder"_s;
        return std::nullopt;
    }
    constexpr std::int64_t Billion = 1'000'000'000;
    return FileState { S_ISREG(status.st_mode) ? static_cast<std::uint64_t>(status.st_size) : 0,
        status.st_mtim.tv_sec * Billion + status.st_mtim.tv_nsec };
}

} // namespace caddis
