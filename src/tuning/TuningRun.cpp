#include "tuning/TuningRun.h"

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

#include "amplifier/RegisterGroups.h"
#include "files/ImpulseResponse.h"
#include "files/InputError.h"
#include "files/ResponseFile.h"
#include "link/RegisterWrites.h"
#include "platform/FileAccess.h"

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

    ReadFault fault;
    LoadRegisterAddressConfig(values_.AppDirectory, registerAddresses, &fault);
    if (!fault.reason.empty() && !fault.isMissing) {
        messages_.warning(std::string(RegisterAddressConfig::fileName) +
                          ": cannot be read: " + fault.reason + "; the usual registers are used");
    }
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
    const auto bytes = ReadResponseFile(path, rate, samples);
    if (!bytes) {
        return false;
    }
    if (*bytes < responseFileBytes) {
        messages_.warning(path + ": ends after " + std::to_string(*bytes) + " of " +
                          std::to_string(responseFileBytes) + " bytes; the rest is silence");
    }
    try {
        CheckSpeakerResponse(path, {rate, samples});
    } catch (const InputError& error) {
        messages_.warning(error.what());
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
    if (!csvTable.isWhole) {
        messages_.warning(path + ": not every line is a frequency, a comma and a level; " +
                          std::to_string(csvTable.count) + " rows are made of what was understood");
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
    return responseAnalyzer.valid ? fittedWords() : std::span<const int32_t>();
}

void TuningRun::design() {
    takeDesignSettings();
    if (responseAnalyzer.valid) {
        designTaps();
        fitTaps();
        refine();
    }
}

void TuningRun::takeDesignSettings() {
    eqDesigner.sampleRate = measurement.sampleRate;
    eqDesigner.setTapCount(tapCount);
    eqDesigner.gainClampDb = gainClampDb();
    eqDesigner.gateMs = gateMs;
}

void TuningRun::designTaps() {
    prepareResponse();
    eqDesigner.designFir(values_.SampleRateTable[0]);
    responseAnalyzer.predictFir(eqDesigner.firTaps.first(tapCount), gainClampDb());
}

void TuningRun::fitTaps() {
    const auto taps = eqDesigner.firTaps.first(tapCount);
    iirFitter.configure(designRate, taps, sectionCount, designLength, gainClampDb());
    iirFitter.fit();
    responseAnalyzer.predictIir(iirFitter.numerator[0], iirFitter.denominator[0], gainClampDb());
}

// Once a response: a moved target does not change it.
void TuningRun::prepareResponse() {
    const Prepared wanted{responseAnalyzer.loads, eqDesigner.sampleRate,
                          values_.ResponseIsCsv != 0};
    if (prepared_ == wanted) {
        return;
    }
    prepared_ = wanted;
    const SpectrumBuffer& response = responseAnalyzer.response;
    if (wanted.isTable) {
        eqDesigner.prepareFromSpectrum(response.spectrum);
    } else {
        eqDesigner.prepareFromImpulse(response.time(), responseAnalyzer.delaySamples);
    }
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

void TuningRun::SetStatusLine(int line, const std::string& text, StatusNews news) {
    (line == 1 ? StatusLine1 : StatusLine2) = text;
    messages_.status(line, text, news);
}

}  // namespace tonvane
