#include "platform/script/HFSPath.h"

#include "platform/base/MutableString.h"

namespace caddis {

namespace {

void appendSwapped(MutableString& out, std::u16string_view path)
{
    for (const char16_t unit : path)
        out.append(unit == u':' ? u'/' : unit == u'/' ? u':' : unit);
}

} // namespace

String hfsPath(const String& posixPath)
{
    constexpr std::u16string_view Volumes = u"/Volumes/";
    MutableString out(posixPath.length() + StartupDiskName.size() + 1);
    std::u16string_view rest = posixPath;
    if (rest.starts_with(Volumes) && rest.size() > Volumes.size()) {
        rest.remove_prefix(Volumes.size());
    } else {
        out.append(StartupDiskName);
        if (!rest.starts_with(u'/'))
            out.append(u':');
    }
    appendSwapped(out, rest);
    return std::move(out).take();
}

String posixPath(const String& hfsPath)
{
    const std::u16string_view path = hfsPath;
    const std::size_t diskEnd = std::min(path.find(u':'), path.size());
    const std::u16string_view disk = path.substr(0, diskEnd);
    MutableString out(path.size() + 1);
    if (disk != StartupDiskName && !disk.empty())
        out.append(u"/Volumes/").append(disk);
    appendSwapped(out, path.substr(diskEnd));
    if (out.isEmpty())
        out.append(u'/');
    return std::move(out).take();
}

} // namespace caddis
