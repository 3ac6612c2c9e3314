#include "platform/postscript/PostScript.h"

#include "platform/files/FileSystem.h"
#include "platform/task/BoundedChild.h"

#include <fstream>

namespace caddis {

namespace {

using namespace std::string_view_literals;

// Below the 10 seconds that any picture may take.
constexpr std::chrono::milliseconds Deadline { 9'000 };
constexpr ChildLimits Limits { std::chrono::seconds(9), 1ULL << 30, 128ULL << 20 };

bool write(const String& path, const Data& data)
{
    std::ofstream file(path.utf8(), std::ios::binary);
    file.write(data.chars().data(), static_cast<std::streamsize>(data.size()));
    file.close();
    return file.good();
}

} // namespace

bool isPostScript(const Data& data)
{
    return data.chars().starts_with("%!PS"sv) || data.chars().starts_with("\xC5\xD0\xD3\xC6"sv);
}

std::optional<Data> PDFWithPostScript(const Data& data)
{
    const auto interpreter = installedProgram("gs");
    const ScratchFolder scratch;
    const String input = scratch.pathOf(String(u"input"));
    const String output = scratch.pathOf(String(u"output.pdf"));
    if (!isPostScript(data) || !interpreter || !scratch.exists() || !write(input, data))
        return std::nullopt;
    // SAFER: no other file is read or written, except in the folder for temporary files, which is the scratch
    // folder. Its path holds no "%", which would be a pattern.
    const auto result = runBounded(
        { *interpreter, "-q", "-dSAFER", "-dBATCH", "-dNOPAUSE", "-dEPSCrop", "-dAutoRotatePages=/None",
            "-sDEVICE=pdfwrite", "-o", output.utf8(), "-f", input.utf8() },
        scratch, Limits, Deadline);
    return result.succeeded() ? FileSystem::contentsOfFile(output) : std::nullopt;
}

} // namespace caddis
