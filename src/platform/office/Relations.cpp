#include "platform/office/Relations.h"

#include "platform/xml/XMLParser.h"

namespace caddis::office {

namespace {

// "word/document.xml" gives "word/".
std::string folderOf(std::string_view part) { return std::string(part.substr(0, part.rfind('/') + 1)); }

// Relative to a folder, or from the root of the package.
std::string resolved(std::string folder, std::string_view target)
{
    if (target.starts_with('/'))
        return std::string(target.substr(1));
    for (; target.starts_with("../"); target.remove_prefix(3)) {
        if (!folder.empty())
            folder = folderOf(std::string_view(folder).substr(0, folder.size() - 1));
    }
    return folder.append(target);
}

class RelationsReader : public XMLParserDelegate {
public:
    explicit RelationsReader(std::string folder)
        : m_folder(std::move(folder))
    {
    }

    void didStartElement(std::string_view name, const XMLAttributes& attributes) override
    {
        constexpr std::size_t MostRelations = 65536;
        const auto identifier = attributes.value("Id");
        const auto target = attributes.utf8("Target");
        if (name != "Relationship" || !identifier || !target || relations.size() >= MostRelations)
            return;
        const std::string_view type = attributes.utf8("Type").value_or("");
        const bool isExternal = attributes.utf8("TargetMode") == "External";
        relations[*identifier] = { std::string(type.substr(type.rfind('/') + 1)),
            isExternal ? std::string(*target) : resolved(m_folder, *target), isExternal };
    }
    void didEndElement(std::string_view) override { }
    void foundCharacters(const String&) override { }

    Relations relations;

private:
    std::string m_folder;
};

} // namespace

Relations relationsOf(const Parts& parts, std::string_view part)
{
    const std::string folder = folderOf(part);
    RelationsReader reader(folder);
    const std::string_view name = part.substr(folder.size());
    if (const Data* contents = partNamed(parts, folder + "_rels/" + std::string(name) + ".rels"))
        XMLParser::parse(*contents, reader);
    return std::move(reader.relations);
}

FoundPart partOfType(const Parts& parts, const Relations& relations, std::string_view type)
{
    for (const auto& [identifier, relation] : relations) {
        if (relation.type == type && !relation.isExternal)
            return { relation.target, partNamed(parts, relation.target) };
    }
    return {};
}

} // namespace caddis::office
