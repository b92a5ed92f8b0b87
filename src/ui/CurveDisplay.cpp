#include "ui/CurveDisplay.h"

namespace tonvane {

namespace {

constexpr Color plotBackground = 0xBFE9EE;
constexpr Color plotGrid = 0x606060;
constexpr double lowestLevel = -40.0;  // dB
constexpr double highestLevel = 10.0;
constexpr int32_t levelDivisions = 5;
constexpr int32_t levelSubdivisions = 2;

// The index of a curve in curveStyles.
enum Curve : size_t { spec1, mixed, mixed2, spec2, filter, filter2, target, weight };

bool isThere(const TuningRun& run, size_t curve) {
    const bool needsResponse = curve < target;
    const bool needsDesign = curve >= spec2 && curve < target;
    return (!needsResponse || run.responseAnalyzer.valid) &&
           (!needsDesign || !run.eqDesigner.firSpectrum.empty());
}

// The distance of a curve's points in Hz. A table's own curves lie at the spacing of its bins,
// which is not that of the measuring rate when the table ends elsewhere.
double spacing(const TuningRun& run, const ProgramValues& values, size_t curve) {
    const double measuringRate = run.measurement.sampleRate;
    const double filterRate = values.SampleRateTable[run.filterRateIndex];
    const bool isTable = values.ResponseIsCsv;
    const double tablePoint = 8.0 * values.CsvBinSpacing;
    switch (curve) {
        case spec1:
            return isTable ? values.CsvBinSpacing : measuringRate / responseLength;
        case mixed:
        case mixed2:
            return measuringRate / responseLength;
        case spec2:
            return isTable ? tablePoint : measuringRate / designLength;
        case filter:
            return filterRate / designLength;
        case filter2:
            return isTable ? tablePoint * filterRate / measuringRate : filterRate / designLength;
        default:
            return measuringRate / designLength;
    }
}

void drawCurve(const TuningRun& run, const ProgramValues& values, size_t curve,
               CCurveGraphWindow& plot) {
    const ResponseAnalyzer& analyzer = run.responseAnalyzer;
    const EqDesigner& designer = run.eqDesigner;
    const CurveStyle& style = curveStyles[curve];
    const double step = spacing(run, values, curve);
    const auto bins = [&](const ComplexVector& data) {
        plot.DrawCurveFromBins(data, 0.0, step, style.color, style.penWidth);
    };
    const auto powers = [&](const DesignCurve& data) {
        plot.DrawCurveFromValues(data, 0.0, step, style.color, style.penWidth);
    };
    switch (curve) {
        case spec1:
            return bins(analyzer.response.spectrum);
        case mixed:
            return bins(analyzer.firPrediction());
        case mixed2:
            return bins(analyzer.iirPrediction());
        case spec2:
            return powers(designer.measuredPower);
        case filter:
            return bins(designer.firSpectrum);
        case filter2:
            return bins(run.fittedCurve());
        case target:
            return powers(designer.targetPower);
        default:
            return powers(designer.passband);
    }
}

}  // namespace

const std::array<CurveStyle, 8> curveStyles{{
    {&ShownCurves::showSpec1, "response", "System Response, not smoothed", 0x000000, 2},
    {&ShownCurves::showMixed, "through-fir", "System Response through FIR", 0x00C000, 1},
    {&ShownCurves::showMixed2, "through-biquads", "System Response through Biquads", 0x008000, 1},
    {&ShownCurves::showSpec2, "measured", "Measured System Response", 0xFF0000, 2},
    {&ShownCurves::showFilter, "fir", "FIR Counter Response", 0xC000FF, 2},
    {&ShownCurves::showFilter2, "biquads", "Biquad Counter Response", 0x0000FF, 2},
    {&ShownCurves::showTarget, "target", "Target Composite Response", 0xFF008F, 2},
    {&ShownCurves::showWeight, "passband", "Pass-band", 0x80C000, 2},
}};

void SetUpPlot(CCurveGraphWindow& plot) {
    plot.backgroundColor = plotBackground;
    plot.gridColor = plotGrid;
    plot.xAxis.scale = logScale;
    plot.xAxis.labelStyle = 0;
    plot.xAxis.snapToTicks = false;
    plot.yAxis.scale = decibelScale;
    plot.yAxis.labelStyle = 0;
    plot.yAxis.snapToTicks = false;
    plot.yAxis.SetFixedRange(lowestLevel, highestLevel, levelDivisions, levelSubdivisions);
    plot.editingEnabled = true;
}

std::vector<const CurveStyle*> DrawnCurves(const TuningRun& run, const ShownCurves& shown) {
    std::vector<const CurveStyle*> drawn;
    drawn.reserve(curveStyles.size());
    for (size_t curve = 0; curve < curveStyles.size(); ++curve) {
        if (shown.*curveStyles[curve].state != 0 && isThere(run, curve)) {
            drawn.push_back(&curveStyles[curve]);
        }
    }
    return drawn;
}

void RedrawCurves(const TuningRun& run, const ProgramValues& values, const ShownCurves& shown,
                  CCurveGraphWindow& plot) {
    plot.xAxis.SetRange(run.graphLowHz, run.graphHighHz);
    plot.SetRecord(TargetRecord(plot.record));
    plot.DrawGrid();
    for (const CurveStyle* style : DrawnCurves(run, shown)) {
        drawCurve(run, values, style - curveStyles.data(), plot);
    }
    plot.showKnots = shown.showTarget == 1;
    plot.showBandEdges = shown.showWeight == 1;
    plot.DrawHandles();
    plot.Invalidate();
}

void CurveDisplay::ApplyCurveEdit(bool redesign) {
    const TargetRecord edited = plot_.record;
    plot_.SetRecord(edited);
    run_.ApplyCurveEdit(edited, redesign);
    RedrawCurves();
}

}  // namespace tonvane
