#include "app/JsonReport.h"

#include <cstdio>

#include <nlohmann/json.hpp>

namespace tonvane {

namespace {

using Json = nlohmann::ordered_json;

std::string wordText(int32_t word) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%07X", static_cast<unsigned>(word));
    return text;
}

Json sectionJson(const DesignReport::Section& section) {
    Json words = Json::array();
    for (const int32_t word : section.words) {
        words.push_back(wordText(word));
    }
    return {{"b", {section.b0, section.b1, section.b2}},
            {"a", {1.0, section.a1, section.a2}},
            {"words", words}};
}

}  // namespace

std::string FormatJsonReport(const DesignReport& report) {
    Json json;
    json["sampleRateHz"] = report.sampleRate;
    if (report.hasTimeSignal) {
        json["delaySamples"] = report.delaySamples;
        json["polarity"] = report.polarity;
        json["cutoffHz"] = report.cutoffHz;
    }
    json["loudnessDb"] = report.loudnessDb;
    json["gainClampDb"] = report.gainClampDb;
    json["levelDb"] = report.levelDb;
    json["loudnessRatioDb"] = report.loudnessRatioDb;
    json["deviationBeforeDb"] = report.deviationBeforeDb;
    json["deviationAfterDb"] = report.deviationAfterDb;
    json["fit"] = {{"distance", report.fitDistance},
                   {"pass", report.fitPass},
                   {"rmsDb", report.fitRmsDb},
                   {"largestDb", report.fitLargestDb},
                   {"largestHz", report.fitLargestHz}};
    json["largestPoleRadius"] = report.largestPoleRadius;
    json["wrappedCoefficients"] = report.wrappedCoefficients;
    json["sections"] = Json::array();
    for (const auto& section : report.sections) {
        json["sections"].push_back(sectionJson(section));
    }
    json["curves"] = {{"frequencyHz", report.curves.frequency},
                      {"targetDb", report.curves.target},
                      {"measuredDb", report.curves.measured},
                      {"firDb", report.curves.fir},
                      {"filterDb", report.curves.filter}};
    json["warnings"] = report.warnings;
    return json.dump(1) + "\n";
}

}  // namespace tonvane
