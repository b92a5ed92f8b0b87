// What a person would ask of a finished design.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tuning/FilterFigures.h"
#include "tuning/TuningRun.h"

namespace tonvane {

// How far two curves lie apart, dB.
struct Difference {
    double rmsDb = 0.0;
    double largestDb = 0.0;
    double largestHz = 0.0;  // where the largest lies
};

struct DesignReport {
    int32_t sampleRate = 0;  // Hz
    int32_t delaySamples = 0;
    int32_t polarity = 0;  // +1, -1; 0 for a response without a time signal
    int32_t cutoffHz = 0;
    bool hasTimeSignal = false;  // false for a table: delay, polarity and cutoff are not measured
    double loudnessDb = 0.0;     // weighted level of the raw response
    double gainClampDb = 0.0;
    double levelDb = 0.0;          // level of the target that the search reached
    double loudnessRatioDb = 0.0;  // equalized against raw, before the clamp is taken out
    // RMS deviation of the response from the target between the band edges, each at its own best
    // level: as measured, and through the filter.
    double deviationBeforeDb = 0.0;
    double deviationAfterDb = 0.0;
    FitMethod fitMethod = FitMethod::iterated;  // that the words are of
    // Of the iterated fit's kept pass: squared decimal logs over the grid, and its number, 1 to 50;
    // 0 when none gave a number.
    double fitDistance = 0.0;
    int32_t fitPass = 0;
    Difference fromFir;       // words against the FIR over the grid
    Difference fromWanted;    // words against the wanted correction, before it became the FIR
    Difference quantisation;  // words against the designed sections
    ChainFigures chain;       // of the words, without the level drop of the gain clamp
    double largestPoleRadius = 0.0;   // of the words
    std::vector<double> poleRadii;    // of each section's words
    int32_t wrappedCoefficients = 0;  // beyond the 3.23 range

    std::vector<Biquad> sections;  // as designed
    std::vector<int32_t> words;    // as the amplifier takes them, five a section

    // On the comparison grid, dB. The level drop of the gain clamp is taken out, so that
    // response + filter is the equalized response and lies beside the target.
    struct Curves {
        std::vector<double> frequency;  // Hz
        std::vector<double> target;     // at the level that the search reached
        std::vector<double> measured;   // smoothed response
        std::vector<double> wanted;     // correction, before it became the FIR
        std::vector<double> fir;
        std::vector<double> filter;  // read back from the words
    };
    Curves curves;

    // Sentences for the person, worst first; empty for a design that may be used as it is.
    std::vector<std::string> warnings;

    // Whether every figure that the words come from is a number.
    bool isFinite = false;

    // Whether an amplifier may be given the words.
    [[nodiscard]] bool isUsable() const {
        return isFinite && largestPoleRadius < 1.0 && wrappedCoefficients == 0;
    }
};

// "refined" or "iterated".
std::string FitName(FitMethod method);

// Gathers the report of a run whose design has gone through.
DesignReport MakeDesignReport(const TuningRun& run, const ProgramValues& values);

// Whether the words of a fit are beyond doubt, so that no report has to tell what isUsable says;
// true only where that is. Takes a thousandth of a report's time.
bool HasPlainlyUsableWords(const IirFitter& fitter);

// The report as text of some lines for a terminal.
std::string SummaryText(const DesignReport& report);

}  // namespace tonvane
