#include "SyntheticSpeaker.h"

#include "design/DesignGrid.h"
#include "elementary/Elementary.h"

namespace tonvane::bench {

namespace {

constexpr int32_t onset = 160;
constexpr double twoPi = 6.283185307179586;

struct Resonance {
    double hertz;
    double amplitude;
    double decaySeconds;  // to 1/e
};

// A box resonance, the pass-band of the cone, two of its break-up modes, an edge reflection.
constexpr Resonance resonances[] = {
    {110.0, 0.020, 0.0040},  {450.0, 0.035, 0.0011},   {1600.0, 0.090, 0.00036},
    {4200.0, 0.21, 0.00016}, {5200.0, -0.050, 0.0006}, {9300.0, 0.30, 0.000085},
    {11800.0, 0.08, 0.0005}, {14000.0, 0.18, 0.00006},
};

}  // namespace

const TargetRecord tiltedTarget{{{{90, 2},
                                  {220, 2},
                                  {500, 1},
                                  {1300, 0},
                                  {3000, -1},
                                  {8000, -2},
                                  {18000, -4},
                                  {110, -3},
                                  {16000, -3}}}};

std::vector<double> SyntheticResponse() {
    std::vector<double> response(responseLength);
    for (const Resonance& resonance : resonances) {
        for (int32_t i = onset; i < responseLength; ++i) {
            const double seconds = static_cast<double>(i - onset) / sampleRate;
            const double envelope = elementary::Exp(-seconds / resonance.decaySeconds);
            const double angle = twoPi * resonance.hertz * seconds;
            response[i] += resonance.amplitude * envelope * elementary::SinCos(angle).cosine;
        }
    }
    return response;
}

void DesignTaps(const ResponseAnalyzer& analyzer, EqDesigner& designer) {
    designer.sampleRate = sampleRate;
    designer.setTarget(tiltedTarget, savedCurve);
    designer.setTapCount(tapCount);
    designer.gainClampDb = gainClampDb;
    designer.prepareFromImpulse(analyzer.response.time(), analyzer.delaySamples);
    designer.designFir(sampleRate);
}

void DesignWhole(const ResponseAnalyzer& analyzer, EqDesigner& designer, IirFitter& fitter) {
    DesignTaps(analyzer, designer);
    fitter.configure(sampleRate, designer.firTaps.first(tapCount), sectionCount, designLength,
                     gainClampDb);
    fitter.fit();
}

void DesignForTarget(const TargetRecord& target, EqDesigner& designer, IirFitter& fitter) {
    designer.setTarget(target, savedCurve);
    designer.designFir(sampleRate);
    fitter.configure(sampleRate, designer.firTaps.first(tapCount), sectionCount, designLength,
                     gainClampDb);
    fitter.fit();
}

}  // namespace tonvane::bench
