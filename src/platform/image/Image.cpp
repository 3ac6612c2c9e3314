#include "platform/image/Image.h"

#include "platform/files/MappedFile.h"

#include <algorithm>
#include <cmath>

namespace caddis {

namespace {

// Pages and sizes of one file that become representations.
constexpr std::size_t MostRepresentations = 64;
constexpr std::chrono::seconds DrawingTimeout { 8 };

bool hasManyForms(const String& type)
{
    return type == u"public.tiff" || type == u"com.microsoft.ico" || type == u"com.microsoft.cur"
        || type == u"com.apple.icns";
}

std::vector<ImageRep> representationsOf(const ImageSource& source, const Data& data)
{
    std::vector<ImageRep> reps;
    const String type = source.type();
    const std::size_t count = hasManyForms(type) ? std::min(source.count(), MostRepresentations) : 1;
    for (std::size_t index = 0; index < count; ++index) {
        auto rep = BitmapImageRep::imageRepWithSource(source, index);
        if (rep && type == u"com.apple.pict")
            reps.emplace_back(PICTImageRep { data, *std::move(rep) });
        else if (rep)
            reps.emplace_back(*std::move(rep));
    }
    return reps;
}

std::vector<ImageRep> representationsOf(const Data& data)
{
    if (auto eps = EPSImageRep::imageRepWithData(data))
        return { *std::move(eps) };
    if (const auto source = ImageSource::createWithData(data))
        return representationsOf(*source, data);
    auto pdf = PDFImageRep::imageRepWithData(data);
    return pdf ? std::vector<ImageRep> { *std::move(pdf) } : std::vector<ImageRep>();
}

bool isNarrower(const ImageRep& left, const ImageRep& right)
{
    return pixelSizeOf(left).width < pixelSizeOf(right).width;
}

std::optional<Bitmap> drawn(const PDFImageRep& page, PDFRasterRequest request)
{
    request.deadline = std::chrono::steady_clock::now() + DrawingTimeout;
    const auto raster = page.raster(request);
    return raster ? std::optional(Bitmap { raster->pixelsWide, raster->pixelsHigh, false, raster->pixels })
                  : std::nullopt;
}

// Pages are drawn upon paper. What shows equally upon white and upon black is opaque, and what differs as
// much as they do is clear.
std::optional<Bitmap> drawnUponNothing(const PDFImageRep& page, PDFRasterRequest request)
{
    request.background = 0xFFFFFF;
    const auto white = drawn(page, request);
    request.background = 0;
    const auto black = drawn(page, request);
    if (!white || !black)
        return std::nullopt;
    std::vector<std::uint8_t> pixels(black->pixels.span().begin(), black->pixels.span().end());
    for (std::size_t at = 0; at < pixels.size(); at += 4) {
        int least = 255;
        for (std::size_t component = 0; component < 3; ++component)
            least = std::min(least, white->pixels.bytes()[at + component] - pixels[at + component]);
        const auto alpha = static_cast<std::uint8_t>(255 - std::max(least, 0));
        for (std::size_t component = 0; component < 3; ++component)
            pixels[at + component] = std::min(pixels[at + component], alpha);
        pixels[at + 3] = alpha;
    }
    return Bitmap { request.pixelsWide, request.pixelsHigh, true, Data::adopt(std::move(pixels)) };
}

std::optional<PDFImageRep> pageOf(const ImageRep& rep)
{
    if (const auto* pdf = std::get_if<PDFImageRep>(&rep))
        return *pdf;
    const auto* eps = std::get_if<EPSImageRep>(&rep);
    return eps ? eps->initializePDFImageRep() : std::nullopt;
}

const BitmapImageRep& pictureOf(const ImageRep& rep)
{
    const BitmapImageRep* const pixels = pixelsOf(rep);
    return pixels ? *pixels : std::get<PICTImageRep>(rep).picture;
}

// `part` in points of the representation.
void drawPage(const PDFImageRep& page, Rect part, GraphicsContext& context, Rect rect, Color background)
{
    const auto pixels
        = [](double side) { return static_cast<std::uint32_t>(std::max(std::floor(side + 0.5), 1.0)); };
    const Size bounds = context.bounds().size();
    if (rect.width > bounds.width * 4 || rect.height > bounds.height * 4)
        return;
    const PDFRasterRequest request { .source = part,
        .pixelsWide = pixels(rect.width),
        .pixelsHigh = pixels(rect.height),
        .background
        = static_cast<std::uint32_t>(background.red << 16 | background.green << 8 | background.blue) };
    const auto bitmap = background.alpha == 255 ? drawn(page, request) : drawnUponNothing(page, request);
    if (bitmap)
        context.draw(*bitmap, rect);
}

void drawBitmap(const BitmapImageRep& rep, Rect part, GraphicsContext& context, Rect rect)
{
    const Size points = rep.size();
    const double partWide = part.width / points.width;
    const double partHigh = part.height / points.height;
    const auto bitmap = rep.bitmapOfAtLeast({ rect.width / partWide, rect.height / partHigh });
    if (!bitmap)
        return;
    const double x = bitmap->pixelsWide / points.width;
    const double y = bitmap->pixelsHigh / points.height;
    context.draw(*bitmap, { part.x * x, part.y * y, part.width * x, part.height * y }, rect);
}

// The background is what is there already; pages are drawn faster when it is known to be opaque.
void drawPart(const ImageRep& rep, Rect part, GraphicsContext& context, Rect rect, Color background)
{
    const bool isDrawable = rect.width > 0 && rect.height > 0 && part.width > 0 && part.height > 0;
    if (const auto page = isDrawable ? pageOf(rep) : std::nullopt)
        drawPage(*page, part, context, rect, background);
    else if (isDrawable && !std::holds_alternative<EPSImageRep>(rep))
        drawBitmap(pictureOf(rep), part, context, rect);
}

} // namespace

std::optional<Image> Image::initWithData(const Data& data)
{
    auto reps = representationsOf(data);
    if (reps.empty())
        return std::nullopt;
    Image image(sizeOf(*std::max_element(reps.begin(), reps.end(), isNarrower)));
    image.m_representations = std::move(reps);
    return image;
}

std::optional<Image> Image::initWithContentsOfFile(const String& path)
{
    const auto data = MappedFile::open(path);
    return data ? initWithData(*data) : std::nullopt;
}

const ImageRep* Image::bestRepresentationForRect(Rect rect) const
{
    const ImageRep* best = nullptr;
    const auto isEnough = [&](const ImageRep& rep) {
        const Size pixels = pixelSizeOf(rep);
        return pixels.width >= rect.width && pixels.height >= rect.height;
    };
    const auto isBetter = [&](const ImageRep& rep) {
        if (!best)
            return true;
        if (isEnough(rep))
            return !isEnough(*best) || isNarrower(rep, *best);
        const bool isVector = !pixelsOf(rep);
        return !isEnough(*best) && pixelsOf(*best) && (isVector || isNarrower(*best, rep));
    };
    for (const ImageRep& rep : m_representations)
        if (isBetter(rep))
            best = &rep;
    return best;
}

void Image::drawRepresentation(const ImageRep& rep, GraphicsContext& context, Rect rect) const
{
    if (!pixelsOf(rep))
        context.fill(rect, m_backgroundColor);
    const Size size = sizeOf(rep);
    drawPart(rep, { 0, 0, size.width, size.height }, context, rect, m_backgroundColor);
}

void Image::drawInRect(GraphicsContext& context, Rect rect, Rect from) const
{
    const ImageRep* const rep = bestRepresentationForRect(rect);
    if (!rep || !(m_size.width > 0) || !(m_size.height > 0))
        return;
    const Size own = sizeOf(*rep);
    const double x = own.width / m_size.width;
    const double y = own.height / m_size.height;
    const Rect part = from == Rect() ? Rect { 0, 0, m_size.width, m_size.height } : from;
    drawPart(
        *rep, { part.x * x, part.y * y, part.width * x, part.height * y }, context, rect, Color::clear());
}

std::optional<Data> Image::TIFFRepresentation(TIFFCompression compression) const
{
    const Rect whole { 0, 0, m_size.width, m_size.height };
    const ImageRep* const rep = bestRepresentationForRect(whole);
    if (!rep)
        return std::nullopt;
    if (const BitmapImageRep* const pixels = pixelsOf(*rep)) {
        const auto bitmap = pixels->bitmap();
        return bitmap ? caddis::TIFFRepresentation(*bitmap, m_size, compression) : std::nullopt;
    }
    if (!(m_size.width > 0) || !(m_size.height > 0))
        return std::nullopt;
    GraphicsContext context(m_size);
    drawRepresentation(*rep, context, context.bounds());
    return caddis::TIFFRepresentation(context.take(), m_size, compression);
}

} // namespace caddis
