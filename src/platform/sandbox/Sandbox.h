#pragma once

#include "platform/base/Descriptor.h"

#include <linux/filter.h>
#include <string>
#include <vector>

/// What a process that reads the documents of strangers gives up for good, with all that it starts from then
/// on, so that whoever takes it over gains nothing:
///
///     files     read everywhere; written, made and removed only below one scratch folder
///     programs  started only below /usr, /bin, /sbin, /lib, /lib64, /opt, beside this program and its
///     modules network   no socket of any kind, the user's own sockets included; what is open stays usable
///     kernel    no calls that only those need who administer, trace or escape, none that change the owner,
///               mode, times or attributes of files; no privileges by set-user-id programs
///
/// The first two and a part of the third are Landlock's, the rest a filter of system calls. Nothing has to be
/// installed, and no rights are needed.
namespace caddis {

class Sandbox {
public:
    /// For this process: one without threads yet. `scratch` may be empty: then nothing can be written.
    /// Programs in the folder `programs` may be started too.
    static Sandbox forReader(const std::string& scratch, const std::string& programs = {});
    /// For a program that is about to be started, in its child process between fork and exec.
    static Sandbox forChild(const std::string& scratch);

    /// Enters what the kernel has of it. False when it refuses. Allocates nothing and takes no lock.
    bool enter() const noexcept;

    /// What this kernel does not have, a sentence each; empty when it has everything.
    const std::vector<std::string>& whatIsMissing() const { return m_missing; }

    /// The kernel's Landlock version; 0 where there is none.
    static int landlockVersion();

private:
    enum class For { Reader, Child };

    Sandbox(const std::string& scratch, const std::string& programs, For purpose);
    void addRules(const std::string& scratch, const std::string& programs, int version);

    Descriptor m_rules;
    std::vector<sock_filter> m_filter;
    std::vector<std::string> m_missing;
    For m_for;
};

} // namespace caddis
