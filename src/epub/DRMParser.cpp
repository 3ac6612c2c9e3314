#include "epub/DRMParser.h"

#include "text/StringUtilities.h"

namespace caddis {

DRMParser::DRMParser(const Data& data) { XMLParser::parse(data, *this); }

void DRMParser::didStartElement(std::string_view name, const XMLAttributes&)
{
    m_isOperatorURL = name == "operatorURL";
    if (name == "fairplay:sinf")
        m_drm = String(u"Apple");
    else if (name == "kdrm")
        m_drm = String(u"Kobo");
}

void DRMParser::foundCharacters(const String& characters)
{
    // Kept on purpose: the flag outlives the element, so the white space behind its end tag is judged again
    // and has the last word.
    if (m_isOperatorURL)
        m_drm = String(containsNoCase(characters, u"barnesandnoble") ? u"Barnes & Noble" : u"Adobe");
}

} // namespace caddis
