#pragma once

#include "platform/base/Data.h"

#include <string>

namespace caddis {

/// Writes web archives as XML property lists.
///
///     WebArchiveBuilder("http://a/", "<p>text").frame(WebArchiveBuilder("http://b/", "frame")).data()
class WebArchiveBuilder {
public:
    WebArchiveBuilder(const std::string& url, std::string_view page, const std::string& type = "text/html",
        const std::string& encoding = "UTF-8")
        : m_main(resource(url, page, type, encoding))
    {
    }

    WebArchiveBuilder& subresource(
        const std::string& url, std::string_view bytes, const std::string& type = "image/png")
    {
        m_subresources += resource(url, bytes, type, "");
        return *this;
    }
    WebArchiveBuilder& frame(const WebArchiveBuilder& archive)
    {
        m_frames += archive.list();
        return *this;
    }

    std::string list() const
    {
        return "<dict><key>WebMainResource</key>" + m_main + "<key>WebSubresources</key><array>"
            + m_subresources + "</array><key>WebSubframeArchives</key><array>" + m_frames + "</array></dict>";
    }
    std::string text() const
    {
        return "<?xml version=\"1.0\"?><plist version=\"1.0\">" + list() + "</plist>";
    }
    Data data() const { return Data::adopt(text()); }

private:
    static std::string resource(
        const std::string& url, std::string_view bytes, const std::string& type, const std::string& encoding)
    {
        const auto string = [](const std::string& key, const std::string& value) {
            return "<key>WebResource" + key + "</key><string>" + value + "</string>";
        };
        return "<dict><key>WebResourceData</key><data>" + base64(bytes) + "</data>" + string("URL", url)
            + string("MIMEType", type) + string("TextEncodingName", encoding) + "</dict>";
    }
    static std::string base64(std::string_view bytes)
    {
        constexpr std::string_view Digits
            = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        std::string text;
        for (std::size_t index = 0; index < bytes.size(); index += 3) {
            unsigned bits = 0;
            for (std::size_t byte = 0; byte < 3; ++byte)
                bits = bits << 8
                    | (index + byte < bytes.size() ? static_cast<unsigned char>(bytes[index + byte]) : 0U);
            for (std::size_t digit = 0; digit < 4; ++digit)
                text += index + digit <= bytes.size() ? Digits[bits >> (18 - 6 * digit) & 63] : '=';
        }
        return text;
    }

    std::string m_main;
    std::string m_subresources;
    std::string m_frames;
};

} // namespace caddis
