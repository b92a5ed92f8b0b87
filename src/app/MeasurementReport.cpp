// What is told of a measurement.
#include <cstdio>

#include <nlohmann/json.hpp>

#include "app/Measurement.h"

namespace tonvane {

std::string SummaryText(const MeasurementReport& report) {
    char text[400];
    std::snprintf(text, sizeof text,
                  "  sample rate        %d Hz\n"
                  "  delay              %d samples\n"
                  "  polarity           %s\n"
                  "  cutoff             %d Hz\n"
                  "  capture            peak %.1f dB of full scale, %lld samples clipped\n",
                  report.sampleRate, report.delaySamples,
                  report.polarity > 0   ? "positive"
                  : report.polarity < 0 ? "negative"
                                        : "unknown",
                  report.cutoffHz, report.peakDb, static_cast<long long>(report.clippedSamples));
    std::string summary = text;
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
