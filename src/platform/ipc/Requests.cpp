#include "platform/ipc/Requests.h"

#include "platform/base/Exception.h"

#include <algorithm>
#include <dbus/dbus.h>
#include <new>

namespace caddis {

namespace {

using namespace std::string_view_literals;

MessagePointer needed(DBusMessage* message)
{
    if (!message)
        throw std::bad_alloc();
    return MessagePointer(message);
}

[[noreturn]] void fail(const char* name, std::string_view what)
{
    throw Exception(String::fromLatin1(name), format(u"%s is unknown", what));
}

MessagePointer errorReply(DBusMessage* request, const char* name, const std::string& text)
{
    return needed(dbus_message_new_error(request, name, text.c_str()));
}

MessagePointer textReply(DBusMessage* request, const std::string& text)
{
    MessagePointer reply = needed(dbus_message_new_method_return(request));
    const char* first = text.c_str();
    if (!dbus_message_append_args(reply.get(), DBUS_TYPE_STRING, &first, DBUS_TYPE_INVALID))
        throw std::bad_alloc();
    return reply;
}

MessagePointer introspection(const RemoteObject& object, DBusMessage* request)
{
    if (dbus_message_has_path(request, object.path.c_str()))
        return textReply(request, object.introspection);
    if (dbus_message_has_path(request, "/"))
        return textReply(request, "<node><node name=\"" + object.path.substr(1) + "\"/></node>");
    fail(DBUS_ERROR_UNKNOWN_OBJECT, dbus_message_get_path(request));
}

// A call may leave the interface out; the path it may not.
const RemoteMethod& methodFor(const RemoteObject& object, DBusMessage* request)
{
    if (!dbus_message_has_path(request, object.path.c_str()))
        fail(DBUS_ERROR_UNKNOWN_OBJECT, dbus_message_get_path(request));
    const char* interface = dbus_message_get_interface(request);
    if (interface && interface != object.interface)
        fail(DBUS_ERROR_UNKNOWN_INTERFACE, interface);
    const char* member = dbus_message_get_member(request);
    const auto method = std::ranges::find(object.methods, std::string_view(member), &RemoteMethod::member);
    if (method == object.methods.end())
        fail(DBUS_ERROR_UNKNOWN_METHOD, member);
    return *method;
}

MessagePointer resultOf(const RemoteMethod& method, DBusMessage* request, const Caller& caller)
{
    Arguments results;
    {
        const Arguments arguments = wire::read(request, method.arguments, DescriptorTrust::PlainFiles);
        auto result = method.invoke(arguments);
        if (*method.result != '\0')
            results.push_back(std::move(result));
    }
    MessagePointer reply = needed(dbus_message_new_method_return(request));
    wire::write(reply.get(), method.result, results, caller.descriptors);
    return reply;
}

MessagePointer answer(const RemoteObject& object, DBusMessage* request, const Caller& caller)
{
    if (dbus_message_is_method_call(request, DBUS_INTERFACE_INTROSPECTABLE, "Introspect"))
        return introspection(object, request);
    if (dbus_message_is_method_call(request, DBUS_INTERFACE_DBUS, "Hello"))
        return textReply(request, ":1." + std::to_string(caller.number));
    return resultOf(methodFor(object, request), request, caller);
}

MessagePointer errorReply(DBusMessage* request, const Exception& exception)
{
    const std::string reason = exception.reason().utf8();
    if (exception.name().view().starts_with(u"org.freedesktop.DBus.Error."))
        return errorReply(request, exception.name().utf8().c_str(), reason);
    return errorReply(request, DBUS_ERROR_FAILED, exception.name().utf8() + ": " + reason);
}

} // namespace

// No exception may pass: libdbus, written in C, called this.
MessagePointer answerRequest(const RemoteObject& object, DBusMessage* request, const Caller& caller)
{
    try {
        return answer(object, request, caller);
    } catch (const Exception& exception) {
        return errorReply(request, exception);
    } catch (const std::bad_alloc&) {
        return errorReply(request, DBUS_ERROR_LIMITS_EXCEEDED, "the memory limit was reached");
    } catch (const std::exception& exception) {
        // It may quote the name of a file, which need not be UTF-8; libdbus would end the process.
        return errorReply(request, DBUS_ERROR_FAILED, String::fromUtf8(exception.what()).utf8());
    } catch (...) {
        return errorReply(request, DBUS_ERROR_FAILED, "an unknown exception");
    }
}

MessagePointer leftOutSignal(const RemoteObject& object, DBusMessage* request, const String& what)
{
    MessagePointer message(
        dbus_message_new_signal(object.path.c_str(), LeftOutSignal.interface, LeftOutSignal.member));
    const dbus_uint32_t serial = dbus_message_get_serial(request);
    const std::string text = what.utf8();
    const char* const first = text.c_str();
    if (!message
        || !dbus_message_append_args(
            message.get(), DBUS_TYPE_UINT32, &serial, DBUS_TYPE_STRING, &first, DBUS_TYPE_INVALID))
        return nullptr;
    return message;
}

} // namespace caddis
