// Floor PATH: connects to a socket and writes a byte, with nothing linked but the C library.

#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

int main(int, char** arguments)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, arguments[1], sizeof address.sun_path - 1);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    const bool connected = connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    return connected && write(socket, "x", 1) == 1 ? 0 : 1;
}
