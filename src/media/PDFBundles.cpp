// Folders that stand for a PDF file: ".pdfd" keeps notes beside it, ".lpdf" one file per language.

#include "media/ImageFileTypes.h"

#include "platform/base/Format.h"
#include "platform/base/Paths.h"
#include "platform/files/FileSystem.h"
#include "text/StringUtilities.h"

#include <cstdlib>

namespace caddis {

namespace {

// The first PDF in a folder, by name.
std::optional<String> firstPDF(const String& folder)
{
    for (const String& name : FileSystem::contentsOfDirectory(folder).value_or(std::vector<String>()))
        if (isEqualNoCase(pathExtension(name), u"pdf"))
            return stringByAppendingPathComponent(folder, name);
    return std::nullopt;
}

// The languages to try, best first: those that the user reads, then English, then whatever there is.
std::vector<String> preferredFolders(const String& resources)
{
    std::vector<String> names;
    const char* language = std::getenv("LANG");
    const std::string locale = language ? language : "";
    names.push_back(String::fromUtf8(locale.substr(0, locale.find('.')) + ".lproj"));
    names.push_back(String::fromUtf8(locale.substr(0, locale.find('_')) + ".lproj"));
    for (const char16_t* name : { u"en.lproj", u"English.lproj", u"Base.lproj" })
        names.emplace_back(name);
    for (const String& name : FileSystem::contentsOfDirectory(resources).value_or(std::vector<String>()))
        if (isEqualNoCase(pathExtension(name), u"lproj"))
            names.push_back(name);
    return names;
}

std::optional<String> localizedPDF(const String& bundle)
{
    for (const char16_t* inside : { u"Contents/Resources", u"Resources", u"" }) {
        const String resources = *inside ? stringByAppendingPathComponent(bundle, String(inside)) : bundle;
        if (auto found = firstPDF(resources))
            return found;
        for (const String& name : preferredFolders(resources))
            if (auto found = firstPDF(stringByAppendingPathComponent(resources, name)))
                return found;
    }
    return std::nullopt;
}

String PDFInSkimBundle(const String& bundle)
{
    const String name = stringByDeletingPathExtension(lastPathComponent(bundle));
    const String own = stringByAppendingPathComponent(bundle, format(u"%@.pdf", name));
    return FileSystem::exists(own) ? own : firstPDF(bundle).value_or(bundle);
}

} // namespace

inline namespace NSImageOstraExtensions {

std::vector<String> PDFBundleTypes() { return { u"pdfd"_s, u"PDFD"_s, u"lpdf"_s, u"LPDF"_s }; }

bool isPDFBundleExtension(const String& extension)
{
    return isEqualNoCase(extension, u"pdfd") || isEqualNoCase(extension, u"lpdf");
}

bool isSkimPDFBundle(const String& path) { return hasSuffixNoCase(path, u".pdfd"); }

bool isLocalizedPDFBundle(const String& path) { return hasSuffixNoCase(path, u".lpdf"); }

bool isPDFBundle(const String& path) { return isSkimPDFBundle(path) || isLocalizedPDFBundle(path); }

std::optional<String> pathToPDF(const String& path)
{
    if (isSkimPDFBundle(path))
        return PDFInSkimBundle(path);
    return isLocalizedPDFBundle(path) ? localizedPDF(path) : path;
}

} // namespace NSImageOstraExtensions

} // namespace caddis
