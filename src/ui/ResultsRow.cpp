#include "ui/ResultsRow.h"

#include <charconv>
#include <cmath>

#include "elementary/Elementary.h"

namespace tonvane {

namespace {

// One decimal, independent of the locale.
std::string tenths(double value) {
    std::array<char, 400> text{};
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, 1);
    return {text.data(), end.ptr};
}

}  // namespace

std::array<std::string, resultsHeadings.size()> ResultsRow(const TuningRun& run) {
    const ResponseAnalyzer& analyzer = run.responseAnalyzer;
    const char* speaker = SpeakerNames[run.speakerIndex];
    if (!analyzer.valid) {
        return {speaker, "", "", "", ""};
    }
    const char* polarity = analyzer.polarity < 0 ? "Neg" : analyzer.polarity > 0 ? "Pos" : "??";
    return {speaker, polarity, std::to_string(analyzer.delaySamples) + " smpl",
            tenths(10.0 * elementary::Log10(run.eqDesigner.measuredLoudness)) + " dB",
            std::to_string(analyzer.cutoffHz) + " Hz"};
}

}  // namespace tonvane
