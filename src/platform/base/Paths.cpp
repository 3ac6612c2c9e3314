#include "platform/base/Paths.h"

#include "platform/base/MutableString.h"

#include <algorithm>

namespace caddis {

namespace {

// The path's length without slashes at its end; a path of slashes alone keeps one.
std::size_t lengthWithoutFinalSlashes(std::u16string_view path)
{
    const std::size_t last = path.find_last_not_of(u'/');
    return last == path.npos ? std::min<std::size_t>(path.size(), 1) : last + 1;
}

// Where the last component stands.
Range lastComponent(std::u16string_view path)
{
    const std::size_t end = lengthWithoutFinalSlashes(path);
    const std::size_t slash = end <= 1 ? path.npos : path.rfind(u'/', end - 1);
    const std::size_t start = slash == path.npos ? 0 : slash + 1;
    return { start, end - start };
}

// Where the dot of the extension stands, or the end of the last component.
std::size_t extensionDot(std::u16string_view path, Range component)
{
    const std::u16string_view name = path.substr(component.location, component.length);
    const std::size_t dot = name.rfind(u'.');
    return dot == name.npos || dot == 0 || dot + 1 == name.size() ? component.end()
                                                                  : component.location + dot;
}

} // namespace

String lastPathComponent(const String& path) { return path.substring(lastComponent(path)); }

String pathExtension(const String& path)
{
    const Range component = lastComponent(path);
    const std::size_t dot = extensionDot(path, component);
    return dot == component.end() ? String() : path.substring({ dot + 1, component.end() - dot - 1 });
}

String stringByDeletingLastPathComponent(const String& path)
{
    const std::size_t start = lastComponent(path).location;
    return path.substringTo(start == 0 && path.view().starts_with(u'/')
            ? 1
            : lengthWithoutFinalSlashes(path.view().substr(0, start)));
}

String stringByDeletingPathExtension(const String& path)
{
    return path.substringTo(extensionDot(path, lastComponent(path)));
}

String stringByAppendingPathComponent(const String& path, std::u16string_view component)
{
    component.remove_prefix(std::min(component.find_first_not_of(u'/'), component.size()));
    component = component.substr(0, component.find_last_not_of(u'/') + 1);
    if (component.empty())
        return path.substringTo(lengthWithoutFinalSlashes(path));
    MutableString result(path.length() + 1 + component.size());
    result.append(path.view().substr(0, lengthWithoutFinalSlashes(path)));
    if (!result.isEmpty() && !result.view().ends_with(u'/'))
        result.append(u'/');
    return std::move(result.append(component)).take();
}

} // namespace caddis
