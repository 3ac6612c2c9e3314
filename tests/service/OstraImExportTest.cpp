#include "service/OstraImExport.h"

#include "client/OstraImExport.h"
#include "service/Interface.h"
#include "support/LogCapture.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <map>
#include <regex>

namespace caddis {
namespace {

using Signatures = std::map<std::string, std::string>; // member to "arguments→result"

Signatures interfaceFile()
{
    Signatures result;
    const std::string xml = OstraImExportXML;
    const std::regex method(R"re(<method name="(\w+)"(/>|>[^]*?</method>))re");
    const std::regex argument(R"re(type="([^"]+)" direction="(in|out)")re");
    for (std::sregex_iterator each(xml.begin(), xml.end(), method), end; each != end; ++each) {
        std::string in;
        std::string out;
        const std::string body = (*each)[2];
        for (std::sregex_iterator one(body.begin(), body.end(), argument); one != end; ++one)
            ((*one)[2] == "in" ? in : out) += (*one)[1];
        result[(*each)[1]] = in.append("→").append(out);
    }
    return result;
}

// What is served, what the client knows and what callers can read are three texts of one protocol.
TEST(OstraImExport, IsTheSameOnBothSidesAndInTheInterfaceFile)
{
    CaddisHelper helper;
    Signatures served;
    for (const auto& method : ostraImExport(helper).methods)
        served[method.member] = std::string(method.arguments) + "→" + method.result;
    EXPECT_EQ(served.erase("SetImage"), 1U) << "served, but not part of the protocol";
    Signatures known;
    for (const auto& member : OstraImExportMembers)
        known[member.member] = std::string(member.arguments) + "→" + member.result;
    EXPECT_EQ(served.size(), 15U);
    EXPECT_EQ(served, interfaceFile());
    EXPECT_EQ(known, interfaceFile());
    EXPECT_EQ(ServiceName, HelperServiceName);
}

} // namespace
} // namespace caddis
