// The example files: one speaker as an impulse response and as a table, targets for it, and an
// address file.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "example-speaker/Room.h"
#include "example-speaker/SpeakerModel.h"

namespace tonvane::example {

constexpr int32_t sampleRate = 48000;     // Hz
constexpr double peakLevel = 0.4;         // largest sample, full scale
constexpr double noiseLevel = 1e-4;       // largest noise sample relative to the peak
constexpr double lowestFrequency = 20.0;  // Hz, first row of the table
constexpr int32_t tableIntervals = 480;   // rows less one, about 47 to the octave

// What a measurement of the speaker in the room gives: responseFileSamples samples at sampleRate,
// band-limited below half the rate, the largest magnitude before noise peakLevel. Also the
// factor from free-field pressure to full scale, so that a table can stand at the same level. The
// transform tables must serve the length.
struct Measurement {
    std::vector<double> samples;
    double scale;
};
Measurement Measure(const Speaker& speaker, const Room& room);

// Rows "frequency,level" in Hz and dB of the free field times `scale`: geometric from 20 Hz to half
// the sample rate, without room, noise and band limit.
std::string FreeFieldTable(const Speaker& speaker, double scale);

// Writes all example files into a folder that exists. False if one cannot be written. The transform
// tables must serve responseFileSamples.
bool WriteExampleFiles(const std::string& folder);

}  // namespace tonvane::example
