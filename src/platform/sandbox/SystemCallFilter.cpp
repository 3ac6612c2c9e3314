#include "platform/sandbox/SystemCallFilter.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <linux/audit.h>
#include <linux/sched.h>
#include <linux/seccomp.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>

#if !defined(__x86_64__)
#error "the numbers of system calls below are those of x86-64"
#endif

namespace caddis {

namespace {

constexpr unsigned FirstX32Call = 0x40000000;

// Numbers that the headers of Debian 12 may not have.
constexpr unsigned MountAttributes = 442; // mount_setattr
constexpr unsigned ChangeModeAt2 = 452; // fchmodat2

// Calls with an old form, to which callers fall back when the kernel has not heard of the new one.
constexpr unsigned Unknown[] = { SYS_clone3 };

constexpr unsigned Refused[] = {
    // The network, and the sockets of the user's session, which would be the way out.
    SYS_socket, SYS_connect, SYS_bind, SYS_listen,
    // Other processes.
    SYS_ptrace, SYS_process_vm_readv, SYS_process_vm_writev, SYS_process_madvise, SYS_pidfd_getfd, SYS_kcmp,
    // Parts of the kernel in which faults are found every year and which no reader of documents needs.
    SYS_bpf, SYS_userfaultfd, SYS_perf_event_open, SYS_io_uring_setup, SYS_io_uring_enter,
    SYS_io_uring_register, SYS_add_key, SYS_request_key, SYS_keyctl, SYS_fanotify_init, SYS_lookup_dcookie,
    SYS_vmsplice, SYS_modify_ldt, SYS_uselib, SYS_remap_file_pages, SYS_migrate_pages, SYS_move_pages,
    SYS_mbind, SYS_set_mempolicy,
    // Other views of the system.
    SYS_mount, SYS_umount2, SYS_pivot_root, SYS_chroot, SYS_unshare, SYS_setns, SYS_open_tree, SYS_move_mount,
    SYS_fsopen, SYS_fsconfig, SYS_fsmount, SYS_fspick, MountAttributes, SYS_open_by_handle_at,
    SYS_name_to_handle_at,
    // Administration.
    SYS_init_module, SYS_finit_module, SYS_delete_module, SYS_kexec_load, SYS_kexec_file_load, SYS_reboot,
    SYS_swapon, SYS_swapoff, SYS_acct, SYS_quotactl, SYS_quotactl_fd, SYS_syslog, SYS_sethostname,
    SYS_setdomainname, SYS_settimeofday, SYS_clock_settime, SYS_clock_adjtime, SYS_adjtimex, SYS_iopl,
    SYS_ioperm, SYS_vhangup, SYS_nfsservctl, SYS_personality,
    // What Landlock leaves open: a file's length by its path, mode, owner, times, attributes.
    SYS_truncate, SYS_chmod, SYS_fchmod, SYS_fchmodat, ChangeModeAt2, SYS_chown, SYS_fchown, SYS_lchown,
    SYS_fchownat, SYS_setxattr, SYS_lsetxattr, SYS_fsetxattr, SYS_removexattr, SYS_lremovexattr,
    SYS_fremovexattr, SYS_utime, SYS_utimes, SYS_utimensat, SYS_futimesat, SYS_mknod, SYS_mknodat
};

class Program {
public:
    void load(std::size_t offset) { m_code.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, unsigned(offset))); }
    void end(unsigned verdict) { m_code.push_back(BPF_STMT(BPF_RET | BPF_K, verdict)); }
    void failWhenEqual(unsigned value, unsigned error) { endWhen(BPF_JEQ, value, error); }
    void failUnlessEqual(unsigned value, unsigned error)
    {
        m_code.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, value, 1, 0));
        end(SECCOMP_RET_ERRNO | error);
    }
    void failWhenAtLeast(unsigned value, unsigned error) { endWhen(BPF_JGE, value, error); }
    void failWhenAnyBit(unsigned bits, unsigned error) { endWhen(BPF_JSET, bits, error); }
    // The next `count` statements are for this call only.
    void skipUnless(unsigned call, std::uint8_t count)
    {
        m_code.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call, 0, count));
    }
    std::vector<sock_filter> take() { return std::move(m_code); }

private:
    void endWhen(unsigned short comparison, unsigned value, unsigned error)
    {
        m_code.push_back(BPF_JUMP(static_cast<unsigned short>(BPF_JMP | comparison | BPF_K), value, 0, 1));
        end(SECCOMP_RET_ERRNO | error);
    }

    std::vector<sock_filter> m_code;
};

// The low half of an argument; the values in question have nothing in the high one.
constexpr std::size_t argument(std::size_t index) { return offsetof(seccomp_data, args) + index * 8; }

constexpr unsigned NewNamespace = CLONE_NEWNS | CLONE_NEWCGROUP | CLONE_NEWUTS | CLONE_NEWIPC | CLONE_NEWUSER
    | CLONE_NEWPID | CLONE_NEWNET;

} // namespace

std::vector<sock_filter> systemCallFilter()
{
    Program program;
    program.load(offsetof(seccomp_data, arch));
    program.failUnlessEqual(AUDIT_ARCH_X86_64, ENOSYS);
    program.load(offsetof(seccomp_data, nr));
    program.failWhenAtLeast(FirstX32Call, ENOSYS);
    for (const unsigned call : Unknown)
        program.failWhenEqual(call, ENOSYS);
    for (const unsigned call : Refused) {
#if defined(__SANITIZE_ADDRESS__)
        if (call == SYS_ptrace) // The search for leaks at the end of a process stops its threads with it.
            continue;
#endif
        program.failWhenEqual(call, EPERM);
    }
    program.skipUnless(SYS_clone, 4);
    program.load(argument(0));
    program.failWhenAnyBit(NewNamespace, EPERM);
    program.end(SECCOMP_RET_ALLOW);
    program.skipUnless(SYS_ioctl, 5);
    program.load(argument(1));
    program.failWhenEqual(TIOCSTI, EPERM); // Types at the user's terminal.
    program.failWhenEqual(TIOCLINUX, EPERM);
    program.end(SECCOMP_RET_ALLOW);
    return program.take();
}

} // namespace caddis
