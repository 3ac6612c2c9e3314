// A helper that means harm: HostileHelper NAME DEED. It speaks the handshake by hand, answers every call
// until the first "Echo" properly, and then does its deed.

#include "platform/base/Data.h"
#include "platform/base/Descriptor.h"
#include "platform/ipc/RuntimeDirectory.h"
#include "platform/ipc/SharedBytes.h"
#include "support/RawSocket.h"

#include <cstdint>
#include <fcntl.h>
#include <functional>
#include <map>
#include <string>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <vector>

namespace {

using caddis::Descriptor;
using Bytes = std::string;

// Little-endian D-Bus, just enough of it.
void align(Bytes& out, std::size_t to) { out.resize((out.size() + to - 1) / to * to); }

void number(Bytes& out, std::uint32_t value)
{
    align(out, 4);
    out.append(reinterpret_cast<const char*>(&value), 4);
}

void field(Bytes& out, char code, char type, const std::string& text, std::uint32_t value = 0)
{
    align(out, 8);
    out += { code, 1, type, 0 };
    if (type == 'u')
        return number(out, value);
    if (type == 'g')
        out += static_cast<char>(text.size());
    else
        number(out, static_cast<std::uint32_t>(text.size()));
    out += text + '\0';
}

// A method return to serial `to`, of one body.
Bytes reply(std::uint32_t to, const std::string& signature, const Bytes& body, std::uint32_t descriptors = 0)
{
    Bytes fields;
    field(fields, 5, 'u', {}, to);
    if (!signature.empty())
        field(fields, 8, 'g', signature);
    if (descriptors)
        field(fields, 9, 'u', {}, descriptors);
    Bytes message { 'l', 2, 1, 1 };
    number(message, static_cast<std::uint32_t>(body.size()));
    number(message, 77);
    number(message, static_cast<std::uint32_t>(fields.size()));
    message += fields;
    align(message, 8);
    return message + body;
}

// av with one variant of "h", which is descriptor 0 of the message.
Bytes descriptorReply(std::uint32_t to, std::uint32_t descriptors)
{
    Bytes body;
    number(body, 8);
    body += { 1, 'h', 0 };
    number(body, 0);
    return reply(to, "av", body, descriptors);
}

class Client {
public:
    explicit Client(int socket)
        : m_socket(socket)
    {
    }

    void send(const Bytes& bytes, const std::vector<int>& descriptors = {}) const
    {
        if (!sendRaw(m_socket, bytes, descriptors))
            _exit(0);
    }
    // Up to and with the next line; the handshake has no pipelining from this client.
    std::string line() const
    {
        std::string text;
        for (char byte = 0; byte != '\n'; text += byte) {
            if (read(m_socket.number(), &byte, 1) != 1)
                return {};
        }
        return text;
    }
    // The serial of the next message and whether it calls Echo; 0 at the end.
    std::pair<std::uint32_t, bool> nextCall() const
    {
        Bytes head = exactly(16);
        if (head.empty())
            return {};
        std::uint32_t words[4];
        std::memcpy(words, head.data(), 16);
        const Bytes rest = exactly((words[3] + 7) / 8 * 8 + words[1]);
        return { words[2], rest.find("Echo") != rest.npos };
    }

private:
    Bytes exactly(std::size_t count) const
    {
        Bytes bytes(count, '\0');
        const ssize_t got = recv(m_socket.number(), bytes.data(), count, MSG_WAITALL);
        return got == static_cast<ssize_t>(count) ? bytes : Bytes();
    }

