#include "graph/cairo/CairoCanvas.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "graph/DrawingList.h"
#include "graph/cairo/CairoSurface.h"

namespace tonvane {

namespace {

constexpr const char* fontFamily = "sans-serif";

int32_t bytesOf(int32_t pixels) {
    return pixels * static_cast<int32_t>(sizeof(uint32_t));
}

void tracePath(cairo_t* context, std::span<const Segment> segments, const Rectangle& bounds,
               int32_t width) {
    const double middle = (width % 2) / 2.0;
    std::optional<Point> end;
    for (const Segment& segment : segments) {
        if (segment.from == segment.to) {
            continue;
        }
        const auto line = ClipSegment(segment, bounds, width);
        if (!line) {
            continue;
        }
        if (end != segment.from) {
            cairo_move_to(context, line->x0 + middle, line->y0 + middle);
        }
        cairo_line_to(context, line->x1 + middle, line->y1 + middle);
        const bool whole = line->x1 == segment.to.x && line->y1 == segment.to.y;
        end = whole ? std::optional(segment.to) : std::nullopt;
    }
}

void traceRoundRectangle(cairo_t* context, const Rectangle& r, double inset, double radius) {
    constexpr double quarter = std::numbers::pi / 2.0;
    const double left = r.left + inset + radius;
    const double top = r.top + inset + radius;
    const double right = r.right - inset - radius;
    const double bottom = r.bottom - inset - radius;
    cairo_new_sub_path(context);
    cairo_arc(context, right, top, radius, -quarter, 0.0);
    cairo_arc(context, right, bottom, radius, 0.0, quarter);
    cairo_arc(context, left, bottom, radius, quarter, 2.0 * quarter);
    cairo_arc(context, left, top, radius, 2.0 * quarter, 3.0 * quarter);
    cairo_close_path(context);
}

Rectangle moved(const Rectangle& r, Point by) {
    return {r.left + by.x, r.top + by.y, r.right + by.x, r.bottom + by.y};
}

// The pixels that a rectangle touches.
Rectangle inPixels(const Rectangle& r, int32_t resolution) {
    const auto up = [&](int32_t position) { return -(-position / resolution); };
    return {r.left / resolution, r.top / resolution, up(r.right), up(r.bottom)};
}

}  // namespace

cairo_status_t AppendBytes(void* text, const unsigned char* bytes, unsigned int count) {
    static_cast<std::string*>(text)->append(reinterpret_cast<const char*>(bytes), count);
    return CAIRO_STATUS_SUCCESS;
}

void ExpectDrawn(cairo_status_t status) {
    if (status != CAIRO_STATUS_SUCCESS) {
        throw std::runtime_error(std::string("drawing failed: ") + cairo_status_to_string(status));
    }
}

CairoCanvas::Surface::Surface(CairoSurfacePointer made, int32_t canvasWidth, int32_t canvasHeight,
                              double font, double unitsOfSurface)
    : width(canvasWidth),
      height(canvasHeight),
      fontSize(font),
      surface(std::move(made)),
      context(cairo_create(surface.get())) {
    ExpectDrawn(cairo_status(context.get()));
    cairo_t* c = context.get();
    cairo_scale(c, 1.0 / unitsOfSurface, 1.0 / unitsOfSurface);
    cairo_select_font_face(c, fontFamily, CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(c, fontSize);
    const std::unique_ptr<cairo_font_options_t, FontOptionsDestroy> options(
        cairo_font_options_create());
    cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options(c, options.get());
}

void CairoCanvas::Surface::setColor(Color color) const {
    cairo_set_source_rgb(context.get(), (color & 0xFFU) / 255.0, (color >> 8U & 0xFFU) / 255.0,
                         (color >> 16U & 0xFFU) / 255.0);
}

CairoCanvas::CairoCanvas(std::unique_ptr<Surface> surface) : surface_(std::move(surface)) {}

double CairoCanvas::Surface::wholePixel(double position) const {
    return std::round(position / resolution) * resolution;
}

CairoCanvas::CairoCanvas(int32_t width, int32_t height, double fontSize, int32_t resolution) {
    const int32_t across = width / resolution;
    const int32_t down = height / resolution;
    std::vector<uint32_t> pixels(static_cast<size_t>(across) * down, PixelOf(0));
    CairoSurfacePointer made(
        cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(pixels.data()),
                                            CAIRO_FORMAT_RGB24, across, down, bytesOf(across)));
    surface_ = std::make_unique<Surface>(std::move(made), width, height, fontSize, resolution);
    surface_->rows = PixelRows{pixels.data(), across, down, across};
    surface_->resolution = resolution;
    surface_->ownPixels = std::move(pixels);
}

CairoCanvas::CairoCanvas(uint32_t* pixels, int32_t width, int32_t height, int32_t stride,
                         double fontSize) {
    CairoSurfacePointer made(
        cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(pixels),
                                            CAIRO_FORMAT_ARGB32, width, height, bytesOf(stride)));
    surface_ = std::make_unique<Surface>(std::move(made), width, height, fontSize, 1.0);
    surface_->rows = PixelRows{pixels, width, height, stride};
}

