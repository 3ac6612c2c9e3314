#pragma once

#include "platform/base/String.h"

#include <optional>
#include <vector>

/// Content types: "public.plain-text", "com.adobe.pdf".
namespace caddis {

enum class ContentTypeKind { File, Package, Abstract };

/// The type of what lies at a path; links are followed. Nil when nothing is there.
///
///     folder      the type of a package with that extension, else public.folder
///     file        by its extension: the table, then what programs have declared, then the shared MIME
///                 database, then a dynamic type; without an extension public.unix-executable or public.data
///
/// A name decides, never the contents, as people expect who rename a file.
std::optional<String> contentTypeOfItem(const String& path);

/// The type that stands in the table or is declared for an extension (without its dot, any case); nil for an
/// unknown one.
std::optional<String> contentTypeForExtension(const String& extension, ContentTypeKind kind);
/// The same for a MIME type, in any case.
std::optional<String> contentTypeForMIMEType(const String& type);

/// A type that a program brings along.
struct ContentTypeDeclaration {
    String identifier;
    ContentTypeKind kind = ContentTypeKind::File;
    std::vector<String> extensions = {};
    std::vector<String> mimeTypes = {};
};
/// Adds to what is known in this process. What the table knows stays as it is, and so does what was declared
/// earlier: a program can't take over the files of others.
void declareContentType(const ContentTypeDeclaration& declaration);

/// The type that stands for an extension nobody declared: "dyn.a" and, in base 32, "?0=6:1=extension", which
/// says: conforms to public.data, has that file-name extension.
String dynamicTypeForExtension(const String& extension);

} // namespace caddis
