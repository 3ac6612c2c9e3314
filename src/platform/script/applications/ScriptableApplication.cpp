#include "platform/script/applications/ScriptableApplication.h"

#include "platform/base/Format.h"
#include "platform/files/FileSystem.h"
#include "platform/files/InstallRoots.h"
#include "platform/ipc/RuntimeDirectory.h"
#include "platform/script/FlattenedDescriptor.h"
#include "platform/script/applications/EventConversation.h"

#include <sys/stat.h>

namespace caddis {

namespace {

constexpr std::uint64_t LargestDictionary = 4 << 20; // bytes

// Where running applications have their sockets; nil unless nobody else can put one there.
std::optional<std::string> applicationsDirectory()
{
    std::string path = runtimeDirectoryPath();
    for (const char* part : { "", "/applications" }) {
        path += part;
        struct stat status { };
        const bool isOwn = lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode)
            && status.st_uid == geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
        if (!isOwn)
            return std::nullopt;
    }
    return path;
}

std::optional<std::string> socketOf(const String& name)
{
    const auto directory = applicationsDirectory();
    return directory && isRegistrableName(name) ? std::optional(*directory + '/' + name.utf8())
                                                : std::nullopt;
}

std::optional<ScriptingDictionary> dictionaryAt(const String& path)
{
    const std::uint64_t size = FileSystem::sizeOfFile(path);
    const auto bytes = size && size <= LargestDictionary ? FileSystem::contentsOfFile(path) : std::nullopt;
    return bytes ? scriptingDictionary(*bytes) : std::nullopt;
}

std::optional<ScriptingDictionary> dictionaryOf(const String& name)
{
    if (!isRegistrableName(name))
        return std::nullopt;
    std::vector<String> paths { InstallRoots::real(format(u"~/Applications/%@.sdef", name)),
        InstallRoots::real(format(u"/Applications/%@.sdef", name)) };
    if (const auto socket = socketOf(name))
        paths.insert(paths.begin(), String::fromUtf8(*socket + ".sdef"));
    for (const String& path : paths) {
        if (auto dictionary = dictionaryAt(path))
            return dictionary;
    }
    return std::nullopt;
}

EventDescriptor recordFrom(const AppleEvent& event, std::chrono::milliseconds deadline)
{
    const auto seconds = std::chrono::ceil<std::chrono::seconds>(deadline).count();
    std::vector<EventDescriptor::Field> fields {
        { "evcl"_code, EventDescriptor::withCode("type"_code, event.eventClass) },
        { "evid"_code, EventDescriptor::withCode("type"_code, event.eventID) },
        { "timo"_code, EventDescriptor::withInt32(static_cast<std::int32_t>(seconds)) },
    };
    fields.insert(fields.end(), event.parameters.begin(), event.parameters.end());
    return EventDescriptor::record(std::move(fields));
}

} // namespace

ScriptableApplication::ScriptableApplication(const String& name, ScriptingDictionary dictionary)
    : m_name(name)
    , m_dictionary(std::move(dictionary))
{
}

std::shared_ptr<const ScriptableApplication> ScriptableApplication::named(const String& name)
{
    auto dictionary = dictionaryOf(name);
    return dictionary ? std::make_shared<const ScriptableApplication>(name, *std::move(dictionary)) : nullptr;
}

bool ScriptableApplication::isRunning() const
{
    const auto socket = socketOf(m_name);
    return socket && isListening(*socket);
}

ScriptReply ScriptableApplication::send(const AppleEvent& event, std::chrono::milliseconds deadline) const
{
    const auto failed = [&](ScriptErrorNumber number, std::u16string_view message) {
        ScriptErrorInfo error;
        error.number = static_cast<int>(number);
        error.message = String(message);
        error.applicationName = m_name;
        return ScriptReply { {}, std::move(error) };
    };
    const auto socket = socketOf(m_name);
    const auto answer = socket ? askOverSocket(*socket, recordFrom(event, deadline).data(), deadline)
                               : ConversationFailure::NotListening;
    if (const auto* failure = std::get_if<ConversationFailure>(&answer)) {
        if (*failure == ConversationFailure::NotListening)
            return failed(ScriptErrorNumber::ApplicationNotRunning, u"Application isn’t running.");
        if (*failure == ConversationFailure::TimedOut)
            return failed(ScriptErrorNumber::TimedOut, u"AppleEvent timed out.");
        return failed(ScriptErrorNumber::ConnectionInvalid, u"Connection is invalid.");
    }
    const auto reply = unflattenDescriptor(std::get<Data>(answer));
    if (!reply || !reply->isRecord())
        return failed(ScriptErrorNumber::ConnectionInvalid, u"Connection is invalid.");
    const std::int32_t number = reply->descriptorForKeyword("errn"_code).int32Value().value_or(0);
    if (number == 0)
        return { reply->descriptorForKeyword("----"_code), std::nullopt };
    ScriptReply error = failed(ScriptErrorNumber(number), u"An error has occurred.");
    if (const auto text = reply->descriptorForKeyword("errs"_code).stringValue())
        error.error->message = *text;
    return error;
}

} // namespace caddis
