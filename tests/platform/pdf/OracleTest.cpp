#include "platform/pdf/PDFDocument.h"

#include "support/PDFBuilder.h"
#include "support/Text.h"

#include <GlobalParams.h>
#include <PDFDoc.h>
#include <TextOutputDev.h>
#include <gtest/gtest.h>
#include <random>
#include <sstream>

namespace caddis {
namespace {

void append(void* text, const char* bytes, int length)
{
    static_cast<std::string*>(text)->append(bytes, static_cast<std::size_t>(length));
}

// What Poppler's own text device makes of the page, in the order of its content.
std::string popplerText(const Data& data)
{
    if (!globalParams)
        globalParams = std::make_unique<GlobalParams>();
    PDFDoc document(
        new MemStream(data.chars().data(), 0, static_cast<Goffset>(data.size()), Object(objNull)));
    std::string text;
    TextOutputDev device(&append, &text, false, 0, true, false);
    document.displayPage(&device, 1, 72, 72, 0, false, true, false);
    return text;
}

std::vector<std::string> words(const std::string& text)
{
    std::istringstream stream(text);
    return { std::istream_iterator<std::string>(stream), {} };
}

// A page of words in two fonts, sizes and directions; kerned, spaced by blanks, by gaps and by word spacing.
std::string randomContent(std::minstd_rand& random)
{
    const auto below = [&](unsigned bound) { return static_cast<int>(random() % bound); };
    std::string content = "BT\n";
    for (int line = 0; line < 30; ++line) {
        const int size = 8 + below(8);
        content += "/F" + std::to_string(1 + below(2)) + " " + std::to_string(size) + " Tf "
            + std::to_string(below(3)) + " Tw 1 0 0 1 " + std::to_string(60 + below(40)) + " "
            + std::to_string(750 - line * 24) + " Tm [";
        for (int word = 0; word < 1 + below(5); ++word) {
            for (int part = 0; part < 1 + below(3); ++part) {
                content += "("
                    + std::string(1 + static_cast<std::size_t>(below(4)), static_cast<char>('a' + below(26)))
                    + ") " + std::to_string(below(80) - 40) + " ";
            }
            content += below(2) ? "( ) " : "-400 ";
        }
        content += "] TJ\n";
    }
    return content + "ET";
}

TEST(Oracle, WordsAreThoseOfPopplersTextDevice)
{
    std::minstd_rand random(7);
    for (int page = 0; page < 20; ++page) {
        PDFBuilder builder;
        builder.page(randomContent(random));
        const auto text = PDFDocument::initWithData(builder.data())->pageAtIndex(0)->string();
        ASSERT_TRUE(text);
        EXPECT_EQ(words(readable(*text)), words(popplerText(builder.data()))) << "page " << page;
    }
}

} // namespace
} // namespace caddis
