#pragma once

#include "platform/base/Descriptor.h"
#include "platform/base/String.h"

#include <optional>
#include <string>

/// Where registered names live: each is a socket of that name in the user's private runtime directory.
namespace caddis {

/// $CADDIS_RUNTIME_DIR, else $XDG_RUNTIME_DIR/caddis, else /tmp/caddis-UID.
std::string runtimeDirectoryPath();

/// Whether a name can be registered: not empty, no "/", no NUL, no leading ".".
bool isRegistrableName(const String& name);

/// The path of a name's socket, which exists while (and perhaps after) somebody has it registered.
/// Nil for a name that cannot be registered.
std::optional<std::string> socketPathForName(const String& name);

/// The folder for temporary files of the one who has the name registered: beside the socket.
std::optional<std::string> scratchPathForName(const String& name);

/// Removes what a holder of the name left behind: socket, lock and scratch folder. Only for a name that
/// nobody holds or is about to register.
void removeFilesOfName(const String& name);

/// The one holder of a name among all processes of the user, for as long as it lives.
///
/// The lock is the kernel's: it ends with the process however that ends, and a child that outlives the
/// process does not keep it. The files stay; only the holder of the lock touches the socket.
class NameLock {
public:
    /// Creates the runtime directory when it is missing. Nil when another process has the name, and (logged)
    /// when the name is no file name, its socket's path is too long, or the directory is not a private one.
    static std::optional<NameLock> acquire(const String& name);

    const std::string& socketPath() const { return m_socketPath; }
    /// A path for the socket until it listens; no other process uses it.
    const std::string& temporaryPath() const { return m_temporaryPath; }
    /// Gives the socket at the temporary path its name. False, logged, when that fails.
    bool publish() const;

private:
    NameLock() = default;

    Descriptor m_lock;
    std::string m_socketPath;
    std::string m_temporaryPath;
};

} // namespace caddis
