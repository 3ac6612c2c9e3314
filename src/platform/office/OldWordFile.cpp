#include "platform/files/MappedFile.h"
#include "platform/office/OfficeDocument.h"
#include "platform/richtext/AttributedStringBuilder.h"
#include "platform/richtext/RTF.h"
#include "platform/task/BoundedChild.h"

namespace caddis {

namespace {

// Together below what a request may take.
constexpr std::chrono::milliseconds SuiteDeadline { 9'000 };
constexpr std::chrono::milliseconds TextDeadline { 2'000 };
constexpr std::size_t SuiteMemory = 4ULL << 30; // Address space, most of which it never touches.

std::optional<AttributedString> withSuite(const std::string& file)
{
    const auto program = installedProgram("soffice");
    const ScratchFolder scratch;
    if (!program || !scratch.exists())
        return std::nullopt;
    const std::string folder = scratch.path().utf8();
    // A name of its own, so that what comes out has a known one.
    const std::string copy = folder + "/document.doc";
    // Its parts talk to each other over a local socket, without which it does not start.
    const ChildLimits limits { .memory = SuiteMemory, .confined = false };
    const auto link = runBounded({ "/bin/ln", "-s", file, copy }, scratch);
    const auto result = runBounded({ *program, "--headless", "--norestore", "--convert-to", "rtf", "--outdir",
                                       folder, "-env:UserInstallation=file://" + folder + "/profile", copy },
        scratch, limits, SuiteDeadline);
    const auto rtf = link.succeeded() && result.succeeded()
        ? MappedFile::open(scratch.pathOf(String(u"document.rtf")))
        : std::nullopt;
    return rtf ? attributedStringWithRTF(*rtf) : std::nullopt;
}

std::optional<AttributedString> withTextProgram(std::string_view name, std::vector<std::string> arguments)
{
    const auto program = installedProgram(name);
    if (!program)
        return std::nullopt;
    const ScratchFolder scratch;
    arguments.insert(arguments.begin(), *program);
    const ChildResult result = runBounded(std::move(arguments), scratch, {}, TextDeadline);
    if (!result.succeeded() || result.output.empty())
        return std::nullopt;
    AttributedStringBuilder builder;
    builder.append(String::fromUtf8(result.output), {});
    return std::move(builder).finish();
}

} // namespace

std::optional<AttributedString> attributedStringWithOldWordFile(const String& path)
{
    const std::string file = path.utf8();
    auto text = withSuite(file);
    if (!text)
        text = withTextProgram("antiword", { "-w", "0", "-m", "UTF-8.txt", file });
    if (!text)
        text = withTextProgram("catdoc", { "-w", "-d", "utf-8", file });
    if (!text)
        return std::nullopt;
    text->documentAttributes.set(String(DocumentAttribute::DocumentType), Value(String(u"NSDocFormat")));
    text->documentAttributes.set(String(DocumentAttribute::UTI), Value(String(u"com.microsoft.word.doc")));
    text->documentAttributes.remove(DocumentAttribute::CocoaRTFVersion);
    return text;
}

} // namespace caddis
