// Pixels and documents.
#include <algorithm>
#include <vector>

#include <gmock/gmock.h>

#include "graph/CanvasPixels.h"
#include "graph/cairo/CairoCanvas.h"

namespace tonvane {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr int32_t stride = 70;
constexpr uint32_t nobodys = 0x01020304U;

struct CairoDevice {
    [[nodiscard]] uint32_t at(int32_t x, int32_t y) const { return pixels[y * stride + x]; }

    std::vector<uint32_t> pixels = std::vector<uint32_t>(stride * tests::canvasHeight, nobodys);
    CairoCanvas canvas{pixels.data(), tests::canvasWidth, tests::canvasHeight, stride, 11.0};
};

TEST(CairoPixels, NothingIsPaintedBehindARow) {
    CairoDevice device;
    device.canvas.fillRectangle({-500, -500, 500, 500}, 0x0000FF);
    constexpr auto behind = stride - tests::canvasWidth;
    EXPECT_EQ(std::ranges::count(device.pixels, nobodys), behind * tests::canvasHeight);
}

// A quarter of a pixel is seen in a curve of two strokes, but not in a line alone.
TEST(CairoImage, PartsOfAPixelMakeCurvesSmoothAndLeaveSingleLinesSharp) {
    const auto draw = [](const std::vector<Segment>& segments) {
        CairoCanvas canvas(80, 80, 44.0, 4);  // 20 by 20 pixels
        canvas.fillRectangle({0, 0, 80, 80}, 0xFFFFFF);
        canvas.setPen(0x000000, 4);
        canvas.drawLines(segments);
        const auto image = canvas.makeImage(80, 80);
        image->copyImage(canvas);
        EXPECT_EQ(dynamic_cast<CairoCanvas&>(*image).png(), canvas.png());
        return canvas.png();
    };
    EXPECT_NE(draw({{{8, 40}, {40, 40}}, {{40, 40}, {72, 40}}}),
              draw({{{8, 41}, {40, 41}}, {{40, 41}, {72, 41}}}));
    EXPECT_EQ(draw({{{8, 40}, {72, 40}}}), draw({{{8, 41}, {72, 41}}}));
}

TEST(CairoDocument, IsVectorsAndTheSameBytesEachTime) {
    const auto draw = [](CairoCanvas& page) {
        const auto image = page.makeImage(400, 200);
        image->fillRectangle({0, 0, 400, 200}, 0xBFE9EE);
        const auto copy = page.makeImage(400, 200);
        copy->setOrigin({0, 200});
        copy->setPen(0x0000FF, 8);
        copy->copyImage(*image);
        copy->clip({40, -160, 360, -40});
        copy->drawLines(std::vector<Segment>{
            {{40, -160}, {40, -160}}, {{40, -160}, {200, -80}}, {{200, -80}, {300, -160}}});
        copy->drawText({100, -100}, TextAnchor::topCenter, 0, "\xFFzero \xE2\x82\xAC");
        page.copyImage(*copy);
    };
    const auto document = [&](DocumentKind kind) {
        return DrawDocument({kind, 100, 50, 4, 44.0}, draw);
    };
    const std::string svg = document(DocumentKind::svg);
    EXPECT_THAT(svg, HasSubstr("width=\"100px\" height=\"50px\""));
    // One path: strokes that meet are joined, the empty one is left out.
    EXPECT_THAT(svg, ContainsRegex("d=\"M 40 -160 L 200 -80 L 300 -160 ?\" "
                                   "transform=\"matrix\\(0.25, ?0, ?0, ?0.25, ?0, ?50\\)"));
    EXPECT_THAT(svg, Not(HasSubstr("<image")));
    EXPECT_EQ(svg, document(DocumentKind::svg));
    const std::string pdf = document(DocumentKind::pdf);
    EXPECT_THAT(pdf, StartsWith("%PDF-"));
    EXPECT_THAT(pdf, HasSubstr("/MediaBox [ 0 0 75 37.5 ]"));
    EXPECT_THAT(pdf, Not(testing::AnyOf(HasSubstr("/Image"), HasSubstr("/CreationDate"))));
}

TEST(Utf8, BytesThatAreNoTextBecomeQuestionMarks) {
    const std::pair<const char*, const char*> cases[] = {
        {"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x94\x8A", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x94\x8A"},
        {"\xE9t\xE9", "?t?"},               // Latin-1
        {"cut \xE2\x82", "cut ??"},         // the end of a sequence is missing
        {"\xC0\xAF\xE0\x80\xAF", "?????"},  // longer than it need be
        {"\xED\xA0\x80", "???"},            // half of a surrogate pair
        {"\xF4\x90\x80\x80", "????"},       // beyond Unicode
    };
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(ValidUtf8(bytes), text);
    }
}

}  // namespace
}  // namespace tonvane

namespace tonvane::tests {
INSTANTIATE_TYPED_TEST_SUITE_P(Cairo, CanvasPixels, CairoDevice);
}  // namespace tonvane::tests