    Descriptor m_socket;
};

bool shakeHands(const Client& client)
{
    for (std::string line = client.line(); !line.empty(); line = client.line()) {
        if (line.find("AUTH") != line.npos)
            client.send("OK 0123456789abcdef0123456789abcdef\r\n");
        else if (line.starts_with("NEGOTIATE"))
            client.send("AGREE_UNIX_FD\r\n");
        else if (line.starts_with("BEGIN"))
            return true;
    }
    return false;
}

Descriptor unsealed()
{
    Descriptor file(memfd_create("bad", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    return ftruncate(file.number(), 1 << 20) == 0 ? std::move(file) : Descriptor();
}

using Deed = std::function<void(const Client&, std::uint32_t serial)>;

const std::map<std::string, Deed> deeds {
    { "sealed", // The good one: it shows that the others fail for what they send.
        [](const Client& client, std::uint32_t to) {
            const Descriptor file = caddis::sealedCopyOf(caddis::Data::copyOf("good").span());
            client.send(descriptorReply(to, 1), { file.number() });
        } },
    { "unsealed",
        [](const Client& client, std::uint32_t to) {
            const Descriptor file = unsealed();
            client.send(descriptorReply(to, 1), { file.number() });
        } },
    { "pipe",
        [](const Client& client, std::uint32_t to) {
            int ends[2] = {};
            if (pipe(ends) == 0)
                client.send(descriptorReply(to, 1), { ends[0] });
        } },
    { "file",
        [](const Client& client, std::uint32_t to) {
            const Descriptor file(open("/etc/passwd", O_RDONLY));
            client.send(descriptorReply(to, 1), { file.number() });
        } },
    { "missing-descriptor",
        [](const Client& client, std::uint32_t to) { client.send(descriptorReply(to, 0)); } },
    { "malformed",
        [](const Client& client, std::uint32_t to) {
            const Descriptor file = unsealed();
            for (int count = 0; count < 50; ++count) {
                Bytes bad = descriptorReply(to, 20);
                bad[16] = '\x7F';
                client.send(bad, std::vector(20, file.number()));
            }
        } },
    { "wrong-type",
        [](const Client& client, std::uint32_t to) { client.send(reply(to, "as", Bytes(4, '\0'))); } },
    { "endless",
        [](const Client& client, std::uint32_t to) {
            Bytes start = reply(to, "ay", Bytes(1 << 20, '\0'));
            const std::uint32_t body = 60 << 20;
            const std::uint32_t array = body - 4;
            std::memcpy(start.data() + 4, &body, 4);
            std::memcpy(start.data() + start.size() - (1 << 20), &array, 4);
            client.send(start);
            for (;; usleep(1000))
                client.send(Bytes(64, '\0'));
        } },
    { "flood",
        [](const Client& client, std::uint32_t) {
            // Method calls, which a careless client would answer and answer.
            Bytes fields;
            field(fields, 1, 'o', "/x");
            field(fields, 3, 's', "x");
            Bytes call { 'l', 1, 0, 1 };
            number(call, 0);
            number(call, 9);
            number(call, static_cast<std::uint32_t>(fields.size()));
            call += fields;
            align(call, 8);
            Bytes many;
            for (int count = 0; count < 1000; ++count)
                many += call;
            for (;;)
                client.send(many);
        } },
    { "die", [](const Client&, std::uint32_t) { _exit(1); } },
    { "silence", [](const Client&, std::uint32_t) { pause(); } },
};

void serve(const Client& client, const Deed& deed)
{
    if (!shakeHands(client))
        return;
    for (auto [serial, isEcho] = client.nextCall(); serial != 0;
         std::tie(serial, isEcho) = client.nextCall()) {
        if (isEcho)
            deed(client, serial);
        else
            client.send(reply(serial, "", {}));
    }
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 3)
        return 2;
    const auto lock = caddis::NameLock::acquire(caddis::String::fromUtf8(arguments[1]));
    if (!lock)
        return 3;
    const Descriptor listener(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address = { .sun_family = AF_UNIX, .sun_path = {} };
    lock->temporaryPath().copy(address.sun_path, sizeof address.sun_path - 1);
    if (bind(listener.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0
        || listen(listener.number(), 8) != 0 || !lock->publish())
        return 4;
    for (;;)
        serve(Client(accept(listener.number(), nullptr, nullptr)), deeds.at(arguments[2]));
}
