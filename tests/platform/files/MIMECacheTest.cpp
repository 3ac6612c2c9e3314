#include "platform/files/ContentType.h"
#include "platform/files/SharedMIMEDatabase.h"
#include "support/Run.h"
#include "support/TemporaryFolder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace caddis {
namespace {

std::string contentsOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), {} };
}

// What the desktop's own tool makes of a small database.
std::string cacheOf(const std::string& types)
{
    const TemporaryFolder folder;
    folder.write("packages/a.xml",
        "<mime-info xmlns='http://www.freedesktop.org/standards/shared-mime-info'>" + types + "</mime-info>");
    run("update-mime-database " + folder.path().string());
    return contentsOf(folder.path() / "mime.cache");
}

const std::string Types
    = "<mime-type type='a/light'><glob pattern='*.x' weight='40'/></mime-type>"
      "<mime-type type='a/heavy'><glob pattern='*.x' weight='80'/><alias type='a/old'/>"
      "<sub-class-of type='a/light'/><sub-class-of type='text/plain'/></mime-type>"
      "<mime-type type='a/both'><glob pattern='*.tar.gz'/><glob pattern='*.X?'/></mime-type>";

TEST(MIMECache, KnowsTypesByTheEndsOfNames)
{
    const auto cache = MIMECache::open(Data::copyOf(cacheOf(Types)));
    ASSERT_TRUE(cache);
    EXPECT_EQ(cache->typeForExtension("x"), "a/heavy");
    EXPECT_EQ(cache->typeForExtension("tar.gz"), "a/both");
    EXPECT_EQ(cache->typeForExtension("gz"), std::nullopt);
    EXPECT_EQ(cache->typeForExtension(""), std::nullopt);
    EXPECT_EQ(cache->typeForAlias("a/old"), "a/heavy");
    EXPECT_EQ(cache->typeForAlias("a/heavy"), std::nullopt);
    EXPECT_EQ(cache->parentsOf("a/heavy"), (std::vector<std::string> { "a/light", "text/plain" }));
    const SharedMIMEDatabase database({ *cache });
    EXPECT_EQ(database.lineageOf(u"a/old"_s), (std::vector { u"a/heavy"_s, u"a/light"_s, u"text/plain"_s }));
}

TEST(MIMECache, BelievesNothing)
{
    const std::string good = cacheOf(Types);
    for (std::size_t length = 0; length < good.size(); length += 7) {
        if (const auto cache = MIMECache::open(Data::copyOf(good.substr(0, length)))) {
            cache->typeForExtension("tar.gz");
            cache->parentsOf("a/heavy");
        }
    }
    std::string loop = good; // The tree's root is its own child.
    loop.replace(16, 4, loop.substr(20, 4));
    EXPECT_FALSE(MIMECache::open(Data::copyOf(std::string("\0\1\0\3", 4))));
    EXPECT_FALSE(MIMECache::open(Data()));
    EXPECT_EQ(MIMECache::open(Data::copyOf(loop))->typeForExtension("x"), std::nullopt);
}

TEST(ContentType, TakesDeclarationsWhereTheTableIsSilent)
{
    const TemporaryFolder folder;
    const String file = folder.write("a.lampwick", "");
    EXPECT_EQ(contentTypeOfItem(file), dynamicTypeForExtension(u"lampwick"_s));
    declareContentType({ .identifier = u"org.example.lamp"_s,
        .extensions = { u"LampWick"_s, u"pdf"_s },
        .mimeTypes = { u"x-lamp/Wick"_s } });
    declareContentType({ .identifier = u"org.example.late"_s, .extensions = { u"lampwick"_s } });
    EXPECT_EQ(contentTypeOfItem(file), u"org.example.lamp"_s);
    EXPECT_EQ(contentTypeForExtension(u"pdf"_s, ContentTypeKind::File), u"com.adobe.pdf"_s);
    EXPECT_EQ(contentTypeForMIMEType(u"X-Lamp/wick"_s), u"org.example.lamp"_s);
    EXPECT_EQ(contentTypeForExtension(u"lampwick"_s, ContentTypeKind::Package), std::nullopt);
}

} // namespace
} // namespace caddis
