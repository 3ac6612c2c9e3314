#include "platform/files/FaultGuard.h"

#include <atomic>
#include <csignal>
#include <cstdint>
#include <mutex>
#include <sys/mman.h>
#include <unistd.h>

namespace caddis::FaultGuard {

namespace {

// A list that only grows, so that the signal handler may walk it without a lock. A node whose `begin` is 0 is
// free and is used again; `size` is written before `begin`.
struct Mapping {
    std::atomic<std::uintptr_t> begin { 0 };
    std::atomic<std::size_t> size { 0 };
    Mapping* next = nullptr;
};

std::atomic<Mapping*> s_mappings { nullptr };
struct sigaction s_previous;
std::uintptr_t s_pageSize = 0;

std::mutex& registration()
{
    static std::mutex mutex;
    return mutex;
}

bool isRegistered(std::uintptr_t address)
{
    for (const Mapping* mapping = s_mappings; mapping; mapping = mapping->next) {
        const std::uintptr_t begin = mapping->begin;
        if (begin && address >= begin && address - begin < mapping->size)
            return true;
    }
    return false;
}

// Called in a signal handler: mmap is a bare system call on Linux.
bool putZeroPageAt(std::uintptr_t address)
{
    void* page = reinterpret_cast<void*>(address & ~(s_pageSize - 1));
    return mmap(page, s_pageSize, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) == page;
}

void handleFault(int signal, siginfo_t* information, void* context)
{
    const auto address = reinterpret_cast<std::uintptr_t>(information->si_addr);
    if (isRegistered(address) && putZeroPageAt(address))
        return;
    if (s_previous.sa_flags & SA_SIGINFO) {
        s_previous.sa_sigaction(signal, information, context);
    } else if (s_previous.sa_handler != SIG_DFL && s_previous.sa_handler != SIG_IGN) {
        s_previous.sa_handler(signal);
    } else {
        // The faulting instruction runs again and ends the process as it would have without this handler.
        std::signal(signal, SIG_DFL);
    }
}

void installHandler()
{
    s_pageSize = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    struct sigaction action { };
    action.sa_sigaction = handleFault;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    sigemptyset(&action.sa_mask);
    sigaction(SIGBUS, &action, &s_previous);
}

} // namespace

void add(const void* address, std::size_t size)
{
    const std::lock_guard lock(registration());
    if (!s_pageSize)
        installHandler();
    Mapping* mapping = s_mappings;
    while (mapping && mapping->begin)
        mapping = mapping->next;
    if (!mapping) {
        mapping = new Mapping;
        mapping->next = s_mappings;
        s_mappings = mapping;
    }
    mapping->size = size;
    mapping->begin = reinterpret_cast<std::uintptr_t>(address);
}

void remove(const void* address)
{
    const std::lock_guard lock(registration());
    for (Mapping* mapping = s_mappings; mapping; mapping = mapping->next) {
        if (mapping->begin == reinterpret_cast<std::uintptr_t>(address))
            mapping->begin = 0;
    }
}

bool contains(const void* address) { return isRegistered(reinterpret_cast<std::uintptr_t>(address)); }

} // namespace caddis::FaultGuard
