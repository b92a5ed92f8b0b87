// Pixels and documents.
#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include <gmock/gmock.h>

#include "graph/cairo/CairoCanvas.h"

namespace tonvane {
namespace {

using testing::Each;
using testing::HasSubstr;

constexpr int32_t width = 64;
constexpr int32_t height = 48;
constexpr int32_t stride = 70;

class CanvasPixels : public testing::Test {
  protected:
    CanvasPixels() { canvas.fillRectangle({0, 0, width, height}, 0xFFFFFF); }
    [[nodiscard]] uint32_t at(int32_t x, int32_t y) const { return pixels[y * stride + x]; }
    // The painted area in pixels, of black on white.
    [[nodiscard]] double inkOn(const Rectangle& r) const {
        double ink = 0.0;
        for (int32_t y = r.top; y < r.bottom; ++y) {
            for (int32_t x = r.left; x < r.right; ++x) {
                ink += 1.0 - (at(x, y) & 0xFFU) / 255.0;
            }
        }
        return ink;
    }
    [[nodiscard]] double ink() const { return inkOn({0, 0, width, height}); }

    std::vector<uint32_t> pixels = std::vector<uint32_t>(stride * height, 0x01020304U);
    CairoCanvas canvas{pixels.data(), width, height, stride, 11.0};
};

TEST_F(CanvasPixels, ColoursHaveRedInTheLowByteAndNothingIsPaintedOutside) {
    canvas.fillRectangle({-5, -5, 10, 10}, 0x3366CC);
    EXPECT_EQ(at(9, 9), 0xFFCC6633U);
    EXPECT_EQ(at(10, 10), 0xFFFFFFFFU);
    canvas.setOrigin({10, 20});
    canvas.fillRectangle({0, 0, 500, 500}, 0x0000FF);
    EXPECT_EQ(at(10, 20), 0xFFFF0000U);
    EXPECT_EQ(at(9, 20), 0xFFFFFFFFU);
    for (int32_t y = 0; y < height; ++y) {
        for (int32_t x = width; x < stride; ++x) {
            ASSERT_EQ(at(x, y), 0x01020304U);
        }
    }
}

TEST_F(CanvasPixels, UprightAndLevelLinesAreSharp) {
    canvas.setPen(0x000000, 1);
    const Segment level{{3, 5}, {12, 5}};
    canvas.drawLines({&level, 1});
    EXPECT_EQ(ink(), 10.0);
    EXPECT_EQ(inkOn({3, 5, 13, 6}), 10.0);
    canvas.setPen(0x000000, 2);
    const Segment upright{{30, 40}, {30, 20}};
    canvas.drawLines({&upright, 1});
    EXPECT_EQ(inkOn({29, 19, 31, 41}), 44.0);
    EXPECT_EQ(ink(), 54.0);
    const Segment point{{50, 40}, {50, 40}};
    canvas.drawLines({&point, 1});
    EXPECT_EQ(ink(), 54.0);
}

// A stroke covers its length times its width and a disc.
TEST_F(CanvasPixels, SlantedLinesCoverTheAreaOfARoundStroke) {
    for (const int32_t pen : {1, 2, 3, 6}) {
        for (const Point to : {Point{50, 30}, {20, 40}, {11, 44}, {58, 9}, {12, 11}}) {
            canvas.fillRectangle({0, 0, width, height}, 0xFFFFFF);
            canvas.setPen(0x000000, pen);
            const Segment segment{{10, 8}, to};
            canvas.drawLines({&segment, 1});
            const double length = std::hypot(to.x - 10, to.y - 8);
            const double area = length * pen + std::numbers::pi * pen * pen / 4.0;
            EXPECT_NEAR(ink(), area, 0.02 * area + 0.25) << pen << " to " << to.x << "," << to.y;
        }
    }
}

TEST_F(CanvasPixels, StrokesThatMeetAreNotPaintedTwice) {
    canvas.setPen(0x000000, 2);
    const Segment once{{5, 5}, {55, 40}};
    canvas.drawLines({&once, 1});
    const std::vector<uint32_t> alone = pixels;
    canvas.fillRectangle({0, 0, width, height}, 0xFFFFFF);
    const Segment thrice[] = {once, {{55, 40}, {5, 5}}, once};
    canvas.drawLines(thrice);
    EXPECT_EQ(pixels, alone);
}

TEST_F(CanvasPixels, LinesFromFarAwayCrossOnlyTheClip) {
    constexpr int32_t far = 1 << 30;
    canvas.setPen(0x000000, 1);
    canvas.clip({10, 10, 30, 30});
    const Segment segments[] = {{{-far, -far}, {far, far}},
                                {{12, -far}, {12, far}},
                                {{-far, 5}, {far, 5}},
                                {{far, 0}, {far, 40}},
                                {{-far, far - 5}, {far, far}}};
    canvas.drawLines(segments);
    canvas.endClip();
    EXPECT_EQ(inkOn({12, 10, 13, 30}), 20.0);
    for (int32_t i = 10; i < 30; ++i) {
        EXPECT_EQ(at(i, i), 0xFF000000U);
    }
    EXPECT_NEAR(ink(), inkOn({10, 10, 30, 30}), 1e-9);
    EXPECT_LT(ink(), 20.0 + 30.0);
}

TEST_F(CanvasPixels, TextIsPlacedByItsAnchor) {
    canvas.drawText({40, 24}, TextAnchor::baselineRight, 0x000000, "-40");
    EXPECT_GT(inkOn({18, 12, 42, 25}), 20.0);
    EXPECT_NEAR(ink(), inkOn({18, 12, 42, 25}), 1.0);
    canvas.fillRectangle({0, 0, width, height}, 0xFFFFFF);
    canvas.drawText({30, 20}, TextAnchor::topCenter, 0x000000, "oo");
    EXPECT_GT(ink(), 5.0);
    EXPECT_NEAR(inkOn({0, 0, 30, height}), inkOn({30, 0, width, height}), 0.35 * ink());
    EXPECT_EQ(inkOn({0, 0, width, 20}), 0.0);
}

TEST(CairoDocument, IsVectorsAndTheSameBytesEachTime) {
    const auto draw = [](CairoCanvas& page) {
        const auto image = page.makeImage(400, 200);
        image->fillRectangle({0, 0, 400, 200}, 0xBFE9EE);
        image->setPen(0x0000FF, 8);
        const Segment segments[] = {
            {{0, 0}, {0, 0}}, {{40, 40}, {200, 120}}, {{200, 120}, {300, 40}}};
        image->clip({40, 40, 360, 160});
        image->drawLines(segments);
        image->drawText({100, 100}, TextAnchor::topCenter, 0, "\xFFzero \xE2\x82\xAC");
        page.copyImage(*image);
    };
    for (const DocumentKind kind : {DocumentKind::svg, DocumentKind::pdf}) {
        const DocumentFormat format{kind, 100, 50, 4, 44.0};
        const std::string bytes = DrawDocument(format, draw);
        EXPECT_TRUE(bytes == DrawDocument(format, draw));
        EXPECT_EQ(bytes.find("<image"), std::string::npos);
        EXPECT_EQ(bytes.find("/Image"), std::string::npos);
        if (kind == DocumentKind::svg) {
            EXPECT_THAT(bytes, HasSubstr("width=\"100px\" height=\"50px\""));
            // One path: strokes that meet are joined, the empty one is left out.
            EXPECT_THAT(bytes, HasSubstr("d=\"M 40 40 L 200 120 L 300 40 \""));
        } else {
            EXPECT_THAT(bytes, testing::StartsWith("%PDF-"));
            EXPECT_THAT(bytes, HasSubstr("/MediaBox [ 0 0 75 37.5 ]"));
        }
    }
}

TEST(Utf8, BytesThatAreNoTextBecomeQuestionMarks) {
    const std::pair<const char*, const char*> cases[] = {
        {"", ""},
        {"plain", "plain"},
        {"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x94\x8A", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x94\x8A"},
        {"\xE9t\xE9", "?t?"},        // Latin-1
        {"cut \xE2\x82", "cut ??"},  // the end of a sequence is missing
        {"\xC0\xAF", "??"},          // longer than it need be
        {"\xE0\x80\xAF", "???"},
        {"\xED\xA0\x80", "???"},       // half of a surrogate pair
        {"\xF4\x90\x80\x80", "????"},  // beyond Unicode
    };
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(ValidUtf8(bytes), text);
    }
}

}  // namespace
}  // namespace tonvane
