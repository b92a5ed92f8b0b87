// What is told of a measurement.

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include "app/Measurement.h"

namespace tonvane {

std::string SummaryText(const MeasurementReport& report) {
    std::string summary = fmt::format(
        "  sample rate        {} Hz\n"
        "  delay              {} samples\n"
        "  polarity           {}\n"
        "  cutoff             {} Hz\n"
        "  capture            peak {:.1f} dB of full scale, {} samples clipped\n",
        report.sampleRate, report.delaySamples,
        report.polarity > 0   ? "positive"
        : report.polarity < 0 ? "negative"
                              : "unknown",
        report.cutoffHz, report.peakDb, report.clippedSamples);
    for (const std::string& warning : report.warnings) {
        summary += "Warning: " + warning + "\n";
    }
    return summary;
}

std::string FormatJsonReport(const MeasurementReport& report) {
    nlohmann::ordered_json json;
    json["device"] = report.device;
    json["sampleRateHz"] = report.sampleRate;
    json["periods"] = report.periods;
    json["delaySamples"] = report.delaySamples;
    json["polarity"] = report.polarity;
    json["cutoffHz"] = report.cutoffHz;
    json["peakDb"] = report.peakDb;
    json["clippedSamples"] = report.clippedSamples;
    json["warnings"] = report.warnings;
    return json.dump(1) + "\n";
}

}  // namespace tonvane
