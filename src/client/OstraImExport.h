#pragma once

#include "platform/ipc/RemoteObject.h"

#include <string_view>

/// The helper's remote protocol: what it serves, under which names.
namespace caddis {

/// The name under which the helper registers.
inline constexpr std::u16string_view HelperServiceName = u"CaddisHelper64.4";

/// The fifteen operations. HelperProxy has a typed function for each.
inline constexpr RemoteMember OstraImExportMembers[] = {
    // member                           arguments  result
    { "Terminate", "", "", true },
    { "Ping", "", "" },
    { "PDFImageRepOfFile", "v", "av" },
    { "ImageWithContentsOfFile", "vxbbb", "aa{sv}" },
    { "PreviewForFile", "vxb", "av" },
    { "AttributedStringWithPDF", "bv", "aa{sv}" },
    { "PosterImageForMovieWithFile", "v", "a{sv}" },
    { "AttributedStringWithContentsOfFile", "v", "aa{sv}" },
    { "SearchableTextOfWebArchive", "v", "a{sv}" },
    { "WriteRTFDDataToFile", "vv", "b" },
    { "RTFDWithHTML", "vvbv", "av" },
    { "MetaDataForFile", "v", "aa{sv}" },
    { "SupportsFile", "v", "b" },
    { "ExecuteFile", "vv(uay)", "" },
    { "ExecuteSource", "vv(uay)", "" },
};

inline constexpr RemoteProtocol OstraImExport {
    "/CaddisHelper",
    "org.caddis.OstraImExport",
    OstraImExportMembers,
};

} // namespace caddis
