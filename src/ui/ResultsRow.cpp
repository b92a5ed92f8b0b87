#include "ui/ResultsRow.h"

#include <cmath>

#include <fmt/core.h>

#include "elementary/Elementary.h"

namespace tonvane {

std::array<std::string, resultsHeadings.size()> ResultsRow(const TuningRun& run) {
    const ResponseAnalyzer& analyzer = run.responseAnalyzer;
    const char* speaker = SpeakerNames[run.speakerIndex];
    if (!analyzer.valid) {
        return {speaker, "", "", "", ""};
    }
    const int32_t sign = analyzer.polarity();
    const char* polarity = sign < 0 ? "Neg" : sign > 0 ? "Pos" : "??";
    return {speaker, polarity, std::to_string(analyzer.delaySamples) + " smpl",
            fmt::format("{:.1f} dB", 10.0 * elementary::Log10(run.eqDesigner.measuredLoudness)),
            std::to_string(analyzer.cutoffHz()) + " Hz"};
}

}  // namespace tonvane
