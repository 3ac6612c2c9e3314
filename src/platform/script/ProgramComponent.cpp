#include "platform/script/ProgramComponent.h"

#include "platform/base/Log.h"
#include "platform/script/DescriptorJSON.h"
#include "platform/task/ChildProcess.h"

#include <algorithm>
#include <sys/mman.h>
#include <unistd.h>

namespace caddis {

namespace {

// "#!PROGRAM [ARGUMENT]" as the kernel reads it: one argument, blanks inside and all.
std::vector<std::string> interpreterOf(std::u16string_view text)
{
    constexpr std::string_view Blanks = " \t\r";
    std::string line = String(text.substr(2, std::min(text.find_first_of(u"\r\n"), text.size()) - 2)).utf8();
    line.erase(0, std::min(line.find_first_not_of(Blanks), line.size()));
    line.erase(line.find_last_not_of(Blanks) + 1);
    const std::size_t end = std::min(line.find_first_of(Blanks), line.size());
    std::vector<std::string> words { line.substr(0, end) };
    if (const std::size_t start = line.find_first_not_of(Blanks, end); start != std::string::npos)
        words.push_back(line.substr(start));
    return words;
}

ScriptErrorInfo errorInfo(int number, const String& message)
{
    ScriptErrorInfo info;
    info.number = number;
    info.message = message;
    return info;
}

String withoutLastLineEnd(std::string text)
{
    if (text.ends_with('\n'))
        text.pop_back();
    return String::fromUtf8(text);
}

// A source without a file of its own, where its interpreter can open it.
class SourceFile {
public:
    explicit SourceFile(std::string_view source)
        : m_descriptor(memfd_create("caddis-script", 0))
    {
        while (m_descriptor >= 0 && !source.empty()) {
            const ssize_t count = write(m_descriptor, source.data(), source.size());
            if (count <= 0)
                break;
            source.remove_prefix(static_cast<std::size_t>(count));
        }
    }
    ~SourceFile()
    {
        if (m_descriptor >= 0)
            close(m_descriptor);
    }
    SourceFile(const SourceFile&) = delete;
    SourceFile& operator=(const SourceFile&) = delete;

    std::string path() const { return "/proc/self/fd/" + std::to_string(m_descriptor); }

private:
    int m_descriptor;
};

class Program final : public Script {
public:
    explicit Program(const ScriptText& text)
        : m_command(interpreterOf(text.text))
    {
        if (text.path.isEmpty())
            m_source = std::make_unique<SourceFile>(text.text.utf8());
        m_command.push_back(m_source ? m_source->path() : text.path.utf8());
    }

    ScriptReply run(const ScriptLimits& limits) override
    {
        return execute(m_command, EventDescriptor::list({}), limits);
    }

    ScriptReply send(const AppleEvent& event, const ScriptLimits& limits) override
    {
        std::vector<std::string> command = m_command;
        command.push_back(event.parameter("snam"_code).stringValue().value_or(String()).utf8());
        return execute(command, event.parameter("----"_code), limits);
    }

    // Only the program knows them.
    std::vector<String> handlerNames() const override { return {}; }

private:
    static ScriptReply execute(const std::vector<std::string>& arguments, const EventDescriptor& parameters,
        const ScriptLimits& limits)
    {
        ChildCommand command;
        command.arguments = arguments;
        command.input = jsonFromDescriptor(parameters) + "\n";
        command.deadline = limits.deadline;
        const ChildResult result = runChild(command);
        if (!result.errorOutput.empty())
            log(u"%@", withoutLastLineEnd(result.errorOutput));
        return replyFrom(result);
    }

    static ScriptReply replyFrom(const ChildResult& result)
    {
        ScriptReply reply;
        if (result.outcome == ChildResult::Outcome::TimedOut)
            reply.error
                = errorInfo(static_cast<int>(ScriptErrorNumber::TimedOut), String(u"The script timed out."));
        else if (result.outcome != ChildResult::Outcome::Exited)
            reply.error = errorInfo(static_cast<int>(ScriptErrorNumber::ComponentError),
                String(u"The program did not end by itself."));
        else if (result.status != 0)
            reply.error = errorInfo(result.status, withoutLastLineEnd(result.errorOutput));
        else if (auto value = descriptorFromJson(result.output))
            reply.result = *std::move(value);
        else if (!result.output.empty())
            reply.result = EventDescriptor::withString(withoutLastLineEnd(result.output));
        return reply;
    }

    std::vector<std::string> m_command;
    std::unique_ptr<SourceFile> m_source;
};

} // namespace

bool ProgramComponent::accepts(const ScriptText& script) const
{
    const std::u16string_view text = script.text;
    const std::u16string_view line = text.substr(0, std::min(text.find_first_of(u"\r\n"), text.size()));
    return line.starts_with(u"#!") && line.find(u"osascript") == std::u16string_view::npos;
}

CompiledScript ProgramComponent::compile(const ScriptText& script) const
{
    const std::string interpreter = interpreterOf(script.text).front();
    if (!interpreter.starts_with('/') || access(interpreter.c_str(), X_OK) != 0)
        return errorInfo(static_cast<int>(ScriptErrorNumber::ComponentError),
            format(u"The interpreter “%s” cannot be run.", interpreter));
    return std::make_unique<Program>(script);
}

} // namespace caddis
