#include "PictureFiles.h"
#include "Seen.h"

#include "support/Deflate.h"

#include "platform/image/ImageFiles.h"

#include <gtest/gtest.h>

// Camera raw files as far as this system reads them: sensors stand for themselves as a few bytes, and the
// previews are where the cameras put them.

namespace caddis {
namespace {

using namespace std::string_literals;

std::string le(std::uint64_t number, std::size_t bytes)
{
    std::string text;
    for (std::size_t index = 0; index < bytes; ++index)
        text += static_cast<char>(number >> (8 * index) & 0xFF);
    return text;
}

std::string be(std::uint64_t number, std::size_t bytes)
{
    const std::string text = le(number, bytes);
    return { text.rbegin(), text.rend() };
}

std::string jpeg(std::uint32_t wide, std::uint32_t high, const std::string& pixel)
{
    std::string pixels;
    for (std::uint32_t index = 0; index < wide * high; ++index)
        pixels += pixel;
    return std::string(
        JPEGRepresentation({ wide, high, false, Data::adopt(std::move(pixels)) }, 0.8)->chars());
}

const std::string& large()
{
    static const std::string file = jpeg(480, 320, "\xFF\0\0\xFF"s);
    return file;
}

const std::string& small()
{
    static const std::string file = jpeg(192, 128, "\0\0\xFF\xFF"s);
    return file;
}

// The entries of a directory of a little-endian TIFF file; texts and data are kept behind it.
class Directory {
public:
    enum Type : unsigned { Text = 2, Short = 3, Long = 4, Bytes = 7 };

