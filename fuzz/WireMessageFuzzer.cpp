// A D-Bus message from a stranger, read as a helper and as an application read it.
//
// Invariants: what is refused is refused as InvalidArgs; what is accepted can be written (unless it is nested
// too deeply for that), and what was written reads and writes the same again.

#include "Fuzz.h"
#include "platform/base/Exception.h"
#include "platform/ipc/Message.h"
#include "platform/ipc/Wire.h"

#include <dbus/dbus.h>
#include <string>

using namespace caddis;

namespace {

MessagePointer demarshalled(const std::string& bytes)
{
    return MessagePointer(dbus_message_demarshal(bytes.data(), static_cast<int>(bytes.size()), nullptr));
}

std::string written(const char* signature, const Arguments& values)
{
    const MessagePointer message(dbus_message_new_method_call(nullptr, "/F", "org.caddis.F", "F"));
    dbus_message_set_serial(message.get(), 1);
    wire::write(message.get(), signature, values, wire::Descriptors::None);
    char* bytes = nullptr;
    int size = 0;
    INVARIANT(dbus_message_marshal(message.get(), &bytes, &size));
    std::string result(bytes, static_cast<std::size_t>(size));
    dbus_free(bytes);
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const MessagePointer message = demarshalled({ reinterpret_cast<const char*>(data), size });
    for (const auto trust : { DescriptorTrust::PlainFiles, DescriptorTrust::SealedOnly }) {
        for (const char* signature : { "", "v", "vxbbb", "vvbv", "vv(uay)", "b", "av", "aa{sv}", "a{sv}" }) {
            try {
                if (!message)
                    continue;
                const std::string once = written(signature, wire::read(message.get(), signature, trust));
                const MessagePointer again = demarshalled(once);
                INVARIANT(again && written(signature, wire::read(again.get(), signature, trust)) == once);
            } catch (const Exception& exception) {
                INVARIANT(exception.name() == InvalidArgsError || exception.name() == LimitsExceededError);
            }
        }
    }
    return 0;
}
