// What a CairoCanvas draws with. For the sources of this folder.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <vector>

#include <cairo.h>

#include "graph/StrokePainter.h"
#include "graph/cairo/CairoCanvas.h"

namespace tonvane {

struct SurfaceDestroy {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct ContextDestroy {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
struct FontOptionsDestroy {
    void operator()(cairo_font_options_t* options) const { cairo_font_options_destroy(options); }
};
using CairoSurfacePointer = std::unique_ptr<cairo_surface_t, SurfaceDestroy>;

struct CairoCanvas::Surface {
    // Takes the surface over; sizes in units of the canvas, of which `unitsOfSurface` make one of
    // the surface.
    Surface(CairoSurfacePointer made, int32_t canvasWidth, int32_t canvasHeight, double font,
            double unitsOfSurface);

    // On pixels, the multiple of the resolution next to a position.
    [[nodiscard]] double wholePixel(double position) const;

    void setColor(Color color) const;

    std::vector<uint32_t> ownPixels;
    std::optional<PixelRows> rows;  // nothing for a page
    int32_t resolution = 1;         // units in a pixel of the rows
    int32_t width;
    int32_t height;
    double fontSize;
    CairoSurfacePointer surface;
    std::unique_ptr<cairo_t, ContextDestroy> context;  // its origin is the upper left corner
    double ascent = 0.0;

    Point origin{0, 0};
    Color penColor = 0;
    int32_t penWidth = 1;
    std::optional<Rectangle> clip;
    StrokePainter painter;
};

// Appends to the std::string that `text` points to; a cairo_write_func_t.
cairo_status_t AppendBytes(void* text, const unsigned char* bytes, unsigned int count);

// Throws std::runtime_error for a surface that could not be made or drawn.
void ExpectDrawn(cairo_status_t status);

}  // namespace tonvane
