// The state of a tuning run and its chain from a response to the files, without a window.
//
// One long-lived object of several hundred kilobytes, made after the transform tables and never
// copied. All operations run on one thread to their end. Errors go to Messages and the run goes on;
// a response that could not be used leaves responseAnalyzer.valid clear.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "amplifier/AmplifierSettings.h"
#include "analysis/ResponseAnalyzer.h"
#include "design/EqDesigner.h"
#include "design/IirFitter.h"
#include "files/AddressConfig.h"
#include "files/CsvTable.h"
#include "files/DesignParameters.h"
#include "link/AmpLink.h"
#include "refine/RefinedFit.h"
#include "signal/MeasurementConfig.h"
#include "tuning/Messages.h"
#include "tuning/ProgramValues.h"

namespace tonvane {

// What a path is good for: one from a calling tool may have lost the case of its letters.
enum class PathCase { mayBeLost, asGiven };

class TuningRun {
  public:
    static constexpr int32_t tapCount = 256;
    static constexpr int32_t sectionCount = 7;
    static constexpr int32_t gainSteps = 13;  // 0 to -12 dB

    // `values` and `messages` outlive the run; `view` may be null. The link starts without a
    // connection; the port is where its server listens.
    TuningRun(ProgramValues& values, Messages& messages, TuningView* view = nullptr,
              uint16_t linkPort = CAmpLink::defaultPort,
              std::unique_ptr<LinkTransport> transport = std::make_unique<TcpTransport>());
    TuningRun(const TuningRun&) = delete;
    TuningRun& operator=(const TuningRun&) = delete;

    // The start of a run: rates, curves and gain clamp from the program values, and the address
    // file of AppDirectory.
    void StartState();

    // Loads and designs the response of ResponseFilePath, if there is one; whether it could be
    // opened.
    bool LoadCommandLineResponse();

    // Both.
    void InitTuningState();

    // Loads a file, designs, and refreshes the view; whether it could be opened. A path in lower
    // case is tried first where the case may have got lost.
    bool OpenResponseFile(const std::string& path, PathCase pathCase = PathCase::mayBeLost);
    void OpenCsvFile(const std::string& path);

    // Reads a speaker response file; false, with everything as it was, if it cannot be opened. The
    // measuring rate becomes the file's.
    bool LoadResponseFile(const std::string& path);

    // Reads a table of frequencies and levels at InputSampleRate. A file that gives no row is told
    // of and leaves no valid response.
    void ImportCsvFile(const std::string& path);

    // Takes a response that has been read: 32768 samples of an impulse response, or the rows of
    // csvTable, in any order.
    void takeImpulse(int32_t sampleRate, std::span<const double> samples);
    void takeCsvTable();

    // The one entry into the design: takes the current curve over and, with a response, designs and
    // programs the amplifier if there is a link.
    void RunDesign();

    // Sends the equalizer group inside the shutdown bracket: the designed sections if amplifier's
    // Biq is on, else unity; nothing inside it without a valid response.
    void ProgramAmplifier();

    // The current curve was edited: takes it over and, with `redesign`, designs.
    void ApplyCurveEdit(const TargetRecord& edited, bool redesign);

    // While a person moves the current curve or the gain clamp: brings the sections near to what
    // RunDesign would give, with `kind` as the kind of the curve, in a few milliseconds. The
    // refined fit goes on from the sections that there are. Nothing is sent or shown. What was
    // followed leaves no trace in the next design.
    void followMove(int32_t kind);

    // Entry 1 to 6 of the rate table becomes every rate.
    void SetInputRate(int32_t tableIndex);

    // The same, and a response of the command line is loaded again.
    void ChangeInputRate(int32_t tableIndex);

    void LoadDesignParameters(const std::string& path);
    std::optional<std::string> SaveDesignParameters(const std::string& path) const;

    // The end of a run: writes the filter file and the target file where the program values name
    // them, after a question if promptOnExit is set. A target file that did not load is kept beside
    // under its name and ".bak"; where it cannot be, it stays as it is.
    void SaveFiltersOnExit();

    // Writes the filter file of a valid response; the reason of a failure. The file of the response
    // is not written over.
    std::optional<std::string> WriteFilterFile();

    void SetStatusLine(int line, const std::string& text, StatusNews news);

    // Five words for each of the seven sections; empty without a valid response.
    [[nodiscard]] std::span<const int32_t> designedSections() const;

    // The sections of the last design as designed and as words, by the fit in use: refinedFit if
    // there is one, else iirFitter. Empty before the first.
    [[nodiscard]] std::span<const Biquad> fittedSections() const;
    [[nodiscard]] std::span<const int32_t> fittedWords() const;

    // Their response with the level drop of the gain clamp, at the points of the design grid.
    [[nodiscard]] const ComplexVector& fittedCurve() const;

    // The gain clamp in dB: minus the selected index.
    [[nodiscard]] double gainClampDb() const { return -gainIndex; }

    int32_t speakerIndex = 0;  // index into SpeakerNames
    int32_t designRate = 0;    // Hz, of the fit
    int32_t graphLowHz = 20;   // range of the plot
    int32_t graphHighHz = 24000;
    std::array<TargetRecord, curveCount> curves{};
    int32_t currentCurve = 0;     // 0 to 9
    bool responseReady = false;   // a response has been loaded or measured
    bool promptOnExit = false;    // ask before saving
    int32_t gainIndex = 0;        // minus the gain clamp in dB; -1 for no selection
    int32_t filterRateIndex = 0;  // into SampleRateTable
    int32_t inputRateIndex = 0;   // 0 to 5: entry of SampleRateTable less one
    std::string StatusLine1;
    std::string StatusLine2;

    ResponseAnalyzer responseAnalyzer;
    CsvTable csvTable;
    EqDesigner eqDesigner;
    IirFitter iirFitter;
    RefinedFitter refinedFitter;

    // Of the last design, if the program values ask for it and it follows the wanted correction no
    // worse than the iterated fit.
    std::optional<RefinedFit> refinedFit;
    MeasurementConfig measurement;
    RegisterAddressConfig registerAddresses;
    AmplifierSettings amplifier;
    CAmpLink ampLink;

  private:
    void DesignAndProgram();
    void design();
    void takeDesignSettings();
    void designTaps();
    void fitTaps();
    void prepareResponse();
    void refine();
    void takeRefined(std::optional<RefinedFit> fit);
    [[nodiscard]] WantedCorrection wantedCorrection() const;
    void finishLoad();
    void selectGain(int64_t index);
    void SaveTargetFile();
    bool keepDamagedTarget();
    [[nodiscard]] int32_t itemOfInputRate() const;

    ProgramValues& values_;
    Messages& messages_;
    TuningView* view_;

    // What eqDesigner is prepared with.
    struct Prepared {
        int64_t load = 0;  // of responseAnalyzer
        int32_t sampleRate = 0;
        bool isTable = false;
        bool operator==(const Prepared&) const = default;
    };
    Prepared prepared_;
    mutable ComplexVector refinedCurve_;  // empty until asked for
};

}  // namespace tonvane
