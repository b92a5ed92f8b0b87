// The values that the whole program shares: made by the entry, passed by reference.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "files/TargetFile.h"

namespace tonvane {

// How the biquads of a design are found: by fifty passes of least squares against the FIR's taps
// (IirFitter.h), or grown and polished against the wanted correction (RefinedFit.h).
enum class FitMethod { iterated, refined };

struct ProgramValues {
    int32_t InputSampleRate = 48000;   // Hz; of measurements and of tables
    int32_t FilterSampleRate = 48000;  // Hz; becomes entry 0 of the rate table
    bool ResponseIsCsv = true;         // false: an impulse response, designed from the time domain

    // Hz. Entry 0 is the current output rate, the others are the rates to choose from.
    std::array<int32_t, 7> SampleRateTable{48000, 32000, 44100, 48000, 88000, 96000, 192000};

    double CsvBinSpacing = 0.0;  // Hz per bin of the last table's spectrum

    std::string AppDirectory;          // the working directory at start, with a slash behind it
    std::string FilterFilePath;        // where the filter file goes; empty for none
    std::string ResponseFilePath;      // the response of the command line; empty for none
    std::string TargetFilePath;        // the target file of the command line; empty for none
    bool TargetFileIsDamaged = false;  // it did not load: what it holds outlives its next writing

    // What every curve starts from and Reset goes back to, the kind of all curves, and the gain
    // clamp in dB at the start.
    TargetRecord DefaultTargetCurve = BuiltInTargetCurve;
    int32_t TargetCurveKind = zeroCurve;
    int32_t InitialGainClamp = 0;

    FitMethod fitMethod = FitMethod::iterated;
    bool followsMouse = false;  // the dialog designs while a handle moves, not at its end alone
};

// Names of the measured positions.
constexpr std::array<const char*, 5> SpeakerNames{"LTop", "RTop", "LBot", "RBot", "(Noise)"};

// The working directory followed by a slash; where the system does not tell it, a relative path to
// it.
std::string WorkingDirectory();

}  // namespace tonvane
