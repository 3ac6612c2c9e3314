#pragma once

#include "platform/base/Value.h"

#include <optional>
#include <vector>

/// Pages saved with everything they are made of.
///
///     WebMainResource        dictionary, the page itself
///     WebSubresources        array of dictionaries: pictures, style sheets, scripts
///     WebSubframeArchives    array of archives, which are dictionaries of this form again
///
/// A resource has WebResourceData, -URL, -MIMEType, and perhaps -TextEncodingName and -FrameName. The whole
/// is one property list, binary or XML.
namespace caddis {

class WebResource {
public:
    static constexpr std::u16string_view ClassName = u"WebResource";
    static bool respondsToSelector(std::u16string_view selector) { return selector == u"_stringValue"; }

    /// Nil unless there are data and a URL. `record` is a resource's dictionary.
    static std::optional<WebResource> initWithPropertyList(const Value& record);

    const Data& data() const { return m_data; }
    const URL& url() const { return m_url; }
    /// Empty when the archive has none, as below.
    const String& MIMEType() const { return m_mimeType; }
    const String& textEncodingName() const { return m_textEncodingName; }
    const String& frameName() const { return m_frameName; }

    /// The data as text where nothing has to be guessed: the encoding's name is that of UTF-8 and the bytes
    /// are well-formed. Empty otherwise, and a byte-order mark is left out.
    String _stringValue() const;

private:
    explicit WebResource(URL url)
        : m_url(std::move(url))
    {
    }

    Data m_data;
    URL m_url;
    String m_mimeType;
    String m_textEncodingName;
    String m_frameName;
};

class WebArchive {
public:
    /// Nil for what is no property list, and for one without a readable main resource. Members that are not
    /// what they should be are left out. The resources share the archive's bytes.
    static std::optional<WebArchive> initWithData(const Data& data);

    const WebResource& mainResource() const { return m_mainResource; }
    const std::vector<WebResource>& subresources() const { return m_subresources; }
    const std::vector<WebArchive>& subframeArchives() const { return m_subframeArchives; }

private:
    explicit WebArchive(WebResource mainResource)
        : m_mainResource(std::move(mainResource))
    {
    }
    // Recursion ends with the property list, which does not nest deeply.
    static std::optional<WebArchive> initWithPropertyList(const Value& record);

    WebResource m_mainResource;
    std::vector<WebResource> m_subresources;
    std::vector<WebArchive> m_subframeArchives;
};

} // namespace caddis
