#include "app/SvgChart.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include <fmt/core.h>

namespace tonvane {

namespace {

constexpr double width = 860.0;
constexpr double height = 340.0;
constexpr double left = 52.0;
constexpr double right = width - 14.0;
constexpr double top = 34.0;  // the legend stands above
constexpr double bottom = height - 34.0;
constexpr double mostDecibels = 60.0;

std::string number(double value) {
    return fmt::format("{:.1f}", value);
}

struct Axes {
    double lowHz;
    double highHz;
    double lowDb;
    double highDb;
    double stepDb;

    [[nodiscard]] double x(double hertz) const {
        return left + (right - left) * std::log(hertz / lowHz) / std::log(highHz / lowHz);
    }
    [[nodiscard]] double y(double decibels) const {
        const double share = (highDb - decibels) / (highDb - lowDb);
        return std::clamp(top + (bottom - top) * share, top, bottom);
    }
};

Axes axesOf(std::span<const double> frequencies, std::span<const ChartCurve> curves) {
    std::optional<double> lowest;
    std::optional<double> highest;
    for (const ChartCurve& curve : curves) {
        for (const double value : curve.decibels) {
            if (std::isfinite(value)) {
                lowest = std::min(lowest.value_or(value), value);
                highest = std::max(highest.value_or(value), value);
            }
        }
    }
    const double high = highest.value_or(0.0);
    const double low = std::max(lowest.value_or(-1.0), high - mostDecibels);
    const double step = high - low > 30.0 ? 10.0 : high - low > 10.0 ? 5.0 : 2.0;
    const double highHz = frequencies.size() > 1 ? frequencies.back() : frequencies.front() * 2.0;
    return {frequencies.front(), highHz, (std::ceil(low / step) - 1.0) * step,
            (std::floor(high / step) + 1.0) * step, step};
}

std::string lineTag(double x1, double y1, double x2, double y2) {
    return "<line x1=\"" + number(x1) + "\" y1=\"" + number(y1) + "\" x2=\"" + number(x2) +
           "\" y2=\"" + number(y2) + "\"/>";
}

std::string textTag(double x, double y, const char* anchor, const std::string& text) {
    return "<text x=\"" + number(x) + "\" y=\"" + number(y) + "\" text-anchor=\"" + anchor + "\">" +
           EscapeMarkup(text) + "</text>";
}

std::string frequencyLabel(int hertz) {
    return hertz < 1000 ? std::to_string(hertz) : std::to_string(hertz / 1000) + "k";
}

std::string grid(const Axes& axes) {
    std::string lines = "<g stroke=\"#d8dce0\" stroke-width=\"1\">";
    std::string labels = "<g fill=\"#444\" font-size=\"12\">";
    const auto steps = std::lround((axes.highDb - axes.lowDb) / axes.stepDb);
    for (long i = 0; i <= steps; ++i) {
        const double level = axes.lowDb + static_cast<double>(i) * axes.stepDb;
        lines += lineTag(left, axes.y(level), right, axes.y(level));
        labels +=
            textTag(left - 6.0, axes.y(level) + 4.0, "end", std::to_string(std::lround(level)));
    }
    for (int decade = 1; decade <= 10000; decade *= 10) {
        for (int digit = 1; digit < 10; ++digit) {
            const int hertz = decade * digit;
            if (hertz < axes.lowHz || hertz > axes.highHz) {
                continue;
            }
            lines += lineTag(axes.x(hertz), top, axes.x(hertz), bottom);
            if (digit == 1 || digit == 2 || digit == 5) {
                labels += textTag(axes.x(hertz), bottom + 16.0, "middle", frequencyLabel(hertz));
            }
        }
    }
    labels +=
        textTag(right, height - 4.0, "end", "Hz") + textTag(left - 6.0, top - 12.0, "end", "dB");
    return lines + "</g>" + labels + "</g>";
}

// The curve's pieces between its gaps.
std::string pathOf(const Axes& axes, std::span<const double> frequencies, const ChartCurve& curve) {
    std::string path;
    bool drawing = false;
    for (size_t i = 0; i < std::min(frequencies.size(), curve.decibels.size()); ++i) {
        const double value = curve.decibels[i];
        if (!std::isfinite(value)) {
            drawing = false;
            continue;
        }
        path +=
            (drawing ? "L" : "M") + number(axes.x(frequencies[i])) + " " + number(axes.y(value));
        drawing = true;
    }
    return "<path fill=\"none\" stroke=\"" + curve.colour + "\" stroke-width=\"1.8\"" +
           (curve.dashed ? " stroke-dasharray=\"6 4\"" : "") + " d=\"" + path + "\"/>";
}

std::string legend(std::span<const ChartCurve> curves) {
    constexpr double lineLength = 26.0;
    constexpr double letter = 7.0;  // px, about
    double x = left + 20.0;
    std::string tags = "<g font-size=\"13\" fill=\"#222\">";
    for (const ChartCurve& curve : curves) {
        tags += "<path fill=\"none\" stroke=\"" + curve.colour + "\" stroke-width=\"2.4\"" +
                (curve.dashed ? " stroke-dasharray=\"6 4\"" : "") + " d=\"M" + number(x) + " 17h" +
                number(lineLength) + "\"/>" +
                textTag(x + lineLength + 6.0, 21.0, "start", curve.name);
        x += lineLength + 30.0 + letter * static_cast<double>(curve.name.size());
    }
    return tags + "</g>";
}

}  // namespace

std::string SvgChart(std::span<const double> frequencies, std::span<const ChartCurve> curves) {
    if (frequencies.empty()) {
        return {};
    }
    const Axes axes = axesOf(frequencies, curves);
    std::string svg = "<svg viewBox=\"0 0 " + number(width) + " " + number(height) +
                      "\" role=\"img\" font-family=\"sans-serif\">" + grid(axes);
    for (const ChartCurve& curve : curves) {
        svg += pathOf(axes, frequencies, curve);
    }
    return svg + legend(curves) + "</svg>";
}

std::string EscapeMarkup(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            case '\'':
                escaped += "&#39;";
                break;
            default:
                escaped += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
        }
    }
    return escaped;
}

}  // namespace tonvane
