// The speaker response file and the analysis of what is in it.
//
// The input is the beginning of a file. The checked reader takes whole files only: an input with
// six or seven bytes behind its last sample is also made into one, with silence behind its samples
// or with its samples again and again.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>

#include "FuzzSupport.h"
#include "analysis/ResponseAnalyzer.h"
#include "files/ResponseFile.h"
#include "transform/FftTables.h"
#include "transform/ResponseShape.h"

namespace tonvane::fuzz {

namespace {

bool sameBits(std::span<const double> a, std::span<const double> b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size_bytes()) == 0;
}

// The input as a whole file: its samples again and again, or once with silence behind them.
std::string wholeFile(std::string_view input, bool repeat) {
    const size_t count = std::min<size_t>(input.size() / sizeof(double), responseFileSamples);
    std::string file(input.substr(0, sizeof(int32_t) + count * sizeof(double)));
    const std::string samples = file.substr(std::min(file.size(), sizeof(int32_t)));
    while (repeat && !samples.empty() && file.size() < responseFileBytes) {
        file += samples;
    }
    file.resize(responseFileBytes);
    return file;
}

void checkShortFile(std::string_view input) {
    const std::string path = ScratchFile(input);
    static const std::vector<double> before(responseFileSamples, 1234.5);
    static std::vector<double> samples;
    samples = before;
    int32_t rate = -1;
    Require(ReadResponseFile(path, rate, samples).has_value(), "a file that is there is read");
    const size_t held = input.size() < 4 ? 0 : (input.size() - 4) / sizeof(double);
    Require(held == 0 || std::memcmp(samples.data(), &input[4], held * sizeof(double)) == 0,
            "the file's samples are taken as they are");
    Require(sameBits(std::span(samples).subspan(held), std::span(before).subspan(held)),
            "samples behind the file's end stay");
    Require(!Accepts([&] { ReadCheckedResponseFile(path); }), "a short file is refused");
}

void checkFigures(ResponseAnalyzer& analyzer, const SpeakerResponse& response, int32_t n) {
    analyzer.reset();
    analyzer.loadImpulse(response.rate, n, response.samples);
    Require(analyzer.valid && analyzer.length == n && analyzer.bins == n / 2 + 1, "it is loaded");
    Require(analyzer.delaySamples >= -onsetLead && analyzer.delaySamples <= n - onsetLead,
            "the onset is a sample, or the length");
    Require(std::abs(analyzer.polarity()) == 1, "the polarity is plus or minus one");
    Require(analyzer.timeMin <= 0.0 && analyzer.timeMax >= 0.0, "the range brackets zero");
}

// The figures of a response that the checked reader has let through, at full length.
void checkUsableFigures(ResponseAnalyzer& analyzer, const SpeakerResponse& response) {
    checkFigures(analyzer, response, responseFileSamples);
    Require(analyzer.delaySamples < responseFileSamples - onsetLead,
            "what is not silent has an onset");
    const double binWidth = static_cast<double>(response.rate) / responseFileSamples;
    Require(analyzer.cutoffHz() > 39.0 - binWidth && analyzer.cutoffHz() <= 400,
            "the cutoff is 40 to 400 Hz, truncated to a bin and to a hertz");
    for (const double degrees : analyzer.phaseDegrees()) {
        Require(std::fabs(degrees) <= 180.0, "the phase is wrapped");
    }
    for (const double score : analyzer.cutoffCurve()) {
        Require(std::isnan(score) || (score >= 0.0 && score < 1.0 + 1e-12),
                "scores are 0 to 1, or none where the band is silent");
    }
}

void checkWholeFile(ResponseAnalyzer& analyzer, std::string_view input, bool repeat) {
    const std::string path = ScratchFile(wholeFile(input, repeat));
    static SpeakerResponse plain{0, std::vector<double>(responseFileSamples)};
    Require(ReadResponseFile(path, plain.rate, plain.samples).has_value(), "a whole file is read");
    checkFigures(analyzer, plain, 1024);

    SpeakerResponse checked{};
    if (!Accepts([&] { checked = ReadCheckedResponseFile(path); })) {
        return;
    }
    Require(checked.rate >= 8000 && checked.rate <= 192000, "the rate is a usable one");
    Require(checked.rate == plain.rate && sameBits(checked.samples, plain.samples),
            "both readers read the same");
    Require(WriteResponseFile(path, checked.rate, checked.samples), "the file is written");
    int32_t rate = 0;
    Require(ReadResponseFile(path, rate, plain.samples).has_value(), "the written file is read");
    Require(rate == checked.rate && sameBits(checked.samples, plain.samples),
            "a written response comes back bit for bit");
    const bool isCheap = checked.rate >= 32000;  // the cutoff search grows as 1/rate squared
    if (isCheap || HashOf(input) % 16 == 0) {
        checkUsableFigures(analyzer, checked);
    }
}

}  // namespace

}  // namespace tonvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace tonvane;
    using namespace tonvane::fuzz;
    static const auto analyzer = [] {
        InitFftTables(responseFileSamples);
        return std::make_unique<ResponseAnalyzer>();
    }();
    const std::string_view input = TextOf(data, size);
    checkShortFile(input);
    const size_t odd = (input.size() + sizeof(double) - sizeof(int32_t)) % sizeof(double);
    if (odd >= 6) {
        checkWholeFile(*analyzer, input, odd == 7);
    }
    return 0;
}
