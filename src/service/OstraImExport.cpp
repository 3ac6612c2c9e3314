// The protocol in one place: member, arguments, result, and what serves it. The interface file beside this
// source says the same to callers, with the arguments' names.

#include "service/OstraImExport.h"

#include "platform/base/Exception.h"
#include "platform/base/Log.h"
#include "service/Interface.h"

namespace caddis {

namespace {

using Result = std::optional<Value>;

bool isTrue(const Result& argument)
{
    const bool* const flag = argument ? argument->as<bool>() : nullptr;
    return flag && *flag;
}

std::int64_t integer(const Result& argument)
{
    const auto* const number = argument ? argument->as<std::int64_t>() : nullptr;
    return number ? *number : 0;
}

Result refuses(const Arguments&)
{
    throw Exception(String(AccessDeniedError), u"not in this helper's profile"_s);
}

// Kept on purpose: some callers send this to any object at hand; it is logged and does nothing.
Result setImage(const Arguments&)
{
    log(u"Workaround: %@ (%@)", u"setImage:"_s, u"CaddisHelper"_s);
    return std::nullopt;
}

} // namespace

// NOLINTNEXTLINE(readability-function-size): all that the helper answers, in one table
RemoteObject ostraImExport(CaddisHelper& helper)
{
    const auto terminate = [&](const Arguments&) -> Result { helper.terminate(); };
    const auto ping = [&](const Arguments&) -> Result {
        helper.ping();
        return std::nullopt;
    };
    const auto pdfImageRep
        = [&](const Arguments& arguments) -> Result { return helper.PDFImageRepOfFile(arguments[0]); };
    const auto image = [&](const Arguments& arguments) -> Result {
        return helper.imageWithContentsOfFile(arguments[0],
            { .maxThumbnailSize = integer(arguments[1]),
                .alwaysFromImage = isTrue(arguments[2]),
                .stringFromPDF = isTrue(arguments[3]),
                .canUseSpotlight = isTrue(arguments[4]) });
    };
    const auto preview = [&](const Arguments& arguments) -> Result {
        return helper.previewForFile(arguments[0], integer(arguments[1]), isTrue(arguments[2]));
    };
    const auto posterImage = [&](const Arguments& arguments) -> Result {
        return helper.posterImageForMovieWithFile(arguments[0]);
    };
    const auto attributedStringWithPDF = [&](const Arguments& arguments) -> Result {
        return helper.attributedStringWithPDF(isTrue(arguments[0]), arguments[1]);
    };
    const auto attributedStringWithContentsOfFile = [&](const Arguments& arguments) -> Result {
        return helper.attributedStringWithContentsOfFile(arguments[0]);
    };
    const auto writeRTFDDataToFile = [&](const Arguments& arguments) -> Result {
        return helper.writeRTFDDataToFile(arguments[0], arguments[1]);
    };
    const auto rtfdWithHTML = [&](const Arguments& arguments) -> Result {
        const bool* const allowRemoteRequest = arguments[2] ? arguments[2]->as<bool>() : nullptr;
        return helper.RTFDWithHTML(
            arguments[0], arguments[1], allowRemoteRequest && *allowRemoteRequest, arguments[3]);
    };
    const auto searchableTextOfWebArchive = [&](const Arguments& arguments) -> Result {
        return helper.searchableTextOfWebArchive(arguments[0]);
    };
    const auto metaData
        = [&](const Arguments& arguments) -> Result { return helper.metaDataForFile(arguments[0]); };
    const auto supports
        = [&](const Arguments& arguments) -> Result { return helper.supportsFile(arguments[0]); };
    const auto executeFile = [&](const Arguments& arguments) -> Result {
        helper.executeFile(arguments[0], arguments[1], arguments[2]);
        return std::nullopt;
    };
    const auto executeSource = [&](const Arguments& arguments) -> Result {
        helper.executeSource(arguments[0], arguments[1], arguments[2]);
        return std::nullopt;
    };

    return {
        .path = "/CaddisHelper",
        .interface = "org.caddis.OstraImExport",
        .introspection = OstraImExportXML,
        .methods = {
            { "Terminate", "", "", terminate },
            { "Ping", "", "", ping },
            { "PDFImageRepOfFile", "v", "av", pdfImageRep },
            { "ImageWithContentsOfFile", "vxbbb", "aa{sv}", image },
            { "PreviewForFile", "vxb", "av", preview },
            { "AttributedStringWithPDF", "bv", "aa{sv}", attributedStringWithPDF },
            { "PosterImageForMovieWithFile", "v", "a{sv}", posterImage },
            { "AttributedStringWithContentsOfFile", "v", "aa{sv}", attributedStringWithContentsOfFile },
            { "SearchableTextOfWebArchive", "v", "a{sv}", searchableTextOfWebArchive },
            { "WriteRTFDDataToFile", "vv", "b", writeRTFDDataToFile },
            { "RTFDWithHTML", "vvbv", "av", rtfdWithHTML },
            { "MetaDataForFile", "v", "aa{sv}", metaData },
            { "SupportsFile", "v", "b", supports },
            { "ExecuteFile", "vv(uay)", "", executeFile },
            { "ExecuteSource", "vv(uay)", "", executeSource },
            { "SetImage", "v", "", setImage },
        },
    };
}

RemoteObject withoutWriting(RemoteObject object)
{
    for (RemoteMethod& method : object.methods) {
        const std::string_view member = method.member;
        if (member == "WriteRTFDDataToFile" || member == "ExecuteFile" || member == "ExecuteSource")
            method.invoke = refuses;
    }
    return object;
}

} // namespace caddis
