// The equalizer's sections as other programs take them: text made from the amplifier's words.
//
// All numbers are the exact values of the 3.23 words, in decimals without an exponent.
#pragma once

#include <span>
#include <string>

#include "amplifier/BiquadWords.h"

namespace tonvane {

// A number in decimals without an exponent, with at least one behind the point; read back it is the
// same double.
std::string DecimalText(double value);

// Lines for Equalizer APO: "Filter: ON IIR Order 2 Coefficients b0 b1 b2 a0 a1 a2" for each
// section. Remarks, a line each, become comments.
std::string FormatEqualizerApo(std::span<const Biquad> sections,
                               std::span<const std::string> remarks);

// A piece of a CamillaDSP configuration: filters of type Biquad with free coefficients and the
// pipeline step that puts them into channel 0. Remarks become comments.
std::string FormatCamillaDsp(std::span<const Biquad> sections,
                             std::span<const std::string> remarks);

// Text for miniDSP's advanced biquad entry: "biquadN," and five lines "b0=...,". The signs of a1
// and a2 are turned; the format knows no comments, and behind the last value stands no comma.
std::string FormatMiniDsp(std::span<const Biquad> sections);

// A head line "section,b0,b1,b2,a1,a2" and a row a section.
std::string FormatSectionCsv(std::span<const Biquad> sections);

// One number a line.
std::string FormatTaps(std::span<const double> taps);

// Rows "frequency,level" of a table that the plain reader takes.
std::string FormatLevelRows(std::span<const double> frequencies, std::span<const double> levels);

}  // namespace tonvane
