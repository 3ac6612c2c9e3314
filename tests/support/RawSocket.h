#pragma once

#include "platform/base/Descriptor.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <vector>

/// The wire without a library, for tests that break its rules; and what a process has left afterwards.
namespace caddis {

inline Descriptor connectedSocket(const std::filesystem::path& path)
{
    Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address = { .sun_family = AF_UNIX, .sun_path = {} };
    path.native().copy(address.sun_path, sizeof address.sun_path - 1);
    if (connect(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return {};
    return socket;
}

/// Sends all bytes, with descriptors; false when the other end has hung up.
inline bool sendRaw(
    const Descriptor& socket, const std::string& bytes, const std::vector<int>& descriptors = {})
{
    iovec part { const_cast<char*>(bytes.data()), bytes.size() };
    std::vector<char> control(CMSG_SPACE(sizeof(int) * descriptors.size()));
    msghdr header = {};
    header.msg_iov = &part;
    header.msg_iovlen = 1;
    if (!descriptors.empty()) {
        header.msg_control = control.data();
        header.msg_controllen = control.size();
        cmsghdr* rights = CMSG_FIRSTHDR(&header);
        rights->cmsg_level = SOL_SOCKET;
        rights->cmsg_type = SCM_RIGHTS;
        rights->cmsg_len = CMSG_LEN(sizeof(int) * descriptors.size());
        std::memcpy(CMSG_DATA(rights), descriptors.data(), sizeof(int) * descriptors.size());
    }
    return sendmsg(socket.number(), &header, MSG_NOSIGNAL) == ssize_t(bytes.size());
}

/// The first line of a client's handshake, which starts with a NUL.
inline std::string authentication()
{
    std::string line(1, '\0');
    line += "AUTH EXTERNAL ";
    for (const char digit : std::to_string(geteuid()))
        line += { '3', digit };
    return line += "\r\n";
}

inline std::size_t openDescriptors(pid_t process = getpid())
{
    const std::filesystem::directory_iterator entries("/proc/" + std::to_string(process) + "/fd");
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

inline std::size_t residentBytes(pid_t process = getpid())
{
    std::ifstream file("/proc/" + std::to_string(process) + "/statm");
    std::size_t pages = 0;
    std::size_t resident = 0;
    file >> pages >> resident;
    return resident * static_cast<std::size_t>(getpagesize());
}

} // namespace caddis
