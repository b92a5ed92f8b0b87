#include "app/DesignPicture.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>

#include <fmt/core.h>

#include "app/OutputFiles.h"
#include "files/InputError.h"
#include "platform/FileAccess.h"
#include "text/TextScanner.h"
#include "ui/PlotPicture.h"

namespace tonvane {

namespace {

constexpr int32_t longestSide = 8000;
constexpr double mostPixels = 1e8;  // of the finished picture
constexpr int32_t largestScale = 8;
constexpr const char* allCurves = "all";

enum class PictureKind { png, svg, pdf };

PictureKind kindOf(const std::string& path) {
    const std::string extension = LowerCaseExtension(path);
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
    const auto unknown = std::ranges::find_if(names, [](const std::string& name) {
        return name != allCurves &&
               std::ranges::find(curveStyles, name, &CurveStyle::name) == curveStyles.end();
    });
    if (unknown != names.end()) {
        std::string complaint = "there is no curve " + *unknown + "; expected " + allCurves;
        for (const CurveStyle& style : curveStyles) {
            complaint.append(", ").append(style.name);
        }
        throw InputError("--show", complaint);
    }
    return shown;
}

PlotPicture pictureOf(const PictureOptions& options) {
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
    return fmt::format(
        "{} at {} Hz, gain clamp {:.0f} dB: off the target by {:.1f} dB RMS as measured, {:.1f} dB "
        "RMS equalized",
        TextOf(PathOf(response).filename()), report.sampleRate, report.gainClampDb,
        report.deviationBeforeDb, report.deviationAfterDb);
}

PlotPicture captionedPicture(const PictureOptions& options, const FinishedDesign& design) {
    PlotPicture picture = pictureOf(options);
    picture.caption = options.caption.value_or(captionOf(design.source, design.report));
    return picture;
}

}  // namespace

std::vector<CommandOption> AddPictureLooks(Command& command, PictureOptions& options) {
    return {
        command
            .option("--show", options.show,
                    "Curves in the plot, with commas between: target, measured, biquads (these "
                    "three if not given), fir, response, through-fir, through-biquads, passband, "
                    "or all")
            .separatedBy(','),
        command.option("--size", options.size, "Size of the picture as WIDTHxHEIGHT in pixels")
            .showDefault(),
        command.option("--scale", options.scale, "Enlarges the picture and everything in it")
            .range(1, largestScale)
            .showDefault(),
        command.option("--caption", options.caption,
                       "Text below the plot; the figures of the design if not given")};
}

void CheckPictureOptions(const PictureOptions& options) {
    if (!DrawsPictures()) {
        throw InputError(options.output, "pictures of plots are not drawn on this system");
    }
    kindOf(options.output);
    pictureOf(options);
}

std::string PictureBytes(const PictureOptions& options, const FinishedDesign& design) {
    const PlotPicture picture = captionedPicture(options, design);
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

std::string PictureElement(const PictureOptions& options, const FinishedDesign& design) {
    if (!DrawsPictures()) {
        return {};
    }
    const std::string file = PlotSvg(*design.run, design.values, captionedPicture(options, design));
    return file.substr(file.find("<svg"));
}

}  // namespace tonvane