CairoCanvas::~CairoCanvas() = default;

std::unique_ptr<Canvas> CairoCanvas::makeImage(int32_t width, int32_t height) const {
    if (surface_->rows) {
        return std::make_unique<CairoCanvas>(width, height, surface_->fontSize,
                                             surface_->resolution);
    }
    return std::make_unique<DrawingList>(width, height);
}

void CairoCanvas::setOrigin(Point fromUpperLeft) {
    surface_->origin = fromUpperLeft;
}

void CairoCanvas::fillRectangle(const Rectangle& rectangle, Color color) {
    const Surface& s = *surface_;
    const Rectangle placed = moved(rectangle, s.origin);
    if (s.rows) {
        s.rows->fill(inPixels(placed, s.resolution), PixelOf(color));
        return;
    }
    s.setColor(color);
    cairo_rectangle(s.context.get(), placed.left, placed.top, placed.right - placed.left,
                    placed.bottom - placed.top);
    cairo_fill(s.context.get());
}

void CairoCanvas::setPen(Color color, int32_t width) {
    surface_->penColor = color;
    surface_->penWidth = width;
}

// A line alone belongs to a grid or a legend and is drawn sharp.
void CairoCanvas::drawOnPixels(std::span<const Segment> segments, const Rectangle& bounds) {
    Surface& s = *surface_;
    const int32_t r = s.resolution;
    const Point origin{s.origin.x / r, s.origin.y / r};
    const Rectangle inside = inPixels(bounds, r);
    if (r == 1 || segments.size() > 1) {
        s.painter.draw(*s.rows, inside, origin, segments, s.penColor, s.penWidth, r);
        return;
    }
    // The middle of a line stays where it is as nearly as whole pixels allow.
    const int32_t width = std::max(s.penWidth / r, 1);
    const double shift = width % 2 == 0 ? 0.5 : 0.0;
    const auto whole = [&](int32_t position) {
        return static_cast<int32_t>(std::floor(static_cast<double>(position) / r + shift));
    };
    for (const auto& [from, to] : segments) {
        const Segment sharp{{whole(from.x), whole(from.y)}, {whole(to.x), whole(to.y)}};
        s.painter.draw(*s.rows, inside, origin, {&sharp, 1}, s.penColor, width);
    }
}

