#pragma once

#include "platform/base/String.h"
#include "platform/task/ChildProcess.h"

/// Programs of others over documents that may be hostile (PostScript interpreters, office suites,
/// thumbnailers): always in a process of their own, bounded in everything.
namespace caddis {

/// An empty folder for one run of a program, removed with all that is in it.
class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    /// False when it couldn't be made; the path is empty then.
    bool exists() const { return !m_path.isEmpty(); }
    const String& path() const { return m_path; }
    /// The path of something in it.
    String pathOf(const String& name) const;

private:
    String m_path;
};

/// The absolute path of an installed program; nil when there is none. The caller's PATH is not asked.
std::optional<std::string> installedProgram(std::string_view name);

/// Below the 15 s after which a client gives a request up.
inline constexpr std::chrono::milliseconds BoundedChildDeadline { 12'000 };

/// Runs a program in `scratch`, which is its working folder, its home and its place for temporary files; it
/// sees no other variable of this process's environment. Not started: no scratch folder.
ChildResult runBounded(std::vector<std::string> arguments, const ScratchFolder& scratch,
    const ChildLimits& limits = {}, std::chrono::milliseconds deadline = BoundedChildDeadline);

} // namespace caddis
