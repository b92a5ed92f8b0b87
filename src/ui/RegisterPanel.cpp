#include "ui/RegisterPanel.h"

#include "amplifier/RegisterGroups.h"
#include "amplifier/RegisterTable.h"
#include "amplifier/RegisterText.h"
#include "files/RegisterDump.h"
#include "link/RegisterWrites.h"
#include "platform/FileAccess.h"
#include "platform/System.h"
#include "text/WholeNumbers.h"
#include "ui/Controls.h"

namespace tonvane {

namespace {

// What a number box of a DRC sets.
struct DrcField {
    int32_t DrcSettings::*value;
    int32_t min;
    int32_t max;
};

constexpr std::array<DrcField, 4> drcFields{{{&DrcSettings::thresholdDb, -48, 12},
                                             {&DrcSettings::alphaMs, 1, 5000},
                                             {&DrcSettings::attackMs, 1, 5000},
                                             {&DrcSettings::releaseMs, 1, 5000}}};

constexpr int32_t minCrossoverHz = 10;
constexpr double maxCrossoverShare = 0.9;  // of the sample rate

constexpr FileDialog dumpDialog{FileDialog::Form::open, "dat file (*.dat)", "*.dat", "dat"};

// A decimal number with a sign of either kind or none; blanks around it are passed over.
std::optional<int32_t> wholeNumber(const std::string& text) {
    const size_t start = std::min(text.find_first_not_of(' '), text.size());
    const size_t end = text.find_last_not_of(' ') + 1;
    std::string_view number = std::string_view(text).substr(start, end - std::min(start, end));
    if (number.starts_with('+') && !number.starts_with("+-")) {
        number.remove_prefix(1);
    }
    return ParseWhole<int32_t>(number);
}

bool isBetween(const std::optional<int32_t>& value, int32_t min, int32_t max) {
    return value && *value >= min && *value <= max;
}

}  // namespace

const std::span<const RegisterPanel::Row> RegisterPanel::rows = [] {
    using namespace controls;
    using namespace notifications;
    using P = RegisterPanel;
    constexpr auto command = [](int first, int last, int code, auto handler) {
        return Row{message::command, first, last, code, handler};
    };
    static constexpr std::array table{
        command(connect, connect, anyCode, &P::OnConnect),
        command(term, term, anyCode, &P::OnTerm),
        command(dump, dump, anyCode, &P::OnDump),
        command(registerNumber, registerNumber, textChange, &P::OnNumber),
        command(registerNumber, registerNumber, lostFocus, &P::OnRead),
        command(wordFirst, wordLast, textChange, &P::OnWord),
        command(controls::send, controls::send, anyCode, &P::OnSend),
        command(controls::read, controls::read, anyCode, &P::OnRead),
        command(set1, set1, anyCode, &P::OnSet1),
        command(biq, biq, anyCode, &P::OnBiq),
        command(split, split, anyCode, &P::OnSplit),
        command(drcFirst, drcLast, anyCode, &P::OnDrc),
        command(crossover, crossover, lostFocus, &P::OnLeaveCrossover),
        command(drcBoxFirst, drcBoxLast, lostFocus, &P::OnLeaveDrcBox),
    };
    return std::span<const Row>(table);
}();

std::optional<std::intptr_t> RegisterPanel::ProcessMessage(const DialogMessage& m) {
    return Dispatch(*this, rows, m);
}

int32_t RegisterPanel::currentLength() const {
    return LookUpRegister(currentRegister_).length;
}

void RegisterPanel::Start() {
    ShowSettings();
    showLinkControls(false);
    host_.setText(controls::registerNumber, currentRegisterText_);
    takeNumber(currentRegisterText_);
}

void RegisterPanel::showLinkControls(bool connected) {
    host_.enable(controls::connect, !connected);
    host_.enable(controls::term, connected);
    for (int id = controls::linkFirst; id <= controls::linkLast; ++id) {
        host_.enable(id, connected);
    }
}

void RegisterPanel::ShowSettings() {
    showSwitches();
    int box = controls::drcBoxFirst;
    for (const DrcSettings& drc : run_.amplifier.drc) {
        for (const DrcField& field : drcFields) {
            host_.setText(box++, std::to_string(drc.*field.value));
        }
    }
    host_.setText(controls::crossover, std::to_string(run_.amplifier.crossoverHz));
}

void RegisterPanel::showSwitches() {
    const AmplifierSettings& settings = run_.amplifier;
    host_.setCheck(controls::biq, settings.biqEnabled ? 1 : 0);
    host_.setCheck(controls::split, settings.splitEnabled ? 1 : 0);
    for (int i = 0; i < 2; ++i) {
        host_.setCheck(controls::drcFirst + i, settings.drcEnabled[i] ? 1 : 0);
    }
}

void RegisterPanel::TakeSwitches() {
    AmplifierSettings& settings = run_.amplifier;
    settings.biqEnabled = host_.check(controls::biq) != 0;
    settings.splitEnabled = host_.check(controls::split) != 0;
    for (int i = 0; i < 2; ++i) {
        settings.drcEnabled[i] = host_.check(controls::drcFirst + i) != 0;
    }
}

void RegisterPanel::OnConnect(const DialogMessage& /*m*/) {
    run_.SetStatusLine(2, "", StatusNews::posted);
    switch (run_.ampLink.Connect()) {
        case CAmpLink::Connection::noSocket:
            return;
        case CAmpLink::Connection::refused:
            run_.SetStatusLine(2, "Failed to connect", StatusNews::posted);
            return;
        case CAmpLink::Connection::made:
            break;
    }
    showLinkControls(true);
    run_.ampLink.TrimOscillator();
    read();
}

void RegisterPanel::OnTerm(const DialogMessage& /*m*/) {
    run_.ampLink.Term();
    showLinkControls(false);
}

// A failure is silent, and nothing is read for a file that cannot be written.
void RegisterPanel::OnDump(const DialogMessage& /*m*/) {
    const auto path = host_.chooseFile(dumpDialog);
    if (!path || !OpenFile(*path, "ab")) {
        return;
    }
    const auto readRegister = [&](int32_t reg, std::span<uint8_t> contents) {
        run_.ampLink.ReadRegister(reg, static_cast<int32_t>(contents.size()), contents);
    };
    ReplaceFile(*path, WithSystemLineEnds(FormatRegisterDump(readRegister)),
                InPlace::whenFolderRefuses);
}

void RegisterPanel::OnNumber(const DialogMessage& m) {
    takeNumber(host_.text(m.id));
}

void RegisterPanel::takeNumber(const std::string& text) {
    const auto number = ParseHexDigits(text, 2);
    if (!number) {
        host_.setText(controls::registerNumber, currentRegisterText_);
        return;
    }
    currentRegister_ = static_cast<int32_t>(*number);
    currentRegisterText_ = text;
    const RegisterInfo& row = LookUpRegister(currentRegister_);
    host_.setText(controls::registerLength, std::to_string(row.length));
    host_.setText(controls::registerName, row.name);
}

void RegisterPanel::OnWord(const DialogMessage& m) {
    const int word = m.id - controls::wordFirst;
    const std::string text = host_.text(m.id);
    const int32_t length = WordLengths(currentLength())[word];
    std::string& stored = wordTexts_[word];
    if (length == 0 || text == stored) {
        return;
    }
    if (ParseHexDigits(text, 2 * static_cast<size_t>(length))) {
        stored = text;
    } else {
        host_.setText(m.id, stored);
    }
}

void RegisterPanel::OnRead(const DialogMessage& /*m*/) {
    read();
}

void RegisterPanel::read() {
    std::array<uint8_t, mostRegisterBytes> reply{};
    run_.ampLink.ReadRegister(currentRegister_, currentLength(), reply);
    size_t offset = 0;
    for (int32_t word = 0; word < mostRegisterWords; ++word) {
        const auto length = static_cast<size_t>(WordLengths(currentLength())[word]);
        wordTexts_[word] = HexGroups(std::span(reply).subspan(offset, length));
        offset += length;
        host_.enable(controls::wordFirst + word, length > 0);
        host_.setText(controls::wordFirst + word, wordTexts_[word]);
    }
}

void RegisterPanel::OnSend(const DialogMessage& /*m*/) {
    std::array<int32_t, mostRegisterWords> words{};
    for (size_t i = 0; i < words.size(); ++i) {
        words[i] = static_cast<int32_t>(ParseHexDigits(wordTexts_[i], 8).value_or(0));
    }
    run_.ampLink.WriteRegister(currentRegister_, words, currentLength());
}

void RegisterPanel::OnSet1(const DialogMessage& /*m*/) {
    run_.amplifier.biqEnabled = false;
    run_.amplifier.splitEnabled = false;
    run_.amplifier.drcEnabled = {};
    showSwitches();
    WriteInShutdown(run_.ampLink, StartValues(run_.designedSections()));
}

void RegisterPanel::OnBiq(const DialogMessage& m) {
    run_.amplifier.biqEnabled = host_.check(m.id) != 0;
    run_.ProgramAmplifier();
}

void RegisterPanel::OnSplit(const DialogMessage& m) {
    run_.amplifier.splitEnabled = host_.check(m.id) != 0;
    WriteInShutdown(run_.ampLink, CrossoverGroup(run_.amplifier));
}

void RegisterPanel::OnDrc(const DialogMessage& m) {
    run_.amplifier.drcEnabled[m.id - controls::drcFirst] = host_.check(m.id) != 0;
    WriteInShutdown(run_.ampLink, DrcGroup(run_.amplifier));
}

void RegisterPanel::OnLeaveCrossover(const DialogMessage& m) {
    const auto hz = wholeNumber(host_.text(m.id));
    if (!isBetween(hz, minCrossoverHz, static_cast<int32_t>(maxCrossoverShare * run_.designRate))) {
        refuse(m.id);
        return;
    }
    if (*hz != run_.amplifier.crossoverHz) {
        run_.amplifier.setCrossover(*hz);
        WriteInShutdown(run_.ampLink, CrossoverGroup(run_.amplifier));
    }
}

void RegisterPanel::OnLeaveDrcBox(const DialogMessage& m) {
    constexpr auto fieldCount = static_cast<int>(drcFields.size());
    const int box = m.id - controls::drcBoxFirst;
    const int index = box / fieldCount;
    const DrcField& field = drcFields[box % fieldCount];
    const auto value = wholeNumber(host_.text(m.id));
    if (!isBetween(value, field.min, field.max)) {
        refuse(m.id);
        return;
    }
    AmplifierSettings& settings = run_.amplifier;
    DrcSettings changed = settings.drc[index];
    changed.*field.value = *value;
    if (changed == settings.drc[index]) {
        return;
    }
    settings.setDrc(changed, index);
    if (settings.drcEnabled[index]) {
        WriteInShutdown(run_.ampLink, DrcRegisters(settings, index));
    }
}

void RegisterPanel::refuse(int id) {
    const char* text = "Illegal input (not a number or out of range)";
    host_.showMessage({MessageBox::Kind::message, text, ""});
    ShowSettings();
    host_.setFocus(id);
}

}  // namespace tonvane
