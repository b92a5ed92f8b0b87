#include "app/JsonReport.h"

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include "amplifier/BiquadWords.h"

namespace tonvane {

namespace {

using Json = nlohmann::ordered_json;

std::string wordText(int32_t word) {
    return fmt::format("0x{:07X}", static_cast<unsigned>(word));
}

Json wordsJson(std::span<const int32_t> words) {
    Json texts = Json::array();
    for (const int32_t word : words) {
        texts.push_back(wordText(word));
    }
    return texts;
}

Json sectionsJson(std::span<const Biquad> sections, std::span<const int32_t> words) {
    Json list = Json::array();
    for (const auto& [b0, b1, b2, a1, a2] : sections) {
        const auto own = words.subspan(list.size() * wordsPerBiquad, wordsPerBiquad);
        list.push_back({{"b", {b0, b1, b2}}, {"a", {1.0, a1, a2}}, {"words", wordsJson(own)}});
    }
    return list;
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
    json["quantisation"] = {{"rmsDb", report.quantisationRmsDb},
                            {"largestDb", report.quantisationLargestDb},
                            {"largestHz", report.quantisationLargestHz}};
    json["highestGain"] = {{"db", report.highestGain.db},
                           {"hz", report.highestGain.hertz},
                           {"points", report.highestGain.points}};
    json["largestPoleRadius"] = report.largestPoleRadius;
    json["poleRadii"] = report.poleRadii;
    json["wrappedCoefficients"] = report.wrappedCoefficients;
    json["sections"] = sectionsJson(report.sections, report.words);
    json["curves"] = {{"frequencyHz", report.curves.frequency},
                      {"targetDb", report.curves.target},
                      {"measuredDb", report.curves.measured},
                      {"firDb", report.curves.fir},
                      {"filterDb", report.curves.filter}};
    json["warnings"] = report.warnings;
    return json.dump(1) + "\n";
}

std::string FormatJsonSections(std::span<const int32_t> words, std::optional<int32_t> sampleRate) {
    Json json;
    if (sampleRate) {
        json["sampleRateHz"] = *sampleRate;
    }
    json["sections"] = sectionsJson(DecodeBiquads(words), words);
    return json.dump(1) + "\n";
}

}  // namespace tonvane
