#pragma once

#include "bundles/support/ZipPackage.h"

#include <map>

namespace caddis::bundles {

/// Which parts a part of a package refers to (ECMA-376, part 2, 9.3): targets by identifier.
class Relationships : public XmlHandler {
public:
    /// Of a part "folder/name"; none when the package says nothing of it.
    static Relationships of(ZipPackage& package, const std::string& partName, const Attributes& attributes)
    {
        Relationships relationships;
        const auto slash = partName.rfind('/') + 1;
        relationships.m_folder = partName.substr(0, slash);
        package.parseXml(
            relationships.m_folder + "_rels/" + partName.substr(slash) + ".rels", relationships, attributes);
        return relationships;
    }

    /// The name of the part that a tag's "r:id" refers to; empty for none.
    std::string partOf(const XmlTag& tag) const
    {
        for (const XmlTag::Attribute& attribute : tag.attributes()) {
            if (attribute.name == "id" && !attribute.prefix.empty())
                return partWithIdentifier(attribute.value);
        }
        return {};
    }

    void startElement(std::string_view name, const XmlTag& tag) override
    {
        if (name == "Relationship" && m_targets.size() < ZipPackage::MaximumParts)
            m_targets.emplace(tag["Id"], tag["Target"]);
    }
    void endElement(std::string_view) override { }
    void characters(std::string_view) override { }

private:
    std::string partWithIdentifier(std::string_view identifier) const
    {
        const auto found = m_targets.find(identifier);
        if (found == m_targets.end())
            return {};
        return found->second.starts_with('/') ? found->second.substr(1) : m_folder + found->second;
    }

    std::string m_folder;
    std::map<std::string, std::string, std::less<>> m_targets;
};

} // namespace caddis::bundles
