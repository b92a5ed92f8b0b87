// What every canvas of pixels draws, whatever it is made of.
//
// A Device has a `canvas` of canvasWidth by canvasHeight pixels with text of eleven pixels, and
// `at`, the pixel at a place as 0xRRGGBB, whatever stands above these bits.
#pragma once

#include <cmath>
#include <numbers>
#include <vector>

#include <gtest/gtest.h>

#include "graph/Canvas.h"

namespace tonvane::tests {

constexpr int32_t canvasWidth = 64;
constexpr int32_t canvasHeight = 48;

template <typename Device>
class CanvasPixels : public testing::Test {
  protected:
    CanvasPixels() { clear(); }
    void clear() { canvas.fillRectangle({0, 0, canvasWidth, canvasHeight}, 0xFFFFFF); }
    void draw(int32_t penWidth, const std::vector<Segment>& segments) {
        canvas.setPen(0x000000, penWidth);
        canvas.drawLines(segments);
    }
    [[nodiscard]] uint32_t at(int32_t x, int32_t y) const { return device.at(x, y) & 0xFFFFFFU; }
    // The painted area in pixels, of black on white.
    [[nodiscard]] double ink(const Rectangle& r = {0, 0, canvasWidth, canvasHeight}) const {
        double sum = 0.0;
        for (int32_t y = r.top; y < r.bottom; ++y) {
            for (int32_t x = r.left; x < r.right; ++x) {
                sum += 1.0 - (at(x, y) & 0xFFU) / 255.0;
            }
        }
        return sum;
    }

    Device device;
    Canvas& canvas = device.canvas;
};

TYPED_TEST_SUITE_P(CanvasPixels);

TYPED_TEST_P(CanvasPixels, ColoursHaveRedInTheLowByte) {
    this->canvas.fillRectangle({-5, -5, 10, 10}, 0x3366CC);
    EXPECT_EQ(this->at(9, 9), 0xCC6633U);
    EXPECT_EQ(this->at(10, 10), 0xFFFFFFU);
    this->canvas.setOrigin({10, 20});
    this->canvas.fillRectangle({0, 0, 500, 500}, 0x0000FF);
    EXPECT_EQ(this->at(10, 20), 0xFF0000U);
    EXPECT_EQ(this->at(9, 20), 0xFFFFFFU);
}

TYPED_TEST_P(CanvasPixels, UprightAndLevelLinesAreSharp) {
    this->draw(1, {{{3, 5}, {12, 5}}});
    EXPECT_EQ(this->ink({3, 5, 13, 6}), 10.0);
    this->draw(2, {{{30, 40}, {30, 20}}});
    EXPECT_EQ(this->ink({29, 19, 31, 41}), 44.0);
    this->draw(2, {{{50, 40}, {50, 40}}});
    EXPECT_EQ(this->ink(), 10.0 + 44.0);
}

// A stroke covers its length times its width and a disc.
TYPED_TEST_P(CanvasPixels, SlantedLinesCoverTheAreaOfARoundStroke) {
    for (const int32_t pen : {1, 2, 3, 6}) {
        for (const Point to : {Point{50, 30}, {20, 40}, {11, 44}, {58, 9}, {12, 11}}) {
            this->clear();
            this->draw(pen, {{{10, 8}, to}});
            const double length = std::hypot(to.x - 10, to.y - 8);
            const double area = length * pen + std::numbers::pi * pen * pen / 4.0;
            EXPECT_NEAR(this->ink(), area, 0.02 * area + 0.25) << pen << " to x " << to.x;
        }
    }
    this->clear();
    this->canvas.setPen(0xFFFFFF, 3);
    this->canvas.drawLines(std::vector<Segment>{{{10, 8}, {50, 30}}});
    EXPECT_EQ(this->ink(), 0.0);
}

TYPED_TEST_P(CanvasPixels, StrokesThatMeetAreNotPaintedTwice) {
    const Segment once{{5, 5}, {55, 40}};
    this->draw(2, {once});
    const double alone = this->ink();
    this->clear();
    this->draw(2, {once, {once.to, once.from}, once});
    EXPECT_EQ(this->ink(), alone);
    this->draw(2, {once});  // a second stroke is painted over the first
    EXPECT_GT(this->ink(), alone + 1.0);
    this->clear();
    this->draw(2, {{{5, 5}, {45, 45}}, {{5, 40}, {45, 8}}});
    for (int32_t i = 8; i < 42; ++i) {
        EXPECT_EQ(this->at(i, i), 0x000000U);  // also where they cross
    }
}

TYPED_TEST_P(CanvasPixels, LinesFromFarAwayCrossOnlyTheClip) {
    constexpr int32_t away = 1 << 30;
    this->canvas.clip({10, 10, 30, 30});
    this->draw(1, {{{-away, -away}, {away, away}},
                   {{12, -away}, {12, away}},
                   {{-away, 5}, {away, 5}},
                   {{away, 0}, {away, 40}},
                   {{-away, away - 5}, {away, away}}});
    this->canvas.endClip();
    EXPECT_EQ(this->ink({12, 10, 13, 30}), 20.0);
    for (int32_t i = 10; i < 30; ++i) {
        EXPECT_EQ(this->at(i, i), 0x000000U);
    }
    EXPECT_NEAR(this->ink(), this->ink({10, 10, 30, 30}), 1e-9);
    EXPECT_LT(this->ink(), 20.0 + 30.0);
}

TYPED_TEST_P(CanvasPixels, TextIsPlacedByItsAnchor) {
    this->canvas.drawText({40, 24}, TextAnchor::baselineRight, 0x000000, "-40");
    EXPECT_GT(this->ink({18, 12, 42, 25}), 20.0);
    EXPECT_NEAR(this->ink(), this->ink({18, 12, 42, 25}), 1.0);
    this->clear();
    this->canvas.drawText({30, 20}, TextAnchor::topCenter, 0x000000, "oo");
    EXPECT_GT(this->ink(), 5.0);
    EXPECT_NEAR(this->ink({0, 0, 30, canvasHeight}), 0.5 * this->ink(), 0.18 * this->ink());
    EXPECT_EQ(this->ink({0, 0, canvasWidth, 20}), 0.0);
}

// The outline lies inside the rectangle, and the corners are round.
TYPED_TEST_P(CanvasPixels, HandlesFillTheirRectangleAndNoMore) {
    this->canvas.setPen(0x0000FF, 2);
    this->canvas.roundRectangle({20, 10, 32, 22}, 2, 0x00FF00);
    EXPECT_EQ(this->at(26, 16), 0x00FF00U);
    EXPECT_EQ(this->at(26, 10), 0xFF0000U);
    EXPECT_EQ(this->at(31, 16), 0xFF0000U);
    EXPECT_EQ(this->at(26, 9), 0xFFFFFFU);
    EXPECT_EQ(this->at(32, 16), 0xFFFFFFU);
    EXPECT_NE(this->at(20, 10), 0xFF0000U);
}

REGISTER_TYPED_TEST_SUITE_P(CanvasPixels, ColoursHaveRedInTheLowByte, UprightAndLevelLinesAreSharp,
                            SlantedLinesCoverTheAreaOfARoundStroke,
                            StrokesThatMeetAreNotPaintedTwice, LinesFromFarAwayCrossOnlyTheClip,
                            TextIsPlacedByItsAnchor, HandlesFillTheirRectangleAndNoMore);

}  // namespace tonvane::tests
