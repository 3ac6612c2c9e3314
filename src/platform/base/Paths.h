#pragma once

#include "platform/base/String.h"

/// File paths as texts, by the rules of the platform's string class; nothing touches the disk. Slashes at the
/// end of a path do not count.
namespace caddis {

/// "/a/b.txt" and "/a/b.txt/" give "b.txt"; "/" gives "/", and "" gives "".
String lastPathComponent(const String& path);

/// "txt" of "/a/b.txt" and "gz" of "b.tar.gz"; empty for "b", "b." and ".hidden".
String pathExtension(const String& path);

/// "/a/b" and "/a/b/" give "/a", "/a" gives "/", "a" gives "". Same: "/" and "".
String stringByDeletingLastPathComponent(const String& path);

/// "/a/b.txt" and "/a/b.txt/" give "/a/b". Same: returns `path` itself when it has neither extension nor
/// final slash.
String stringByDeletingPathExtension(const String& path);

/// One slash stands between both, whatever slashes `path` ends and `component` begins with; an empty `path`
/// or `component` adds none.
String stringByAppendingPathComponent(const String& path, std::u16string_view component);

} // namespace caddis
