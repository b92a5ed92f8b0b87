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

Json differenceJson(const Difference& difference) {
    return {{"rmsDb", difference.rmsDb},
            {"largestDb", difference.largestDb},
            {"largestHz", difference.largestHz}};
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
    json["fit"] = differenceJson(report.fromFir);
    json["fit"]["method"] = FitName(report.fitMethod);
    if (report.fitMethod == FitMethod::iterated) {
        json["fit"]["distance"] = report.fitDistance;
        json["fit"]["pass"] = report.fitPass;
    }
    json["wanted"] = differenceJson(report.fromWanted);
    json["quantisation"] = differenceJson(report.quantisation);
    const ChainFigures& chain = report.chain;
    json["highestGain"] = {{"db", chain.highestGain.db},
                           {"hz", chain.highestGain.hertz},
                           {"points", chain.highestGain.points}};
    json["inside"] = {
        {"db", chain.insideDb}, {"section", chain.insideSection}, {"hz", chain.insideHertz}};
    json["noiseDb"] = chain.noiseDb;
    json["largestQ"] = chain.largestQ;
    json["largestPoleRadius"] = report.largestPoleRadius;
    json["poleRadii"] = report.poleRadii;
    json["wrappedCoefficients"] = report.wrappedCoefficients;
    json["sections"] = sectionsJson(report.sections, report.words);
    json["curves"] = {{"frequencyHz", report.curves.frequency},
                      {"targetDb", report.curves.target},
                      {"measuredDb", report.curves.measured},
                      {"wantedDb", report.curves.wanted},
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
