#include "tuning/DesignReport.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <fmt/core.h>

#include "amplifier/FixedPoint.h"
#include "design/CascadeResponse.h"
#include "design/TargetShaping.h"
#include "elementary/Elementary.h"

namespace tonvane {

namespace {

constexpr double poorFitDb = 1.0;
constexpr double loudInsideDb = 6.0;
constexpr double passbandShare = 0.5;  // of the pass-band curve: inside
constexpr double weakPassbandDb = -60.0;

double powerDb(double power) {
    return 10.0 * elementary::Log10(power);
}

// A curve of the design grid at a frequency, interpolated between its points. A response file may
// name any rate, a negative one among them.
double onDesignGrid(const DesignCurve& curve, double hertz, int32_t sampleRate) {
    const double position =
        std::clamp(hertz * designLength / sampleRate, 0.0, designPoints - 1.001);
    const auto i = static_cast<int32_t>(position);
    const double t = position - i;
    return (1.0 - t) * curve[i] + t * curve[i + 1];
}

void addSections(const TuningRun& run, DesignReport& report) {
    report.sections.assign(run.fittedSections().begin(), run.fittedSections().end());
    report.words.assign(run.fittedWords().begin(), run.fittedWords().end());
    for (const auto& [b0, b1, b2, a1, a2] : report.sections) {
        for (const double coefficient : {b0, b1, b2, -a1, -a2}) {
            const bool isNumber = std::isfinite(coefficient);
            report.isFinite = report.isFinite && isNumber;
            report.wrappedCoefficients += isNumber && !FitsCoefWord(coefficient) ? 1 : 0;
        }
    }
}

void addCurves(const TuningRun& run, const ProgramValues& values, DesignReport& report) {
    const EqDesigner& designer = run.eqDesigner;
    const TargetRecord& target = run.curves[run.currentCurve];
    const double rawLevelDb = report.levelDb - report.gainClampDb;
    DesignReport::Curves& curves = report.curves;
    for (const double hertz : IirFitter::comparisonFrequencies()) {
        if (hertz > run.designRate / 2.0) {
            break;
        }
        curves.frequency.push_back(hertz);
        curves.target.push_back(powerDb(TargetPowerAt(target, values.TargetCurveKind, hertz)) +
                                rawLevelDb);
        curves.measured.push_back(
            powerDb(onDesignGrid(designer.measuredPower, hertz, designer.sampleRate)));
        curves.wanted.push_back(
            powerDb(onDesignGrid(designer.designPower, hertz, values.SampleRateTable[0])));
    }
    curves.fir = FirResponseDb(run.iirFitter.taps.first(run.iirFitter.tapCount), curves.frequency,
                               run.designRate);
    for (std::vector<double>* curve : {&curves.fir, &curves.wanted}) {
        for (double& value : *curve) {
            value -= report.gainClampDb;
        }
    }
    curves.filter = CascadeResponseDb(report.words, curves.frequency, run.designRate);
}

// Of the words from another curve of the report's.
Difference differenceFrom(const std::vector<double>& other, const DesignReport::Curves& curves) {
    Difference difference;
    double squares = 0.0;
    for (size_t i = 0; i < other.size(); ++i) {
        const double error = curves.filter[i] - other[i];
        squares += error * error;
        if (std::fabs(error) > difference.largestDb) {
            difference.largestDb = std::fabs(error);
            difference.largestHz = curves.frequency[i];
        }
    }
    difference.rmsDb = std::sqrt(squares / static_cast<double>(other.size()));
    return difference;
}

void compareCurves(DesignReport& report) {
    const DesignReport::Curves& curves = report.curves;
    report.fromFir = differenceFrom(curves.fir, curves);
    report.fromWanted = differenceFrom(curves.wanted, curves);
    report.quantisation = differenceFrom(
        CascadeResponseDb(report.sections, curves.frequency, report.sampleRate), curves);
    report.isFinite = report.isFinite && std::isfinite(report.fromFir.rmsDb);
}

// The standard deviation of the response, through the filter if `equalized`, from the target over
// the points of the grid inside the pass-band.
double deviationDb(const DesignReport::Curves& curves, const TargetRecord& target, bool equalized) {
    const double low = target.points[TargetRecord::lowEdge].frequency;
    const double high = target.points[TargetRecord::highEdge].frequency;
    double sum = 0.0;
    double squares = 0.0;
    double count = 0.0;
    for (size_t i = 0; i < curves.frequency.size(); ++i) {
        if (curves.frequency[i] < low || curves.frequency[i] > high) {
            continue;
        }
        const double difference =
            curves.measured[i] + (equalized ? curves.filter[i] : 0.0) - curves.target[i];
        sum += difference;
        squares += difference * difference;
        count += 1.0;
    }
    const double mean = sum / count;
    return count > 0.0 ? std::sqrt(std::max(squares / count - mean * mean, 0.0)) : 0.0;
}

// The largest measured power inside the pass-band, dB.
double passbandLevelDb(const EqDesigner& designer) {
    double largest = 0.0;
    for (int32_t i = 0; i < designPoints; ++i) {
        if (designer.passband[i] > passbandShare) {
            largest = std::max(largest, designer.measuredPower[i]);
        }
    }
    const double overall = *std::ranges::max_element(designer.measuredPower);
    return powerDb(largest / overall);
}

void addWarnings(const EqDesigner& designer, DesignReport& report) {
    auto& warnings = report.warnings;
    if (!report.isFinite) {
        warnings.emplace_back("The design did not give numbers; do not use the filter.");
    }
    if (!(report.largestPoleRadius < 1.0)) {
        warnings.push_back(
            fmt::format("The filter is unstable: its largest pole has radius {:.6f}.",
                        report.largestPoleRadius));
    }
    if (report.wrappedCoefficients > 0) {
        warnings.push_back(fmt::format("{} coefficients lie outside -4 to 4 and have wrapped.",
                                       report.wrappedCoefficients));
    }
    const bool isRefined = report.fitMethod == FitMethod::refined;
    const double error = isRefined ? report.fromWanted.rmsDb : report.fromFir.rmsDb;
    if (error > poorFitDb) {
        warnings.push_back(fmt::format("The biquads follow the {} badly, by {:.2f} dB RMS.",
                                       isRefined ? "wanted correction" : "FIR", error));
    }
    if (report.chain.insideDb > loudInsideDb) {
        warnings.push_back(fmt::format(
            "Inside the filter the level rises {:.1f} dB above the output's, behind section {} at "
            "{:.0f} Hz: loud signals overflow there.",
            report.chain.insideDb, report.chain.insideSection, report.chain.insideHertz));
    }
    if (passbandLevelDb(designer) < weakPassbandDb) {
        warnings.emplace_back("The response has almost nothing inside the pass-band.");
    }
    if (report.gainClampDb == 0.0) {
        warnings.emplace_back(
            "With a gain clamp of 0 dB a filter that may only cut has nothing to cut: the result "
            "is "
            "flat. Give a gain clamp of -1 to -12 dB.");
    }
}

bool fits(const Biquad& section) {
    const auto& [b0, b1, b2, a1, a2] = section;
    return std::ranges::all_of(std::array{b0, b1, b2, -a1, -a2},
                               [](double x) { return std::isfinite(x) && FitsCoefWord(x); });
}

const char* polarityName(int32_t polarity) {
    return polarity > 0 ? "positive" : polarity < 0 ? "negative" : "unknown";
}

}  // namespace

std::string FitName(FitMethod method) {
    return method == FitMethod::refined ? "refined" : "iterated";
}

DesignReport MakeDesignReport(const TuningRun& run, const ProgramValues& values) {
    const ResponseAnalyzer& analyzer = run.responseAnalyzer;
    const EqDesigner& designer = run.eqDesigner;
    DesignReport report;
    report.sampleRate = run.designRate;
    report.delaySamples = analyzer.delaySamples;
    report.polarity = analyzer.polarity();
    report.cutoffHz = analyzer.cutoffHz();
    report.hasTimeSignal = !values.ResponseIsCsv;
    report.loudnessDb = powerDb(designer.measuredLoudness);
    report.gainClampDb = designer.gainClampDb;
    report.levelDb = powerDb(designer.level);
    report.loudnessRatioDb = 2.0 * powerDb(designer.loudnessRatio);
    report.fitDistance = run.iirFitter.bestDistance;
    report.fitPass = run.iirFitter.bestPass + 1;
    report.fitMethod = run.refinedFit ? FitMethod::refined : FitMethod::iterated;
    report.isFinite = run.refinedFit || report.fitPass > 0;
    addSections(run, report);
    report.poleRadii = PoleRadii(report.words);
    report.largestPoleRadius = LargestPoleRadius(report.words);
    report.chain = ChainFiguresOf(report.words, run.designRate);
    addCurves(run, values, report);
    compareCurves(report);
    const TargetRecord& target = run.curves[run.currentCurve];
    report.deviationBeforeDb = deviationDb(report.curves, target, false);
    report.deviationAfterDb = deviationDb(report.curves, target, true);
    addWarnings(designer, report);
    return report;
}

// A kept pass has a finite distance, so that FIR and fit are numbers everywhere, and sections with
// a gain and without a pole on the circle keep that as words.
bool HasPlainlyUsableWords(const IirFitter& fitter) {
    return fitter.bestPass >= 0 && std::ranges::all_of(fitter.sections, fits) &&
           fitter.coefficientWords[0] != 0 && LargestPoleRadius(fitter.coefficientWords) < 1.0;
}

std::string SummaryText(const DesignReport& report) {
    std::string text;
    const auto line = [&](const char* name, const std::string& value) {
        text += fmt::format("  {:18} {}\n", name, value);
    };
    line("sample rate", std::to_string(report.sampleRate) + " Hz");
    if (report.hasTimeSignal) {
        line("delay", std::to_string(report.delaySamples) + " samples");
        line("polarity", polarityName(report.polarity));
        line("cutoff", std::to_string(report.cutoffHz) + " Hz");
    } else {
        line("delay, polarity", "unknown (the response is a table of levels)");
    }
    line("loudness", fmt::format("{:.1f} dB", report.loudnessDb));
    line("gain clamp", fmt::format("{:.0f} dB", report.gainClampDb));
    line("equalized", fmt::format("{:+.2f} dB against the raw response", report.loudnessRatioDb));
    line("off the target", fmt::format("{:.1f} dB RMS as measured, {:.1f} dB RMS equalized",
                                       report.deviationBeforeDb, report.deviationAfterDb));
    const auto apart = [](const Difference& difference) {
        return fmt::format("{:.2f} dB RMS, at most {:.2f} dB (at {:.0f} Hz)", difference.rmsDb,
                           difference.largestDb, difference.largestHz);
    };
    line("fit", FitName(report.fitMethod) + (report.fitMethod == FitMethod::refined
                                                 ? std::string()
                                                 : fmt::format(", pass {} of 50", report.fitPass)));
    line("off the wanted", apart(report.fromWanted));
    line("off the FIR", apart(report.fromFir));
    const ChainFigures& chain = report.chain;
    line("highest gain", fmt::format("{:+.2f} dB at {:.0f} Hz, {:+.2f} dB with the gain clamp",
                                     chain.highestGain.db, chain.highestGain.hertz,
                                     chain.highestGain.db + report.gainClampDb));
    line("inside", fmt::format("{:.1f} dB above the output, behind section {} at {:.0f} Hz",
                               chain.insideDb, chain.insideSection, chain.insideHertz));
    line("rounding noise",
         fmt::format("{:.1f} dB above that of one rounding, at the output", chain.noiseDb));
    line("largest Q", fmt::format("{:.1f}", chain.largestQ));
    line("largest pole", fmt::format("{:.5f} ({})", report.largestPoleRadius,
                                     report.largestPoleRadius < 1.0 ? "stable" : "UNSTABLE"));
    for (const std::string& warning : report.warnings) {
        text += "Warning: " + warning + "\n";
    }
    return text;
}

}  // namespace tonvane
