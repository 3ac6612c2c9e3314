#include "service/OstraImExport.h"

#include "client/OstraImExport.h"
#include "service/Interface.h"
#include "support/LogCapture.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <map>

namespace caddis {
namespace {

using Signatures = std::map<std::string, std::string>; // member to "arguments→result"

// What stands between `before` and the next quotation mark, from `at` on, which moves behind it; empty
// without any.
std::string next(const std::string& xml, std::size_t& at, const std::string& before)
{
    const std::size_t found = xml.find(before, at);
    if (found == xml.npos)
        return {};
    const std::size_t begin = found + before.size();
    at = xml.find('"', begin);
    return xml.substr(begin, at - begin);
}

Signatures interfaceFile()
{
    Signatures result;
    const std::string xml = OstraImExportXML;
    std::size_t at = 0;
    for (std::string member = next(xml, at, "<method name=\""); !member.empty();) {
        std::size_t argument = at;
        const std::string following = next(xml, at, "<method name=\"");
        const std::size_t end = following.empty() ? xml.find("</interface>", argument) : at;
        std::string in;
        std::string out;
        for (std::string type = next(xml, argument, " type=\""); !type.empty() && argument < end;
             type = next(xml, argument, " type=\""))
            (next(xml, argument, "direction=\"") == "in" ? in : out) += type;
        result[member] = in.append("→").append(out);
        member = following;
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
