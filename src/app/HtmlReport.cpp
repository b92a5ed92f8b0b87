#include "app/HtmlReport.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

#include <fmt/core.h>

#include "app/SvgChart.h"

namespace tonvane {

namespace {

constexpr const char* style = R"(
body { font: 16px/1.45 sans-serif; color: #222; max-width: 900px; margin: 2em auto; padding: 0 1em; }
h1 { font-size: 1.5em; margin-bottom: .2em; } h2 { font-size: 1.15em; margin: 1.8em 0 .4em; }
.files { color: #555; margin-top: 0; overflow-wrap: anywhere; }
.verdict { border-left: 6px solid #2e7d32; background: #eef6ee; padding: .7em 1em; }
.verdict.bad { border-color: #c62828; background: #fdeeee; }
.verdict.look { border-color: #e08a00; background: #fff6e6; }
.verdict p { margin: .2em 0; } .scroll { overflow-x: auto; }
table { border-collapse: collapse; } td, th { padding: .15em .7em .15em 0; text-align: left; }
.numbers td, .numbers th { text-align: right; border-bottom: 1px solid #e4e4e4; }
.numbers { font-size: .88em; font-variant-numeric: tabular-nums; } code { font-size: .95em; }
svg { width: 100%; height: auto; } .note { color: #555; font-size: .9em; }
@media print { body { margin: 0; max-width: none; } h2, svg, tr { break-inside: avoid; } }
)";

std::string figure(fmt::format_string<const double&> form, const double& value) {
    return std::isfinite(value) ? fmt::format(form, value) : "no number";
}

std::string tag(const std::string& name, const std::string& content) {
    return "<" + name + ">" + content + "</" + name.substr(0, name.find(' ')) + ">";
}

std::string row(const char* cell, const std::vector<std::string>& texts) {
    std::string cells;
    for (const std::string& text : texts) {
        cells += tag(cell, text);
    }
    return tag("tr", cells) + "\n";
}

std::string verdict(const DesignReport& report) {
    if (report.warnings.empty()) {
        return "<div class=\"verdict\"><p>The filter is stable, its words are in range, and it "
               "follows the design.</p></div>\n";
    }
    std::string lines;
    for (const std::string& warning : report.warnings) {
        lines += tag("p", EscapeMarkup(warning));
    }
    const char* kind = report.isUsable() ? "look" : "bad";
    return std::string("<div class=\"verdict ") + kind + "\">" +
           tag("p", report.isUsable() ? "<b>Look at this before shipping the result:</b>"
                                      : "<b>Do not use this filter:</b>") +
           lines + "</div>\n";
}

// What the highest gain found says about the promise that nothing is boosted.
std::string boundText(const DesignReport& report) {
    const HighestGain& highest = report.chain.highestGain;
    const double bound = highest.db + report.gainClampDb;
    std::string text = figure("{:+.2f} dB", highest.db) + figure(" at {:.1f} Hz", highest.hertz) +
                       figure(", the highest of {:.0f} frequencies", highest.points);
    if (report.gainClampDb < 0.0) {
        text += figure("; with the {:.0f} dB of the gain clamp ", report.gainClampDb) +
                figure("that is {:+.2f} dB against the FIR's bound of 0 dB", bound);
    }
    return text;
}

std::string apart(const Difference& difference) {
    return figure("{:.3f} dB RMS, at most ", difference.rmsDb) +
           figure("{:.3f} dB", difference.largestDb) +
           figure(" at {:.0f} Hz", difference.largestHz);
}

using Figure = std::pair<const char*, std::string>;

std::vector<Figure> figuresOf(const DesignReport& report) {
    std::vector<Figure> figures{{"Sample rate", std::to_string(report.sampleRate) + " Hz"}};
    figures.reserve(20);
    if (report.hasTimeSignal) {
        const char* polarity = report.polarity > 0   ? "positive"
                               : report.polarity < 0 ? "negative"
                                                     : "unknown";
        figures.emplace_back("Delay", std::to_string(report.delaySamples) + " samples");
        figures.emplace_back("Polarity", polarity);
        figures.emplace_back("Low cutoff", std::to_string(report.cutoffHz) + " Hz");
    } else {
        figures.emplace_back("Delay, polarity", "unknown: the response is a table of levels");
    }
    figures.emplace_back("Loudness of the raw response", figure("{:.1f} dB", report.loudnessDb));
    figures.emplace_back("Gain clamp", figure("{:.0f} dB", report.gainClampDb));
    figures.emplace_back("Level of the target found", figure("{:.2f} dB", report.levelDb));
    figures.emplace_back("Equalized against raw", figure("{:+.2f} dB", report.loudnessRatioDb));
    figures.emplace_back("Off the target",
                         figure("{:.2f} dB RMS as measured, ", report.deviationBeforeDb) +
                             figure("{:.2f} dB RMS equalized", report.deviationAfterDb));
    figures.emplace_back("Fit of the biquads",
                         report.fitMethod == FitMethod::refined
                             ? "refined: against the wanted correction"
                             : figure("iterated: pass {:.0f} of 50", report.fitPass) +
                                   figure(", distance {:.4f}", report.fitDistance));
    figures.emplace_back("Words off the wanted correction", apart(report.fromWanted));
    figures.emplace_back("Words off the FIR", apart(report.fromFir));
    figures.emplace_back("Words off the designed biquads", apart(report.quantisation));
    figures.emplace_back("Highest gain of the words", boundText(report));
    const ChainFigures& chain = report.chain;
    figures.emplace_back("Level inside above the output's",
                         figure("{:.1f} dB", chain.insideDb) +
                             figure(" behind section {:.0f}", chain.insideSection) +
                             figure(" at {:.0f} Hz", chain.insideHertz));
    figures.emplace_back("Rounding noise at the output",
                         figure("{:.1f} dB above that of one rounding", chain.noiseDb));
    figures.emplace_back("Largest Q", figure("{:.1f}", chain.largestQ));
    figures.emplace_back("Largest pole radius",
                         figure("{:.6f}", report.largestPoleRadius) +
                             (report.largestPoleRadius < 1.0 ? " (stable)" : " (unstable)"));
    figures.emplace_back("Coefficients beyond the words' range",
                         std::to_string(report.wrappedCoefficients));
    return figures;
}

std::string figureTable(const DesignReport& report) {
    std::string rows;
    for (const auto& [name, value] : figuresOf(report)) {
        rows += tag("tr", tag("th", EscapeMarkup(name)) + tag("td", EscapeMarkup(value))) + "\n";
    }
    return tag("table", rows);
}

std::vector<double> sum(const std::vector<double>& a, const std::vector<double>& b) {
    std::vector<double> total(a.size());
    std::ranges::transform(a, b, total.begin(), [](double x, double y) { return x + y; });
    return total;
}

std::string charts(const DesignReport& report) {
    const DesignReport::Curves& curves = report.curves;
    const std::vector<ChartCurve> speaker{
        {"measured", "#9aa3ad", false, curves.measured},
        {"equalized by the words", "#1565c0", false, sum(curves.measured, curves.filter)},
        {"target", "#c62828", true, curves.target}};
    const std::vector<ChartCurve> equalizer{{"words", "#1565c0", false, curves.filter},
                                            {"wanted", "#2e7d32", true, curves.wanted},
                                            {"FIR", "#e08a00", true, curves.fir}};
    return "<h2>The loudspeaker</h2>" + SvgChart(curves.frequency, speaker) +
           "<h2>The equalizer</h2>" + SvgChart(curves.frequency, equalizer) +
           "<p class=\"note\">The level drop of the gain clamp is taken out of both "
           "pictures.</p>\n";
}

// The curves at about three frequencies an octave.
std::string curveTable(const DesignReport& report) {
    const DesignReport::Curves& curves = report.curves;
    std::string rows = row("th", {"Hz", "target", "measured", "FIR", "words", "words &#8722; FIR",
                                  "equalized &#8722; target"});
    constexpr size_t stride = 20;
    for (size_t i = 0; i < curves.frequency.size(); i += stride) {
        const double error = curves.measured[i] + curves.filter[i] - curves.target[i];
        rows += row(
            "td", {figure("{:.0f}", curves.frequency[i]), figure("{:.2f}", curves.target[i]),
                   figure("{:.2f}", curves.measured[i]), figure("{:.2f}", curves.fir[i]),
                   figure("{:.2f}", curves.filter[i]),
                   figure("{:+.3f}", curves.filter[i] - curves.fir[i]), figure("{:+.2f}", error)});
    }
    return "<h2>Curves in dB</h2><div class=\"scroll\">" + tag("table class=\"numbers\"", rows) +
           "</div>\n";
}

std::string wordCell(int32_t word) {
    return tag("code", fmt::format("{:07X}", static_cast<unsigned>(word)));
}

std::string sectionTables(const DesignReport& report) {
    std::string values = row("th", {"", "b0", "b1", "b2", "a1", "a2", "pole radius"});
    std::string words = row("th", {"", "b0", "b1", "b2", "&#8722;a1", "&#8722;a2"});
    for (size_t i = 0; i < report.sections.size(); ++i) {
        std::vector<std::string> cells{std::to_string(i + 1)};
        for (const int32_t word :
             std::span(report.words).subspan(i * wordsPerBiquad, wordsPerBiquad)) {
            cells.push_back(wordCell(word));
        }
        words += row("td", cells);
        const auto& [b0, b1, b2, a1, a2] = report.sections[i];
        values += row("td", {std::to_string(i + 1), figure("{:.7f}", b0), figure("{:.7f}", b1),
                             figure("{:.7f}", b2), figure("{:.7f}", a1), figure("{:.7f}", a2),
                             figure("{:.6f}", report.poleRadii[i])});
    }
    return "<h2>Sections as designed</h2><div class=\"scroll\">" +
           tag("table class=\"numbers\"", values) +
           "</div>\n<h2>Words in hexadecimal</h2><div class=\"scroll\">" +
           tag("table class=\"numbers\"", words) + "</div>\n";
}

}  // namespace

std::string HtmlReport(const DesignReport& report, const ReportNames& names,
                       std::string_view plotSvg) {
    const std::string title = "Equalizer for " + EscapeMarkup(names.response);
    std::string page = "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"/>\n" +
                       std::string("<meta name=\"viewport\" content=\"width=device-width\"/>\n") +
                       tag("title", title) + tag("style", style) + "</head><body>\n" +
                       tag("h1", title) + "\n<p class=\"files\">Target: " +
                       (names.target.empty() ? "flat" : EscapeMarkup(names.target)) +
                       ". Filter file: " + EscapeMarkup(names.filters) + ".</p>\n" +
                       verdict(report);
    if (!plotSvg.empty()) {
        page += "<h2>Plot</h2>" + std::string(plotSvg) + "\n";
    }
    page += charts(report) + "<h2>Figures</h2>" + figureTable(report) + curveTable(report) +
            sectionTables(report);
    return page + "<p class=\"note\">Made by Tonvane.</p></body></html>\n";
}

}  // namespace tonvane
