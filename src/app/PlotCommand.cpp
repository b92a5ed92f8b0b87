#include "app/PlotCommand.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>

#include "files/FileAccess.h"
#include "files/InputError.h"
#include "files/TextScanner.h"
#include "ui/PlotPicture.h"

namespace tonvane {

namespace {

constexpr int32_t longestSide = 8000;
constexpr double mostPixels = 1e8;  // of the finished picture
constexpr const char* allCurves = "all";

enum class PictureKind { png, svg, pdf };

PictureKind kindOf(const std::string& path) {
    std::string extension = std::filesystem::path(path).extension().string();
    std::ranges::transform(extension, extension.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    if (extension == ".png") {
        return PictureKind::png;
    }
    if (extension == ".svg") {
        return PictureKind::svg;
    }
    if (extension == ".pdf") {
        return PictureKind::pdf;
    }
    throw InputError(path, "expected a name that ends in .png, .svg or .pdf");
}

ShownCurves curvesOf(const std::vector<std::string>& names) {
    ShownCurves shown;
    if (names.empty()) {
        return shown;
    }
    for (const CurveStyle& style : curveStyles) {
        const bool isNamed = std::ranges::any_of(names, [&](const std::string& name) {
            return name == style.name || name == allCurves;
        });
        shown.*style.state = isNamed ? 1 : 0;
    }
    for (const std::string& name : names) {
        if (name != allCurves &&
            std::ranges::find(curveStyles, name, &CurveStyle::name) == curveStyles.end()) {
            std::string known = allCurves;
            for (const CurveStyle& style : curveStyles) {
                known += std::string(", ") + style.name;
            }
            throw InputError("--show", "there is no curve " + name + "; expected " + known);
        }
    }
    return shown;
}

PlotPicture pictureOf(const PlotOptions& options) {
    PlotPicture picture;
    TextScanner scanner(options.size);
    const auto width = scanner.integer();
    const bool isPair = width && scanner.literal('x');
    const auto height = isPair ? scanner.integer() : std::nullopt;
    if (!height || !scanner.atEnd() || *width < 1 || *height < 1 || *width > longestSide ||
        *height > longestSide) {
        throw InputError("--size",
                         "expected WIDTHxHEIGHT in pixels, at most 8000 each, such as "
                         "750x300");
    }
    picture.width = *width;
    picture.height = *height;
    picture.scale = options.scale;
    if (options.scale < 1 ||
        std::pow(options.scale, 2) * picture.width * picture.height > mostPixels) {
        throw InputError("--scale", "the picture would have more than 100 million pixels");
    }
    picture.shown = curvesOf(options.show);
    return picture;
}

std::string captionOf(const std::string& response, const DesignReport& report) {
    char text[160];
    std::snprintf(
        text, sizeof text,
        " at %d Hz, gain clamp %.0f dB: off the target by %.1f dB RMS as measured, %.1f dB "
        "RMS equalized",
        report.sampleRate, report.gainClampDb, report.deviationBeforeDb, report.deviationAfterDb);
    return std::filesystem::path(response).filename().string() + text;
}

}  // namespace

void CheckPlotOptions(const PlotOptions& options) {
    kindOf(options.output);
    pictureOf(options);
}

std::string PlotBytes(const PlotOptions& options, const std::string& response,
                      const FinishedDesign& design) {
    PlotPicture picture = pictureOf(options);
    picture.caption = options.caption.value_or(captionOf(response, design.report));
    try {
        switch (kindOf(options.output)) {
            case PictureKind::png:
                return PlotPng(*design.run, design.values, picture);
            case PictureKind::svg:
                return PlotSvg(*design.run, design.values, picture);
            default:
                return PlotPdf(*design.run, design.values, picture);
        }
    } catch (const InputError&) {
        throw;
    } catch (const std::runtime_error& error) {
        throw InputError(options.output, error.what());
    }
}

void RunPlotCommand(const DesignOptions& design, const PlotOptions& plot) {
    DesignOptions options = design;
    options.plot = plot;
    ExpectDistinctFiles(options);
    CheckPlotOptions(plot);
    const auto finished = DesignResponse(options);
    const std::string bytes = PlotBytes(plot, options.response, *finished);
    if (const auto reason = ReplaceFile(plot.output, bytes)) {
        throw InputError(plot.output, "cannot be written: " + *reason);
    }
    std::printf("Wrote %s\n", plot.output.c_str());
    for (const std::string& warning : finished->report.warnings) {
        std::fprintf(stderr, "Warning: %s\n", warning.c_str());
    }
}

}  // namespace tonvane
