#include "ui/PlotPicture.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "graph/cairo/CairoCanvas.h"

namespace tonvane {

namespace {

// Pixels of an ordinary display.
constexpr double fontSize = 11.0;
constexpr int32_t minPlotWidth = 240;
constexpr int32_t minPlotHeight = 120;
constexpr int32_t sideMargin = 16;
constexpr int32_t legendRow = 20;
constexpr int32_t captionRow = 17;
constexpr int32_t lastMargin = 8;
constexpr int32_t baselineInRow = 14;
constexpr int32_t sampleLength = 26;
constexpr int32_t sampleWidth = 3;
constexpr int32_t sampleAboveBaseline = 4;
constexpr int32_t sampleToText = 6;
constexpr int32_t textToSample = 22;
constexpr int32_t axisNameLeft = 14;

constexpr size_t maxCaptionLines = 3;
constexpr const char* ellipsis = "\u2026";
constexpr Color textColor = 0x303030;
constexpr int32_t resolution = 4;  // strokes are placed by quarters of a pixel

// The dialog's three first, in its order.
constexpr std::array legendOrder{
    &ShownCurves::showTarget, &ShownCurves::showSpec2,  &ShownCurves::showFilter2,
    &ShownCurves::showFilter, &ShownCurves::showSpec1,  &ShownCurves::showMixed,
    &ShownCurves::showMixed2, &ShownCurves::showWeight,
};

struct LegendEntry {
    const CurveStyle* style;
    int32_t x;  // of its sample, canvas pixels
    int32_t row;
};

// A picture on its canvas, on which `unit` pixels are one of an ordinary display.
class Layout {
  public:
    Layout(CairoCanvas& canvas, const PlotPicture& picture, int32_t unit)
        : canvas_(canvas), picture_(picture), unit_(unit), width_(picture.width * unit) {}

    void draw(const TuningRun& run, const ProgramValues& values) {
        placeLegend(DrawnCurves(run, picture_.shown));
        const std::vector<std::string> caption = captionLines();
        const int32_t rows = legend_.empty() ? 0 : legend_.back().row + 1;
        const int32_t plotHeight = picture_.height - rows * legendRow -
                                   static_cast<int32_t>(caption.size()) * captionRow - lastMargin;
        if (picture_.width < minPlotWidth || plotHeight < minPlotHeight) {
            throw std::runtime_error("a picture of " + std::to_string(picture_.width) + "x" +
                                     std::to_string(picture_.height) +
                                     " has no room for the plot, its legend and its caption");
        }
        drawPlot(run, values, plotHeight);
        drawLegend(plotHeight);
        for (size_t i = 0; i < caption.size(); ++i) {
            const int32_t y = plotHeight + rows * legendRow + static_cast<int32_t>(i) * captionRow +
                              baselineInRow;
            text(sideMargin * unit_, y, caption[i]);
        }
    }

  private:
    void text(int32_t x, int32_t y, const std::string& words) {
        canvas_.drawText({x, y * unit_}, TextAnchor::baselineLeft, textColor, words);
    }

    [[nodiscard]] int32_t textWidth(const std::string& words) const {
        return static_cast<int32_t>(canvas_.textWidth(words) + 1.0);
    }

    void placeLegend(const std::vector<const CurveStyle*>& drawn) {
        int32_t x = sideMargin * unit_;
        int32_t row = 0;
        for (const auto state : legendOrder) {
            const auto style = std::ranges::find(drawn, state, &CurveStyle::state);
            if (style == drawn.end()) {
                continue;
            }
            const int32_t length =
                (sampleLength + sampleToText) * unit_ + textWidth((*style)->legend);
            if (!legend_.empty() && x + length > width_ - sideMargin * unit_) {
                x = sideMargin * unit_;
                ++row;
            }
            legend_.push_back({*style, x, row});
            x += length + textToSample * unit_;
        }
    }

    void drawLegend(int32_t top) {
        for (const LegendEntry& entry : legend_) {
            const int32_t y = top + entry.row * legendRow + baselineInRow;
            const int32_t middle = (y - sampleAboveBaseline) * unit_;
            const Segment sample{{entry.x, middle}, {entry.x + sampleLength * unit_, middle}};
            canvas_.setPen(entry.style->color, sampleWidth * unit_);
            canvas_.drawLines({&sample, 1});
            text(entry.x + (sampleLength + sampleToText) * unit_, y, entry.style->legend);
        }
    }

