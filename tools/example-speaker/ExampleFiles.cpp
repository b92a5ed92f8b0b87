#include "example-speaker/ExampleFiles.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <numbers>
#include <span>

#include <fmt/core.h>

#include "design/TargetRecord.h"
#include "elementary/Elementary.h"
#include "files/AddressConfig.h"
#include "files/ResponseFile.h"
#include "files/TargetFile.h"
#include "platform/FileAccess.h"
#include "signal/NoiseGenerator.h"
#include "transform/SpectrumBuffer.h"

namespace tonvane::example {

namespace {

constexpr double halfRate = sampleRate / 2.0;

// The low-pass of a converter: 1 up to 20 kHz, half a cosine down to 0 at half the rate.
double bandLimit(double f) {
    constexpr double passband = 20000.0;
    if (f <= passband) {
        return 1.0;
    }
    const double share = (f - passband) / (halfRate - passband);
    return 0.5 + 0.5 * elementary::SinCos(std::numbers::pi * share).cosine;
}

void addNoise(std::span<double> samples, double level) {
    NoiseGenerator generator(1);
    for (double& sample : samples) {
        sample += level * (2.0 * generator.next() / NoiseGenerator::maximum - 1.0);
    }
}

TargetRecord withKnots(const std::array<CurvePoint, TargetRecord::knotCount>& knots) {
    TargetRecord record = BuiltInTargetCurve;
    std::ranges::copy(knots, record.points.begin());
    return record;
}

std::string flatTarget() {
    return FormatTargetFile(BuiltInTargetCurve, zeroCurve, 6);
}

// Bass as the box can give it, treble falling gently as it does in a living room.
std::string warmTarget() {
    return FormatTargetFile(
        withKnots({{{80, 3}, {180, 3}, {450, 1}, {1200, 0}, {3200, -1}, {8000, -2}, {18000, -4}}}),
        userCurve, 6);
}

// An edited curve: less of the presence range.
std::string savedTarget() {
    return FormatTargetFile(
        withKnots({{{75, 1}, {160, 0}, {400, 1}, {1000, 0}, {3000, -2}, {7000, 0}, {17000, -2}}}),
        savedCurve, 3);
}

constexpr const char* addressText = "address = 29,2A,2B,2C,2D,2E,2F\noutput_format = 4\n";

}  // namespace

Measurement Measure(const Speaker& speaker, const Room& room) {
    const FreeField freeField(speaker);
    SpectrumBuffer response;
    response.resize(responseFileSamples);
    for (int32_t k = 0; k < response.bins; ++k) {
        const double f = k * halfRate / (response.bins - 1);
        const auto arriving = DirectSound(room, f) + Reflections(room, f);
        response.spectrum[k] = bandLimit(f) * elementary::Product(freeField.at(f), arriving);
    }
    response.inverse();

    const auto magnitude = [](double sample) { return std::fabs(sample); };
    const double peak = magnitude(std::ranges::max(response.time(), {}, magnitude));
    Measurement result{{response.time().begin(), response.time().end()},
                       peakLevel * responseFileSamples / peak};
    for (double& sample : result.samples) {
        sample *= peakLevel / peak;
    }
    addNoise(result.samples, noiseLevel * peakLevel);
    return result;
}

std::string FreeFieldTable(const Speaker& speaker, double scale) {
    const FreeField freeField(speaker);
    std::string text;
    for (int32_t row = 0; row <= tableIntervals; ++row) {
        const double exponent = static_cast<double>(row) / tableIntervals;
        const double f =
            row == tableIntervals
                ? halfRate
                : lowestFrequency * elementary::Pow(halfRate / lowestFrequency, exponent);
        const double magnitude = scale * elementary::Magnitude(freeField.at(f));
        text += fmt::format("{:.8g},{:.6f}\n", f, 20.0 * elementary::Log10(magnitude));
    }
    return text;
}

bool WriteExampleFiles(const std::string& folder) {
    const Speaker speaker = ExampleSpeaker();
    const Measurement measurement = Measure(speaker, ExampleRoom());
    const auto in = [&](const char* name) {
        return (std::filesystem::path(folder) / name).string();
    };
    const auto writeText = [&](const char* name, const std::string& text) {
        return !ReplaceFile(in(name), text);
    };
    return WriteResponseFile(in("small-speaker.qsr"), sampleRate, measurement.samples) &&
           writeText("small-speaker.csv", FreeFieldTable(speaker, measurement.scale)) &&
           writeText("target-flat.txt", flatTarget()) &&
           writeText("target-warm.txt", warmTarget()) &&
           writeText("target-saved.txt", savedTarget()) &&
           writeText(RegisterAddressConfig::fileName, addressText);
}

}  // namespace tonvane::example
