#include "platform/image/codecs/pict/Region.h"

namespace caddis::image {

namespace {

constexpr std::size_t MostBoxes = 20'000;
constexpr int EndMark = 0x7FFF;

// Where a row begins or ends a run that the row above it didn't, and back.
void flip(std::vector<int>& edges, int x)
{
    const auto found = std::lower_bound(edges.begin(), edges.end(), x);
    if (found != edges.end() && *found == x)
        edges.erase(found);
    else
        edges.insert(found, x);
}

} // namespace

std::vector<Box> readRegion(Cursor& cursor)
{
    const std::size_t start = cursor.place();
    const std::size_t size = std::max<std::size_t>(cursor.u16(), 10);
    const Box outer = cursor.box();
    const std::size_t end = start + size;
    std::vector<Box> boxes;
    std::vector<int> edges;
    int top = outer.top;
    while (cursor.place() + 2 <= end && !cursor.isAtEnd()) {
        const int y = cursor.i16();
        for (std::size_t index = 0; index + 1 < edges.size(); index += 2)
            boxes.push_back({ top, edges[index], y, edges[index + 1] });
        if (y == EndMark || boxes.size() > MostBoxes)
            break;
        top = y;
        for (int x = cursor.i16(); x != EndMark && cursor.place() < end && !cursor.isAtEnd();
             x = cursor.i16())
            flip(edges, x);
    }
    cursor.moveTo(end);
    if (boxes.empty() || boxes.size() > MostBoxes)
        return { outer };
    return boxes;
}

} // namespace caddis::image
