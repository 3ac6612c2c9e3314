#include "platform/sandbox/Sandbox.h"

#include "platform/sandbox/SystemCallFilter.h"

#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <linux/landlock.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

namespace caddis {

namespace {

// linux/landlock.h of Debian 12 stops at version 2 of the interface.
struct Ruleset {
    std::uint64_t files;
    std::uint64_t network;
    std::uint64_t scopes;
};

constexpr std::uint64_t Truncate = 1 << 14; // from version 3
constexpr std::uint64_t DeviceControl = 1 << 15; // from version 5
constexpr std::uint64_t BindAndConnectTCP = 3; // from version 4
constexpr std::uint64_t AbstractSocketsAndSignals = 3; // from version 6

constexpr std::uint64_t Reading = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
constexpr std::uint64_t Writing = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR
    | LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_DIR | LANDLOCK_ACCESS_FS_MAKE_REG
    | LANDLOCK_ACCESS_FS_MAKE_FIFO | LANDLOCK_ACCESS_FS_MAKE_SYM;
// Handled so that they are refused everywhere.
constexpr std::uint64_t Never
    = LANDLOCK_ACCESS_FS_MAKE_CHAR | LANDLOCK_ACCESS_FS_MAKE_BLOCK | LANDLOCK_ACCESS_FS_MAKE_SOCK;

constexpr const char* ProgramFolders[] = { "/usr", "/bin", "/sbin", "/lib", "/lib64", "/opt" };

Ruleset rulesetOf(int version)
{
    Ruleset ruleset { Reading | Writing | Never | LANDLOCK_ACCESS_FS_EXECUTE, 0, 0 };
    if (version >= 2)
        ruleset.files |= LANDLOCK_ACCESS_FS_REFER;
    if (version >= 3)
        ruleset.files |= Truncate;
    if (version >= 4)
        ruleset.network = BindAndConnectTCP;
    if (version >= 5)
        ruleset.files |= DeviceControl;
    if (version >= 6)
        ruleset.scopes = AbstractSocketsAndSignals;
    return ruleset;
}

// What the kernel must be told of the structure: it knows no later fields than those of its version.
std::size_t sizeOfRuleset(int version)
{
    return version >= 6 ? sizeof(Ruleset) : version >= 4 ? 2 * sizeof(std::uint64_t) : sizeof(std::uint64_t);
}

void allow(const Descriptor& rules, const std::string& path, std::uint64_t access)
{
    const Descriptor place(open(path.c_str(), O_PATH | O_CLOEXEC));
    if (!place.isOpen())
        return;
    landlock_path_beneath_attr rule {};
    rule.allowed_access = access;
    rule.parent_fd = place.number();
    syscall(SYS_landlock_add_rule, rules.number(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
}

} // namespace

int Sandbox::landlockVersion()
{
    const long version = syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    return version > 0 ? static_cast<int>(version) : 0;
}

Sandbox Sandbox::forReader(const std::string& scratch, const std::string& programs)
{
    return { scratch, programs, For::Reader };
}

Sandbox Sandbox::forChild(const std::string& scratch) { return { scratch, {}, For::Child }; }

Sandbox::Sandbox(const std::string& scratch, const std::string& programs, For purpose)
    : m_filter(systemCallFilter())
    , m_for(purpose)
{
    const int version = landlockVersion();
    if (version > 0)
        addRules(scratch, programs, version);
    if (!m_rules.isOpen())
        m_missing.emplace_back("This kernel has no Landlock: what may be written and started is not limited");
    if (prctl(PR_GET_SECCOMP, 0, 0, 0, 0) < 0)
        m_missing.emplace_back("This kernel can't filter system calls: the network is not closed");
}

void Sandbox::addRules(const std::string& scratch, const std::string& programs, int version)
{
    const Ruleset ruleset = rulesetOf(version);
    m_rules = Descriptor(
        static_cast<int>(syscall(SYS_landlock_create_ruleset, &ruleset, sizeOfRuleset(version), 0)));
    if (!m_rules.isOpen())
        return;
    allow(m_rules, "/", Reading);
    std::error_code error;
    const auto own = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    std::vector<std::string> folders { own.string(), (own / "../lib/caddis").string(), programs };
    folders.insert(folders.end(), std::begin(ProgramFolders), std::end(ProgramFolders));
    for (const std::string& folder : folders)
        allow(m_rules, folder, Reading | LANDLOCK_ACCESS_FS_EXECUTE);
    const std::uint64_t anyFile = (Truncate | DeviceControl) & ruleset.files;
    allow(m_rules, "/dev/null", LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_WRITE_FILE | anyFile);
    if (!scratch.empty())
        allow(m_rules, scratch, Reading | Writing | ((LANDLOCK_ACCESS_FS_REFER | Truncate) & ruleset.files));
}

bool Sandbox::enter() const noexcept
{
    if (m_for == For::Reader)
        prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        return false;
    if (m_rules.isOpen() && syscall(SYS_landlock_restrict_self, m_rules.number(), 0) != 0)
        return false;
    const sock_fprog program { static_cast<unsigned short>(m_filter.size()),
        const_cast<sock_filter*>(m_filter.data()) };
    return prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program, 0, 0) == 0;
}

} // namespace caddis
