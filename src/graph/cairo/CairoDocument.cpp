#include <string>
#include <string_view>

#include <cairo-pdf.h>
#include <cairo-svg.h>

#include "graph/cairo/CairoSurface.h"

namespace tonvane {

namespace {

constexpr double pointsPerPixel = 0.75;  // 1/72 inch and 1/96 inch

CairoSurfacePointer makePage(const DocumentFormat& format, std::string& bytes) {
    if (format.kind == DocumentKind::svg) {
        CairoSurfacePointer page(
            cairo_svg_surface_create_for_stream(AppendBytes, &bytes, format.width, format.height));
        cairo_svg_surface_set_document_unit(page.get(), CAIRO_SVG_UNIT_PX);
        return page;
    }
    CairoSurfacePointer page(cairo_pdf_surface_create_for_stream(
        AppendBytes, &bytes, format.width * pointsPerPixel, format.height * pointsPerPixel));
    // Without the date, which would differ from run to run.
    cairo_pdf_surface_set_metadata(page.get(), CAIRO_PDF_METADATA_CREATE_DATE, "");
    return page;
}

// Cairo numbers its surfaces through the whole process and gives the page's group that name.
void dropNumber(std::string& svg) {
    constexpr std::string_view name = " id=\"surface";
    const size_t at = svg.find(name);
    const size_t end = at == std::string::npos ? at : svg.find('"', at + name.size());
    if (end != std::string::npos) {
        svg.erase(at, end + 1 - at);
    }
}

// How many bytes a UTF-8 sequence with this first byte has; 0 for none.
size_t sequenceLength(unsigned char first) {
    return first < 0x80U                     ? 1
           : first >= 0xC2U && first < 0xE0U ? 2
           : first >= 0xE0U && first < 0xF0U ? 3
           : first >= 0xF0U && first < 0xF5U ? 4
                                             : 0;
}

bool isSequence(std::string_view bytes) {
    uint32_t code = static_cast<unsigned char>(bytes[0]);
    for (const char c : bytes.substr(1)) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte & 0xC0U) != 0x80U) {
            return false;
        }
        code = code << 6U | (byte & 0x3FU);
    }
    if (bytes.size() == 3) {
        code &= 0xFFFFU;
        return code >= 0x800U && (code < 0xD800U || code >= 0xE000U);
    }
    code &= 0x1FFFFFU;
    return bytes.size() != 4 || (code >= 0x10000U && code < 0x110000U);
}

}  // namespace

std::string DrawDocument(DocumentFormat format, const std::function<void(CairoCanvas&)>& draw) {
    std::string bytes;
    const double shrink = format.kind == DocumentKind::pdf ? 1.0 / pointsPerPixel : 1.0;
    CairoSurfacePointer page = makePage(format, bytes);
    cairo_surface_t* handle = page.get();
    ExpectDrawn(cairo_surface_status(handle));
    CairoCanvas canvas(std::make_unique<CairoCanvas::Surface>(
        std::move(page), format.width * format.resolution, format.height * format.resolution,
        format.fontSize, format.resolution * shrink));
    draw(canvas);
    ExpectDrawn(cairo_status(canvas.surface_->context.get()));
    cairo_surface_finish(handle);
    ExpectDrawn(cairo_surface_status(handle));
    if (format.kind == DocumentKind::svg) {
        dropNumber(bytes);
    }
    return bytes;
}

std::string ValidUtf8(std::string_view text) {
    std::string valid;
    valid.reserve(text.size());
    while (!text.empty()) {
        const size_t length = sequenceLength(static_cast<unsigned char>(text[0]));
        const bool good = length > 0 && length <= text.size() && isSequence(text.substr(0, length));
        valid += good ? text.substr(0, length) : "?";
        text.remove_prefix(good ? length : 1);
    }
    return valid;
}

}  // namespace tonvane
