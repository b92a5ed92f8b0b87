#include "ui/Pictures.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <vector>

#include <cairo.h>
#include <gtest/gtest.h>

namespace tonvane::tests {

namespace {

struct Picture {
    int32_t width = 0;
    int32_t height = 0;
    std::vector<uint32_t> pixels;

    [[nodiscard]] int at(int32_t x, int32_t y, int channel) const {
        const int32_t inside = std::clamp(y, 0, height - 1) * width + std::clamp(x, 0, width - 1);
        return static_cast<int>(pixels[inside] >> (8 * channel) & 0xFFU);
    }
};

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;

cairo_status_t readSome(void* from, unsigned char* to, unsigned int count) {
    auto& rest = *static_cast<std::string_view*>(from);
    if (rest.size() < count) {
        return CAIRO_STATUS_READ_ERROR;
    }
    std::memcpy(to, rest.data(), count);
    rest.remove_prefix(count);
    return CAIRO_STATUS_SUCCESS;
}

Picture decode(std::string_view png) {
    const Surface surface(cairo_image_surface_create_from_png_stream(readSome, &png),
                          cairo_surface_destroy);
    Picture picture{cairo_image_surface_get_width(surface.get()),
                    cairo_image_surface_get_height(surface.get()),
                    {}};
    const unsigned char* rows = cairo_image_surface_get_data(surface.get());
    picture.pixels.resize(static_cast<size_t>(picture.width) * picture.height);
    for (int32_t y = 0; y < picture.height; ++y) {
        std::memcpy(&picture.pixels[static_cast<size_t>(y) * picture.width],
                    rows + static_cast<size_t>(y) * cairo_image_surface_get_stride(surface.get()),
                    sizeof(uint32_t) * picture.width);
    }
    return picture;
}

std::string contents(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

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

void leaveFiles(const std::string& png, const std::string& name, const Picture& difference) {
    const std::string folder = std::string(TONVANE_TEST_OUTPUT) + "/";
    std::filesystem::create_directories(folder);
    std::ofstream(folder + "actual-" + name, std::ios::binary) << png;
    std::filesystem::copy_file(std::string(TONVANE_TEST_DATA) + "/pictures/" + name, folder + name,
                               std::filesystem::copy_options::overwrite_existing);
    std::vector<uint32_t> pixels = difference.pixels;
    const Surface surface(cairo_image_surface_create_for_data(
                              reinterpret_cast<unsigned char*>(pixels.data()), CAIRO_FORMAT_RGB24,
                              difference.width, difference.height, difference.width * 4),
                          cairo_surface_destroy);
    cairo_surface_write_to_png(surface.get(), (folder + "difference-" + name).c_str());
    ADD_FAILURE() << "see actual-" << name << " and difference-" << name << " in " << folder;
}

}  // namespace

void ExpectLikeReference(const std::string& png, const std::string& name, const Rectangle& area,
                         int tolerance, int strays) {
    const Picture actual = decode(png);
    const Picture reference =
        decode(contents(std::string(TONVANE_TEST_DATA) + "/pictures/" + name));
    ASSERT_GT(reference.width, 0);
    ASSERT_EQ(actual.width, reference.width);
    ASSERT_EQ(actual.height, reference.height);
    Picture difference = actual;
    std::ranges::fill(difference.pixels, 0U);
    int off = 0;
    for (int32_t y = area.top; y < area.bottom; ++y) {
        for (int32_t x = area.left; x < area.right; ++x) {
            const int worst =
                std::max(distance(actual, reference, x, y), distance(reference, actual, x, y));
            off += worst > tolerance ? 1 : 0;
            difference.pixels[y * actual.width + x] = static_cast<uint32_t>(worst) * 0x010101U;
        }
    }
    EXPECT_LE(off, strays) << "pixels of " << name << " are off by more than " << tolerance;
    if (off > strays) {
        leaveFiles(png, name, difference);
    }
}

}  // namespace tonvane::tests
