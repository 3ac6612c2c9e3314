#pragma once

#include "platform/base/String.h"

#include <span>

/// File-name extensions that tell markup; compared without case. A file is judged by its name alone.
namespace caddis {
inline namespace XmlExtensions {

using FileTypes = std::span<const std::u16string_view>;

FileTypes HTMLFileTypes();
/// XML and its general vocabularies, and CustomXMLFileTypes.
FileTypes XMLFileTypes();
/// Documents of single applications that are XML inside.
FileTypes CustomXMLFileTypes();
FileTypes PropertyListFileTypes();
/// All of the above.
FileTypes MarkupFileTypes();

bool isHTMLExtension(std::u16string_view extension);
bool isXMLExtension(std::u16string_view extension);
bool isPropertyListExtension(std::u16string_view extension);
bool isMarkupExtension(std::u16string_view extension);

bool isHTMLFile(const String& path);
bool isXMLFile(const String& path);
bool isPropertyListFile(const String& path);
bool isMarkupFile(const String& path);

} // namespace XmlExtensions
} // namespace caddis