void CairoCanvas::drawLines(std::span<const Segment> segments) {
    Surface& s = *surface_;
    const Rectangle whole{-s.origin.x, -s.origin.y, s.width - s.origin.x, s.height - s.origin.y};
    const Rectangle bounds = s.clip.value_or(whole);
    if (s.rows) {
        drawOnPixels(segments, moved(bounds, s.origin));
        return;
    }
    cairo_t* c = s.context.get();
    cairo_save(c);
    cairo_translate(c, s.origin.x, s.origin.y);
    if (s.clip) {
        cairo_rectangle(c, bounds.left, bounds.top, bounds.right - bounds.left,
                        bounds.bottom - bounds.top);
        cairo_clip(c);
    }
    s.setColor(s.penColor);
    cairo_set_line_width(c, s.penWidth);
    const bool isAlone = segments.size() == 1;  // not a curve's
    cairo_set_line_cap(c, isAlone ? CAIRO_LINE_CAP_SQUARE : CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(c, CAIRO_LINE_JOIN_ROUND);
    tracePath(c, segments, bounds, s.penWidth);
    cairo_stroke(c);
    cairo_restore(c);
}

void CairoCanvas::drawText(Point at, TextAnchor anchor, Color color, std::string_view text) {
    const Surface& s = *surface_;
    cairo_t* c = s.context.get();
    const std::string valid = ValidUtf8(text);
    cairo_text_extents_t extents{};
    cairo_text_extents(c, valid.c_str(), &extents);
    cairo_font_extents_t font{};
    cairo_font_extents(c, &font);
    double x = at.x + s.origin.x;
    double y = at.y + s.origin.y;
    if (anchor == TextAnchor::topCenter) {
        x -= extents.x_advance / 2.0;
        y += font.ascent;
    } else if (anchor == TextAnchor::baselineRight) {
        x -= extents.x_advance;
    }
    s.setColor(color);
    cairo_move_to(c, s.wholePixel(x), s.wholePixel(y));
    cairo_show_text(c, valid.c_str());
}

void CairoCanvas::roundRectangle(const Rectangle& rectangle, int32_t corner, Color fill) {
    const Surface& s = *surface_;
    cairo_t* c = s.context.get();
    const Point toPixels{
        static_cast<int32_t>(s.wholePixel(rectangle.left)) - rectangle.left + s.origin.x,
        static_cast<int32_t>(s.wholePixel(rectangle.top)) - rectangle.top + s.origin.y};
    const Rectangle placed = moved(rectangle, toPixels);
    traceRoundRectangle(c, placed, s.penWidth / 2.0, corner / 2.0);
    s.setColor(fill);
    cairo_fill_preserve(c);
    s.setColor(s.penColor);
    cairo_set_line_width(c, s.penWidth);
    cairo_stroke(c);
}

void CairoCanvas::clip(const Rectangle& rectangle) {
    surface_->clip = rectangle;
}

void CairoCanvas::endClip() {
    surface_->clip.reset();
}

void CairoCanvas::copyImage(const Canvas& image) {
    if (!surface_->rows) {
        const Point origin = surface_->origin;
        dynamic_cast<const DrawingList&>(image).drawOn(*this);
        setOrigin(origin);
        endClip();
        return;
    }
    const PixelRows& from = *dynamic_cast<const CairoCanvas&>(image).surface_->rows;
    const PixelRows& to = *surface_->rows;
    const int32_t width = std::min(from.width, to.width);
    for (int32_t y = 0; y < std::min(from.height, to.height); ++y) {
        std::copy_n(from.row(y), width, to.row(y));
    }
}

double CairoCanvas::textWidth(std::string_view text) const {
    cairo_text_extents_t extents{};
    cairo_text_extents(surface_->context.get(), ValidUtf8(text).c_str(), &extents);
    return extents.x_advance;
}

std::string CairoCanvas::png() const {
    std::string bytes;
    if (surface_->rows) {
        cairo_surface_mark_dirty(surface_->surface.get());
        ExpectDrawn(cairo_status(surface_->context.get()));
        ExpectDrawn(
            cairo_surface_write_to_png_stream(surface_->surface.get(), AppendBytes, &bytes));
    }
    return bytes;
}

}  // namespace tonvane
