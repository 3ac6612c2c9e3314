#include "platform/files/ContentType.h"

#include "platform/base/Ascii.h"
#include "platform/base/MutableString.h"
#include "platform/base/Paths.h"
#include "platform/files/FileSystem.h"
#include "platform/files/SharedMIMEDatabase.h"

#include <mutex>
#include <sys/stat.h>
#include <unistd.h>
#include <unordered_map>

namespace caddis {

namespace {

struct Row {
    std::u16string_view identifier;
    std::u16string_view extensions; // Separated by blanks, like the MIME types.
    std::u16string_view mimeTypes;
    ContentTypeKind kind;
};

constexpr Row Rows[] = {
#include "platform/files/ContentTypeTable.inc"
};

using Index = std::unordered_map<std::u16string_view, std::u16string_view>;

void addWords(Index& index, std::u16string_view words, std::u16string_view identifier)
{
    while (!words.empty()) {
        const std::u16string_view word = words.substr(0, words.find(u' '));
        index.try_emplace(word, identifier);
        words.remove_prefix(std::min(word.size() + 1, words.size()));
    }
}

struct Tables {
    Index files;
    Index packages;
    Index mimeTypes;

    Tables()
    {
        for (const Row& row : Rows) {
            if (row.kind != ContentTypeKind::Abstract)
                addWords(
                    row.kind == ContentTypeKind::Package ? packages : files, row.extensions, row.identifier);
            addWords(mimeTypes, row.mimeTypes, row.identifier);
        }
    }
};

const Tables& tables()
{
    static const Tables instance;
    return instance;
}

// What programs have declared, in a process that lasts: never taken back.
struct DeclaredTypes {
    std::mutex mutex;
    std::unordered_map<String, String> files;
    std::unordered_map<String, String> packages;
    std::unordered_map<String, String> mimeTypes;
};

DeclaredTypes& declaredTypes()
{
    static DeclaredTypes types;
    return types;
}

using Words = std::unordered_map<String, String> DeclaredTypes::*;

std::optional<String> find(const Index& index, Words words, const String& key)
{
    if (const auto found = index.find(key.view()); found != index.end())
        return String(found->second);
    DeclaredTypes& declared = declaredTypes();
    const std::lock_guard lock(declared.mutex);
    const auto found = (declared.*words).find(key);
    return found == (declared.*words).end() ? std::nullopt : std::optional(found->second);
}

// What the shared MIME database knows of an extension that the table does not have.
std::optional<String> sharedTypeForExtension(const String& extension)
{
    const auto& database = SharedMIMEDatabase::system();
    const auto type = database.typeForExtension(extension);
    for (const String& kind : type ? database.lineageOf(*type) : std::vector<String>()) {
        // Nearly everything is a kind of these, which says nothing.
        if (kind == u"text/plain" || kind == u"application/octet-stream")
            continue;
        if (auto known = contentTypeForMIMEType(kind))
            return known;
    }
    return std::nullopt;
}

String typeOfFile(const String& extension, bool isExecutable)
{
    if (extension.isEmpty())
        return isExecutable ? u"public.unix-executable"_s : u"public.data"_s;
    if (const auto known = contentTypeForExtension(extension, ContentTypeKind::File))
        return *known;
    const auto shared = sharedTypeForExtension(extension);
    return shared ? *shared : dynamicTypeForExtension(extension);
}

} // namespace

std::optional<String> contentTypeForExtension(const String& extension, ContentTypeKind kind)
{
    const String key = lowercaseAscii(extension);
    return kind == ContentTypeKind::Package ? find(tables().packages, &DeclaredTypes::packages, key)
                                            : find(tables().files, &DeclaredTypes::files, key);
}

std::optional<String> contentTypeForMIMEType(const String& type)
{
    return find(tables().mimeTypes, &DeclaredTypes::mimeTypes, lowercaseAscii(type));
}

void declareContentType(const ContentTypeDeclaration& declaration)
{
    DeclaredTypes& declared = declaredTypes();
    const std::lock_guard lock(declared.mutex);
    auto& names = declaration.kind == ContentTypeKind::Package ? declared.packages : declared.files;
    for (const String& extension : declaration.extensions)
        names.try_emplace(lowercaseAscii(extension), declaration.identifier);
    for (const String& type : declaration.mimeTypes)
        declared.mimeTypes.try_emplace(lowercaseAscii(type), declaration.identifier);
}

String dynamicTypeForExtension(const String& extension)
{
    constexpr std::u16string_view Alphabet = u"abcdefghkmnpqrstuvwxyz0123456789";
    const std::string text = "?0=6:1=" + lowercaseAscii(extension).utf8();
    MutableString result;
    result.append(u"dyn.a");
    unsigned group = 0;
    unsigned bits = 0;
    for (const char byte : text) {
        group = (group << 8U | static_cast<std::uint8_t>(byte)) & 0xFFFFU;
        for (bits += 8; bits >= 5; bits -= 5)
            result.append(Alphabet[group >> (bits - 5) & 31U]);
    }
    if (bits > 0)
        result.append(Alphabet[group << (5 - bits) & 31U]);
    return std::move(result).take();
}

std::optional<String> contentTypeOfItem(const String& path)
{
    const auto name = fileSystemRepresentation(path);
    struct stat status = {};
    if (!name || ::stat(name->c_str(), &status) != 0)
        return std::nullopt;
    const String extension = lowercaseAscii(pathExtension(path));
    if (S_ISDIR(status.st_mode))
        return contentTypeForExtension(extension, ContentTypeKind::Package).value_or(u"public.folder"_s);
    return typeOfFile(extension, (status.st_mode & S_IXUSR) != 0);
}

} // namespace caddis