    void drawPlot(const TuningRun& run, const ProgramValues& values, int32_t plotHeight) {
        GraphHost nobody;
        int32_t kind = values.TargetCurveKind;
        CCurveGraphWindow plot(nobody, kind);
        SetUpPlot(plot);
        plot.record = run.curves[run.currentCurve];
        plot.Create(canvas_, width_, plotHeight * unit_, unit_);
        RedrawCurves(run, values, picture_.shown, plot);
        canvas_.fillRectangle({0, 0, width_, picture_.height * unit_}, plot.backgroundColor);
        plot.Paint(canvas_);
        canvas_.drawText({axisNameLeft * unit_, (plot.top - 4) * unit_}, TextAnchor::topCenter,
                         plot.gridColor, "dB");
        canvas_.drawText({axisNameLeft * unit_, (plotHeight - plot.bottom + 4) * unit_},
                         TextAnchor::topCenter, plot.gridColor, "Hz");
    }

    // Wrapped at blanks; what does not fit ends in an ellipsis.
    [[nodiscard]] std::vector<std::string> captionLines() const {
        const int32_t room = width_ - 2 * sideMargin * unit_;
        std::vector<std::string> lines;
        std::string rest = ValidUtf8(picture_.caption);
        while (!rest.empty() && lines.size() < maxCaptionLines) {
            if (textWidth(rest) <= room) {
                lines.push_back(rest);
                return lines;
            }
            const size_t blank = rest.rfind(' ', fitting(rest, "", room));
            if (blank == std::string::npos || lines.size() + 1 == maxCaptionLines) {
                lines.push_back(rest.substr(0, fitting(rest, ellipsis, room)) + ellipsis);
                return lines;
            }
            lines.push_back(rest.substr(0, blank));
            rest.erase(0, blank + 1);
        }
        return lines;
    }

    // How many bytes of the words fit into the room together with an ending; no sequence is cut.
    [[nodiscard]] size_t fitting(const std::string& words, const char* ending, int32_t room) const {
        const auto whole = [&](size_t end) {
            while (end > 0 && end < words.size() &&
                   (static_cast<unsigned char>(words[end]) & 0xC0U) == 0x80U) {
                --end;
            }
            return end;
        };
        size_t low = 0;
        size_t high = words.size();
        while (low < high) {
            const size_t middle = (low + high + 1) / 2;
            const bool fits = textWidth(words.substr(0, whole(middle)) + ending) <= room;
            low = fits ? middle : low;
            high = fits ? high : middle - 1;
        }
        return whole(low);
    }

    CairoCanvas& canvas_;
    const PlotPicture& picture_;
    int32_t unit_;
    int32_t width_;  // canvas pixels
    std::vector<LegendEntry> legend_;
};

std::string plotDocument(DocumentKind kind, const TuningRun& run, const ProgramValues& values,
                         const PlotPicture& picture) {
    const DocumentFormat format{kind, picture.width * picture.scale, picture.height * picture.scale,
                                resolution, fontSize * picture.scale * resolution};
    return DrawDocument(format, [&](CairoCanvas& canvas) {
        Layout(canvas, picture, picture.scale * resolution).draw(run, values);
    });
}

}  // namespace

bool DrawsPictures() {
    return true;
}

std::string PlotPng(const TuningRun& run, const ProgramValues& values, const PlotPicture& picture) {
    const int32_t unit = picture.scale * resolution;
    CairoCanvas canvas(picture.width * unit, picture.height * unit, fontSize * unit, resolution);
    Layout(canvas, picture, unit).draw(run, values);
    return canvas.png();
}

std::string PlotSvg(const TuningRun& run, const ProgramValues& values, const PlotPicture& picture) {
    return plotDocument(DocumentKind::svg, run, values, picture);
}

std::string PlotPdf(const TuningRun& run, const ProgramValues& values, const PlotPicture& picture) {
    return plotDocument(DocumentKind::pdf, run, values, picture);
}

}  // namespace tonvane