    Directory& number(int tag, std::uint32_t value, Type type = Long)
    {
        m_entries.push_back({ tag, type, 1, value, "" });
        return *this;
    }
    Directory& data(int tag, Type type, const std::string& bytes)
    {
        m_entries.push_back({ tag, type, bytes.size() / (type == Short ? 2 : 1), 0, bytes });
        return *this;
    }
    /// An offset of these bytes.
    Directory& offset(int tag, const std::string& bytes)
    {
        m_entries.push_back({ tag, Long, 1, 0, bytes });
        return *this;
    }
    /// The directory as it stands at `place`.
    std::string at(std::size_t place, std::size_t next = 0) const
    {
        std::size_t behind = place + 2 + m_entries.size() * 12 + 4;
        std::string head = le(m_entries.size(), 2);
        std::string bodies;
        for (const Entry& entry : m_entries) {
            const std::uint64_t value = entry.body.empty() ? entry.value : behind + bodies.size();
            head += le(static_cast<std::uint64_t>(entry.tag), 2) + le(entry.type, 2) + le(entry.count, 4);
            head += le(value, 4);
            bodies += entry.body + std::string(entry.body.size() % 2, '\0');
        }
        return head + le(next, 4) + bodies;
    }

private:
    struct Entry {
        int tag;
        Type type;
        std::size_t count;
        std::uint32_t value;
        std::string body;
    };
    std::vector<Entry> m_entries;
};

enum Tag {
    SubfileType = 0xFE,
    Wide = 0x100,
    High = 0x101,
    BitsPerSample = 0x102,
    Compression = 0x103,
    Photometric = 0x106,
    Make = 0x10F,
    StripOffsets = 0x111,
    Orientation = 0x112,
    SamplesPerPixel = 0x115,
    RowsPerStrip = 0x116,
    StripLength = 0x117,
    SubDirectories = 0x14A,
    JPEGOffset = 0x201,
    JPEGLength = 0x202,
    DNGVersion = 0xC612,
};

Directory jpegDirectory(const std::string& file)
{
    return Directory()
        .number(SubfileType, 1)
        .number(Compression, 6, Directory::Short)
        .offset(JPEGOffset, file)
        .number(JPEGLength, static_cast<std::uint32_t>(file.size()));
}

// A first directory that says who made the camera and that it was held upright, and one below it.
std::string withSubDirectory(const std::string& make, const Directory& below, int extraTag = 0)
{
    Directory first;
    first.number(SubfileType, 1)
        .number(Wide, 160)
        .number(High, 120)
        .data(Make, Directory::Text, make + '\0')
        .number(Orientation, 6, Directory::Short);
    constexpr std::size_t belowPlace = 400;
    first.number(SubDirectories, belowPlace);
    if (extraTag)
        first.number(extraTag, 0x00000401, Directory::Long);
    std::string file = "II*\0"s + le(8, 4) + first.at(8);
    file.resize(belowPlace);
    return file + below.at(belowPlace);
}

// ISO/IEC 14496-12: its length, its kind, its body.
std::string box(const std::string& type, const std::string& body)
{
    return be(body.size() + 8, 4) + type + body;
}

std::string cr3(const std::string& largest)
{
    const std::string exif = "II*\0"s + le(8, 4) + Directory().number(Orientation, 6, Directory::Short).at(8);
    const std::string thumbnail
        = box("THMB", be(0, 4) + be(192, 2) + be(128, 2) + be(small().size(), 4) + be(1, 4) + small());
    const std::string preview = box(
        "PRVW", be(0, 4) + be(1, 2) + be(480, 2) + be(320, 2) + be(1, 2) + be(large().size(), 4) + large());
    const std::string type = box("ftyp", "crx \0\0\0\1crx isom"s);
    const auto movie = [&](std::size_t place) {
        const std::string table = box("stsz", be(0, 4) + be(largest.size(), 4) + be(1, 4))
            + box("co64", be(0, 4) + be(1, 4) + be(place, 8));
        const std::string track
            = largest.empty() ? "" : box("trak", box("mdia", box("minf", box("stbl", table))));
        return box("moov", box("uuid", std::string(16, 'm') + box("CMT1", exif) + thumbnail) + track);
    };
    const std::string head = box("uuid", std::string(16, 'p') + std::string(8, '\0') + preview);
    const std::size_t place = type.size() + movie(0).size() + head.size() + 8;
    return type + movie(place) + head + box("mdat", largest);
}

std::string packed(const std::string& text) { return deflated(text, 15 + 16); }

// The whole picture, its orientation, and the small one.
std::string seenRAW(const std::string& file)
{
    const auto source = sourceOf(file);
    if (!source)
        return "nil";
    const auto info = source->infoAtIndex(0);
    return seen(source->imageAtIndex(0)) + " " + std::to_string(info ? info->orientation : -1) + " "
        + seen(source->thumbnailAtIndex(0, { .maxPixelSize = 96, .allowsEmbedded = true }));
}

TEST(RAW, TIFFFilesShowTheirPreviewUpright)
{
    const std::string below = "320x480 rrrr 6 64x96 rrrr";
    EXPECT_EQ(seenRAW(withSubDirectory("NIKON CORPORATION", jpegDirectory(large()))), below);
    EXPECT_EQ(seenRAW(withSubDirectory("SONY", jpegDirectory(large()))), below);
    Directory strips;
    strips.number(SubfileType, 1).number(Wide, 480).number(High, 320);
    strips.data(BitsPerSample, Directory::Short, le(8, 2) + le(8, 2) + le(8, 2));
    strips.number(Compression, 7, Directory::Short).number(Photometric, 6, Directory::Short);
    strips.offset(StripOffsets, large())
        .number(SamplesPerPixel, 3, Directory::Short)
        .number(RowsPerStrip, 320);
    strips.number(StripLength, static_cast<std::uint32_t>(large().size()));
    EXPECT_EQ(seenRAW(withSubDirectory("Camera", strips, DNGVersion)), below);
}

TEST(RAW, CanonsFilesHaveASmallAndALargeOne)
{
    Directory first;
    first.number(Wide, 480)
        .number(High, 320)
        .number(Compression, 6, Directory::Short)
        .data(Make, Directory::Text, "Canon\0"s)
        .offset(StripOffsets, large())
        .number(Orientation, 6, Directory::Short)
        .number(StripLength, static_cast<std::uint32_t>(large().size()));
    const std::size_t place = 16;
    const std::size_t next = place + first.at(place).size();
    const std::string second = Directory()
                                   .offset(JPEGOffset, small())
                                   .number(JPEGLength, static_cast<std::uint32_t>(small().size()))
                                   .at(next);
    EXPECT_EQ(seenRAW("II*\0"s + le(16, 4) + "CR\2\0"s + le(0, 4) + first.at(place, next) + second),
        "320x480 rrrr 6 64x96 bbbb");
    EXPECT_EQ(seenRAW(cr3(large())), "320x480 rrrr 6 64x96 bbbb");
    EXPECT_EQ(seenRAW(cr3("")), "320x480 rrrr 6 64x96 bbbb");
}

TEST(RAW, PanasonicsAndFujisFilesHoldAWholeFile)
{
    Directory first;
    first.number(2, 480, Directory::Short).number(3, 320, Directory::Short);
    first.data(0x2E, Directory::Bytes, large()).data(Make, Directory::Text, "Panasonic\0"s);
    EXPECT_EQ(
        seenRAW("IIU\0"s + le(24, 4) + std::string(16, '\0') + first.at(24)), "480x320 rrrr 0 96x64 rrrr");
    const std::string head = "FUJIFILMCCD-RAW 0201FF383501X-T1"s;
    std::string file = head + std::string(84 - head.size(), '\0') + be(160, 4) + be(large().size(), 4);
    file.resize(160);
    EXPECT_EQ(seenRAW(file + large()), "480x320 rrrr 0 96x64 rrrr");
}

TEST(RAW, WithoutAPreviewThereIsNothing)
{
    EXPECT_EQ(seenRAW(withSubDirectory("NIKON CORPORATION", Directory().number(Wide, 4))), "nil");
    std::string cut = cr3(large());
    for (const std::size_t length : { std::size_t { 12 }, cut.size() / 4, cut.size() / 2, cut.size() - 9 })
        seenRAW(cut.substr(0, length)); // No crash.
    EXPECT_EQ(seenRAW(box("ftyp", "crx \0\0\0\1"s) + be(0, 4) + "moov"), "nil");
}

TEST(Wrapped, PicturesShowAsTheOneInside)
{
    const std::string jpegFile = large();
    EXPECT_EQ(
        seenRAW(box("idsc", std::string(86, '\0')) + box("idat", jpegFile)), "480x320 rrrr 0 96x64 rrrr");
    EXPECT_EQ(seenRAW(box("idat", box("idat", jpegFile))), "nil");
    EXPECT_EQ(seenRAW(be(0xFFFFFFFF, 4) + "idat" + jpegFile), "480x320 rrrr 0 96x64 rrrr");
    EXPECT_EQ(seenRAW(be(4, 4) + "idsc" + jpegFile), "nil");
}

TEST(Wrapped, PackedSVGIsUnpackedWithinBounds)
{
    EXPECT_EQ(seenRAW(packed(bytesOfPicture("quarters.svg"))), "32x16 rbgw 0 32x16 rbgw");
    EXPECT_EQ(seenRAW(packed("just a text")), "nil");
    EXPECT_EQ(seenRAW(packed("<svg" + std::string(40 << 20, ' '))), "nil");
    EXPECT_EQ(seenRAW("\x1F\x8B\x08"), "nil");
}

} // namespace
} // namespace caddis
