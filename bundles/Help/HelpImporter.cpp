#include "bundles/support/Importer.h"
#include "bundles/support/PageText.h"
#include "bundles/support/TextSink.h"
#include "bundles/support/Utf8.h"
#include "markup/MarkupData.h"
#include "platform/base/LeftOut.h"

#include <algorithm>
#include <chm_lib.h>
#include <memory>

namespace caddis::bundles {

namespace {

constexpr std::size_t MaximumPage = 16 * 1024 * 1024;
constexpr std::size_t MaximumInflated = 128 * 1024 * 1024;
constexpr std::size_t MaximumInformation = 64 * 1024;
// What "/#SYSTEM" says: entries of a code, a length (16 bits each, little-endian) and that many bytes.
constexpr unsigned TitleCode = 3;
constexpr unsigned CompilerCode = 9;

class HelpFile {
public:
    explicit HelpFile(const std::string& path)
        : m_file(chm_open(path.c_str()), chm_close)
    {
    }
    bool isOpen() const { return m_file != nullptr; }

    std::string read(chmUnitInfo& unit, std::size_t limit)
    {
        const auto wanted = std::min<std::size_t>({ unit.length, limit, m_left });
        if (wanted < unit.length)
            noteLeftOut(u"pages beyond 16 MiB each or 128 MiB together");
        std::string bytes(wanted, '\0');
        const LONGINT64 count = chm_retrieve_object(m_file.get(), &unit,
            reinterpret_cast<unsigned char*>(bytes.data()), 0, static_cast<LONGINT64>(wanted));
        bytes.resize(
            std::clamp<std::size_t>(static_cast<std::size_t>(std::max<LONGINT64>(count, 0)), 0, wanted));
        m_left -= wanted;
        return bytes;
    }
    std::string read(const char* name, std::size_t limit)
    {
        chmUnitInfo unit {};
        return chm_resolve_object(m_file.get(), name, &unit) == CHM_RESOLVE_SUCCESS ? read(unit, limit)
                                                                                    : std::string();
    }
    /// Calls for each page until it answers false.
    template <typename Visit> void forEachPage(Visit visit)
    {
        const auto call = [](chmFile*, chmUnitInfo* unit, void* context) {
            return (*static_cast<Visit*>(context))(*unit) ? CHM_ENUMERATOR_CONTINUE : CHM_ENUMERATOR_SUCCESS;
        };
        chm_enumerate(m_file.get(), CHM_ENUMERATE_NORMAL | CHM_ENUMERATE_FILES, call, &visit);
    }

private:
    std::unique_ptr<chmFile, decltype(&chm_close)> m_file;
    std::size_t m_left = MaximumInflated;
};

unsigned u16(std::string_view bytes)
{
    return static_cast<unsigned char>(bytes[0])
        | static_cast<unsigned>(static_cast<unsigned char>(bytes[1])) << 8;
}

// The text behind four bytes of version; entries end with U+0000.
void setInformation(std::string_view system, Attributes& attributes)
{
    system.remove_prefix(std::min<std::size_t>(4, system.size()));
    while (system.size() >= 4) {
        const unsigned code = u16(system);
        const std::string_view value = system.substr(4, u16(system.substr(2)));
        system.remove_prefix(4 + value.size());
        const std::string text = markupTextOfData(value.substr(0, value.find('\0')), {}).text.utf8();
        if (code == TitleCode)
            attributes.setString("kMDItemTitle", text);
        else if (code == CompilerCode)
            attributes.addString("kMDItemEncodingApplications", text);
    }
}

bool isPage(std::string_view name) { return endsWithNoCase(name, ".htm") || endsWithNoCase(name, ".html"); }

} // namespace

bool importFile(Attributes& attributes, std::string_view, const std::string& path)
{
    HelpFile help(path);
    if (!help.isOpen())
        return false;
    setInformation(help.read("/#SYSTEM", MaximumInformation), attributes);
    TextSink text(attributes);
    help.forEachPage([&](chmUnitInfo& unit) {
        if (isPage(unit.path)) {
            const String html = markupTextOfData(help.read(unit, MaximumPage), {}).text;
            text.append(plainTextOfPage(html).view());
            text.endLine();
        }
        return !text.isFull() && !attributes.shouldStop();
    });
    return true;
}

} // namespace caddis::bundles
