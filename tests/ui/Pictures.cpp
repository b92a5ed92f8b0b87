#include "ui/Pictures.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>

#include <cairo.h>
#include <gtest/gtest.h>

#include "support/Files.h"

namespace tonvane::tests {

namespace {

struct Picture {
    explicit Picture(const std::string& path)
        : surface(cairo_image_surface_create_from_png(path.c_str()), cairo_surface_destroy),
          width(cairo_image_surface_get_width(surface.get())),
          height(cairo_image_surface_get_height(surface.get())) {}

    // A channel of a pixel, the nearest one for a place outside.
    [[nodiscard]] int at(int32_t x, int32_t y, int channel) const {
        const int32_t stride = cairo_image_surface_get_stride(surface.get());
        return cairo_image_surface_get_data(
            surface.get())[std::clamp(y, 0, height - 1) * stride + std::clamp(x, 0, width - 1) * 4 +
                           channel];
    }

    std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface;
    int32_t width;
    int32_t height;
};

// How far a pixel is from what the other picture has around it, in its worst channel.
int distance(const Picture& one, const Picture& other, int32_t x, int32_t y) {
    int worst = 0;
    for (int channel = 0; channel < 3; ++channel) {
        int low = 255;
        int high = 0;
        for (int32_t i = 0; i < 9; ++i) {
            const int near = other.at(x - 1 + i % 3, y - 1 + i / 3, channel);
            low = std::min(low, near);
            high = std::max(high, near);
        }
        const int value = one.at(x, y, channel);
        worst = std::max({worst, low - value, value - high});
    }
    return worst;
}

}  // namespace

void ExpectLikeReference(const std::string& png, const std::string& name, const Rectangle& area,
                         int tolerance, int strays) {
    const std::string path = std::string(TONVANE_TEST_OUTPUT) + "/actual-" + name;
    std::filesystem::create_directories(TONVANE_TEST_OUTPUT);
    std::ofstream(path, std::ios::binary) << png;
    const Picture actual(path);
    const Picture reference(TestData("pictures/" + name));
    ASSERT_GT(reference.width, 0);
    ASSERT_EQ(actual.width, reference.width);
    ASSERT_EQ(actual.height, reference.height);
    int off = 0;
    for (int32_t y = area.top; y < area.bottom; ++y) {
        for (int32_t x = area.left; x < area.right; ++x) {
            off += distance(actual, reference, x, y) > tolerance ||
                   distance(reference, actual, x, y) > tolerance;
        }
    }
    EXPECT_LE(off, strays) << "pixels of " << path << " are off by more than " << tolerance;
}

}  // namespace tonvane::tests
