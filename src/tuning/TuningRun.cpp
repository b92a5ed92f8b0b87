#include "tuning/TuningRun.h"

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

#include "amplifier/RegisterGroups.h"
#include "files/FilterFile.h"
#include "files/ResponseFile.h"
#include "link/RegisterWrites.h"
#include "platform/FileAccess.h"
#include "platform/System.h"

namespace tonvane {

namespace {

constexpr int32_t gateMs = 250;
constexpr int32_t defaultRateItem = 2;  // 48 kHz

}  // namespace

TuningRun::TuningRun(ProgramValues& values, Messages& messages, TuningView* view, uint16_t linkPort,
                     std::unique_ptr<LinkTransport> transport)
    : ampLink(measurement.socket, linkPort, std::move(transport)),
      values_(values),
      messages_(messages),
      view_(view) {}

void TuningRun::InitTuningState() {
    StartState();
    LoadCommandLineResponse();
}

void TuningRun::StartState() {
    speakerIndex = 0;
    designRate = values_.InputSampleRate;
    values_.SampleRateTable[0] = values_.FilterSampleRate;
    responseReady = false;
    amplifier.reset(designRate);
    filterRateIndex = 0;
    inputRateIndex = itemOfInputRate();
    measurement.sampleRate = designRate;
    eqDesigner.sampleRate = designRate;

    currentCurve = 0;
    curves.fill(values_.DefaultTargetCurve);
    selectGain(std::abs(static_cast<int64_t>(values_.InitialGainClamp)));
    ApplyCurveEdit(curves[0], true);

    LoadRegisterAddressConfig(values_.AppDirectory, registerAddresses);
}

// An index beyond the list leaves it without a selection, which counts as a clamp of +1 dB.
void TuningRun::selectGain(int64_t index) {
    gainIndex = index >= 0 && index < gainSteps ? static_cast<int32_t>(index) : -1;
}

int32_t TuningRun::itemOfInputRate() const {
    const auto items = std::span(values_.SampleRateTable).subspan(1);
    const auto item = std::ranges::find(items, values_.InputSampleRate);
    return item == items.end() ? defaultRateItem : static_cast<int32_t>(item - items.begin());
}

bool TuningRun::LoadCommandLineResponse() {
    if (values_.ResponseFilePath.empty()) {
        return false;
    }
    if (!values_.ResponseIsCsv) {
        return OpenResponseFile(values_.ResponseFilePath);
    }
    OpenCsvFile(values_.ResponseFilePath);
    return true;
}

bool TuningRun::OpenResponseFile(const std::string& path, PathCase pathCase) {
    SetStatusLine(1, "Analyzing Loaded Data ...", StatusNews::sent);
    if (!LoadResponseFile(pathCase == PathCase::asGiven ? path : FindLowerCasePath(path))) {
        messages_.error("Failed to open speaker response file");
        return false;
    }
    finishLoad();
    return true;
}

void TuningRun::OpenCsvFile(const std::string& path) {
    SetStatusLine(1, "Analyzing Loaded Data ...", StatusNews::sent);
    ImportCsvFile(FindLowerCasePath(path));
    finishLoad();
}

void TuningRun::finishLoad() {
    responseReady = true;
    RunDesign();
    if (view_ != nullptr) {
        view_->UpdateResultList();
        view_->RedrawCurves();
    }
    SetStatusLine(1, "", StatusNews::sent);
    SetStatusLine(2, "", StatusNews::sent);
}

bool TuningRun::LoadResponseFile(const std::string& path) {
    std::vector<double> samples(responseFileSamples);
    int32_t rate = 0;
    if (!ReadResponseFile(path, rate, samples)) {
        return false;
    }
    takeImpulse(rate, samples);
    return true;
}

void TuningRun::takeImpulse(int32_t sampleRate, std::span<const double> samples) {
    responseAnalyzer.reset();
    measurement.sampleRate = sampleRate;
    responseAnalyzer.loadImpulse(sampleRate, responseLength, samples);
}

void TuningRun::ImportCsvFile(const std::string& path) {
    responseAnalyzer.reset();
    measurement.sampleRate = values_.InputSampleRate;
    csvTable.allocate();
    if (!ReadCsvRows(path, csvTable)) {
        messages_.error("Failed to process data.");
        return;
    }
    takeCsvTable();
}

void TuningRun::takeCsvTable() {
    responseAnalyzer.reset();
    measurement.sampleRate = values_.InputSampleRate;
    std::vector<double> magnitudes(responseLength);
    SortCsvRows(csvTable);
    values_.CsvBinSpacing = CsvToMagnitudes(csvTable, magnitudes);
    responseAnalyzer.loadMagnitudes(values_.InputSampleRate, responseLength, magnitudes);
}

void TuningRun::RunDesign() {
    eqDesigner.setTarget(curves[currentCurve], values_.TargetCurveKind);
    if (responseReady) {
        DesignAndProgram();
    }
    if (view_ != nullptr) {
        view_->RedrawCurves();
    }
}

void TuningRun::DesignAndProgram() {
    design();
    ProgramAmplifier();
}

void TuningRun::ProgramAmplifier() {
    WriteInShutdown(ampLink, EqualizerGroup(amplifier.biqEnabled, designedSections()));
}

std::span<const int32_t> TuningRun::designedSections() const {
    return responseAnalyzer.valid ? std::span<const int32_t>(iirFitter.coefficientWords)
                                  : std::span<const int32_t>();
}

void TuningRun::design() {
    const double gain = gainClampDb();
    eqDesigner.sampleRate = measurement.sampleRate;
    eqDesigner.setTapCount(tapCount);
    eqDesigner.gainClampDb = gain;
    eqDesigner.gateMs = gateMs;
    if (!responseAnalyzer.valid) {
        return;
    }
    const SpectrumBuffer& response = responseAnalyzer.response;
    if (values_.ResponseIsCsv) {
        eqDesigner.prepareFromSpectrum(response.spectrum);
    } else {
        eqDesigner.prepareFromImpulse(response.time(), responseAnalyzer.delaySamples);
    }
    eqDesigner.designFir(values_.SampleRateTable[0]);
    const auto taps = eqDesigner.firTaps.first(tapCount);
    responseAnalyzer.predictFir(taps, gain);
    iirFitter.configure(designRate, taps, sectionCount, designLength, gain);
    iirFitter.fit();
    responseAnalyzer.predictIir(iirFitter.numerator[0], iirFitter.denominator[0], gain);
}

void TuningRun::ApplyCurveEdit(const TargetRecord& edited, bool redesign) {
    curves[currentCurve] = edited;
    eqDesigner.setTarget(edited, values_.TargetCurveKind);
    if (responseReady && redesign) {
        RunDesign();
    }
}

void TuningRun::ChangeInputRate(int32_t tableIndex) {
    SetInputRate(tableIndex);
    LoadCommandLineResponse();
}

void TuningRun::SetInputRate(int32_t tableIndex) {
    const int32_t rate = values_.SampleRateTable[tableIndex];
    inputRateIndex = tableIndex - 1;
    values_.InputSampleRate = rate;
    values_.FilterSampleRate = rate;
    values_.SampleRateTable[0] = rate;
    designRate = rate;
}

void TuningRun::LoadDesignParameters(const std::string& path) {
    const DesignParameters parameters = LoadDesignParameterFile(path, values_.DefaultTargetCurve);
    currentCurve = parameters.targetCurveIndex;
    curves = parameters.curves;
    selectGain(parameters.gainIndex);
    ApplyCurveEdit(curves[currentCurve], true);
}

std::optional<std::string> TuningRun::SaveDesignParameters(const std::string& path) const {
    return SaveDesignParameterFile(path, {currentCurve, gainIndex, curves});
}

void TuningRun::SaveFiltersOnExit() {
    if (values_.FilterFilePath.empty()) {
        return;
    }
    if (!responseAnalyzer.valid && !csvTable.allocated()) {
        return;
    }
    if (promptOnExit && !messages_.confirm("Do you want to save filters?", "Prompt")) {
        return;
    }
    WriteFilterFile();  // a failure is silent: the calling tool sees that no file has come
    SaveTargetFile();
}

std::optional<std::string> TuningRun::WriteFilterFile() {
    if (!responseAnalyzer.valid) {
        return std::nullopt;
    }
    const std::string text =
        WithSystemLineEnds(FormatFilterFile(iirFitter.coefficientWords, registerAddresses));
    return ReplaceFile(values_.FilterFilePath, text, InPlace::whenFolderRefuses);
}

void TuningRun::SaveTargetFile() {
    if (values_.TargetFilePath.empty()) {
        return;
    }
    const std::string text = WithSystemLineEnds(
        FormatTargetFile(curves[currentCurve], values_.TargetCurveKind, gainIndex));
    if (ReplaceFile(values_.TargetFilePath, text, InPlace::whenFolderRefuses)) {
        messages_.error("Failed to save Target Response data.");
    }
}

void TuningRun::SetStatusLine(int line, const std::string& text, StatusNews news) {
    (line == 1 ? StatusLine1 : StatusLine2) = text;
    messages_.status(line, text, news);
}

}  // namespace tonvane
