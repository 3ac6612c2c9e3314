#include "platform/ipc/SharedBytes.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <linux/magic.h>
#include <new>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/vfs.h>

namespace caddis {

namespace {

constexpr int Seals = F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL;

bool writeAll(int file, std::span<const std::uint8_t> bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
    }
    return true;
}

// The kernel tells the seals of tmpfs and hugetlbfs files only; the latter's pages are not worth the risk.
bool isSealedMemory(int file)
{
    constexpr int Needed = F_SEAL_SHRINK | F_SEAL_WRITE;
    struct statfs system = {};
    const int seals = fcntl(file, F_GET_SEALS);
    return seals >= 0 && (seals & Needed) == Needed && fstatfs(file, &system) == 0
        && system.f_type == TMPFS_MAGIC;
}

std::optional<Data> mapped(int file, std::size_t size)
{
    void* pages = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
    if (pages == MAP_FAILED)
        return std::nullopt;
    const std::shared_ptr<const void> keeper(
        pages, [size](const void* mapping) { munmap(const_cast<void*>(mapping), size); });
    return Data::keptBy(keeper, pages, size);
}

std::optional<Data> copied(int file, std::size_t size)
{
    std::unique_ptr<void, decltype(&std::free)> block(std::malloc(size), std::free);
    if (!block)
        throw std::bad_alloc();
    std::size_t have = 0;
    while (have < size) {
        const ssize_t read = pread(file, static_cast<char*>(block.get()) + have, size - have, off_t(have));
        if (read < 0 && errno == EINTR)
            continue;
        if (read <= 0)
            return std::nullopt;
        have += static_cast<std::size_t>(read);
    }
    return Data::adoptMalloc(block.release(), size);
}

} // namespace

Descriptor sealedCopyOf(std::span<const std::uint8_t> bytes)
{
    Descriptor file(memfd_create("caddis", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (!file.isOpen() || !writeAll(file.number(), bytes) || fcntl(file.number(), F_ADD_SEALS, Seals) != 0)
        return {};
    return file;
}

std::optional<Data> contentsOf(const Descriptor& descriptor, DescriptorTrust trust)
{
    const int file = descriptor.number();
    struct stat status = {};
    if (fstat(file, &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    const bool sealed = isSealedMemory(file);
    if (!sealed && trust == DescriptorTrust::SealedOnly)
        return std::nullopt;
    const auto size = static_cast<std::size_t>(status.st_size);
    if (size > MaximumSharedBytes)
        return std::nullopt;
    if (size == 0)
        return Data();
    return sealed ? mapped(file, size) : copied(file, size);
}

} // namespace caddis
