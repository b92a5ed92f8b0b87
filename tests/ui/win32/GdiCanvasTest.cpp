// The pixels of GDI, with the expectations of every canvas.
#include "graph/CanvasPixels.h"
#include "ui/win32/GdiCanvas.h"

namespace tonvane::tests {

struct GdiDevice {
    [[nodiscard]] uint32_t at(int32_t x, int32_t y) const {
        return canvas.pixels()[static_cast<size_t>(y * canvasWidth + x)];
    }

    GdiCanvas canvas{canvasWidth, canvasHeight, 11};
};

INSTANTIATE_TYPED_TEST_SUITE_P(Gdi, CanvasPixels, GdiDevice);

TEST(GdiImage, CopiesReachAnImageAndADevice) {
    GdiCanvas drawn(canvasWidth, canvasHeight, 11);
    drawn.fillRectangle({3, 4, 10, 12}, 0x3366CC);
    const auto copy = drawn.makeImage(canvasWidth, canvasHeight);
    copy->copyImage(drawn);
    const auto& image = dynamic_cast<const GdiCanvas&>(*copy);
    const OwnedDc device(CreateCompatibleDC(nullptr));
    const OwnedBitmap bitmap(CreateBitmap(canvasWidth, canvasHeight, 1, 32, nullptr));
    SelectObject(device.get(), bitmap.get());
    image.copyTo(device.get());
    EXPECT_EQ(GetPixel(device.get(), 3, 4), 0x3366CCU);
    EXPECT_EQ(GetPixel(device.get(), 9, 11), 0x3366CCU);
    EXPECT_EQ(GetPixel(device.get(), 10, 11), 0x000000U);
}

}  // namespace tonvane::tests
