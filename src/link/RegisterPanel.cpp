#include "link/RegisterPanel.h"

#include <charconv>
#include <optional>
#include <utility>

#include "amplifier/RegisterGroups.h"
#include "amplifier/RegisterTable.h"
#include "amplifier/RegisterText.h"
#include "link/PanelControls.h"
#include "link/RegisterWrites.h"

namespace tonvane {

namespace {

// What a number box of a DRC sets.
struct DrcField {
    int32_t DrcSettings::*value;
    int32_t least;
    int32_t most;
};

constexpr std::array<DrcField, 4> drcFields{{{&DrcSettings::thresholdDb, -48, 12},
                                             {&DrcSettings::alphaMs, 1, 5000},
                                             {&DrcSettings::attackMs, 1, 5000},
                                             {&DrcSettings::releaseMs, 1, 5000}}};

constexpr int32_t leastCrossoverHz = 10;
constexpr double crossoverShare = 0.9;  // of the sample rate, at most

// A signed decimal number with nothing behind it; blanks in front are passed over.
std::optional<int32_t> wholeNumber(const std::string& text) {
    const size_t start = std::min(text.find_first_not_of(' '), text.size());
    int32_t value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data() + start, end, value);
    if (error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return value;
}

bool isBetween(const std::optional<int32_t>& value, int32_t least, int32_t most) {
    return value && *value >= least && *value <= most;
}

}  // namespace

RegisterPanel::RegisterPanel(CAmpLink& link, AmplifierSettings& settings, PanelView& view,
                             DesignedSections designed)
    : link_(link), settings_(settings), view_(view), designed_(std::move(designed)) {}

int32_t RegisterPanel::currentLength() const {
    return LookUpRegister(currentRegister_).length;
}

void RegisterPanel::Start() {
    ShowSettings();
    showLinkControls(false);
    view_.setText(controls::registerNumber, currentRegisterText_);
    NumberChanged(currentRegisterText_);
}

void RegisterPanel::showLinkControls(bool connected) {
    view_.enable(controls::connect, !connected);
    view_.enable(controls::term, connected);
    for (int id = controls::linkFirst; id <= controls::linkLast; ++id) {
        view_.enable(id, connected);
    }
}

void RegisterPanel::ShowSettings() {
    showSwitches();
    int box = controls::drcBoxFirst;
    for (const DrcSettings& drc : settings_.drc) {
        for (const DrcField& field : drcFields) {
            view_.setText(box++, std::to_string(drc.*field.value));
        }
    }
    view_.setText(controls::crossover, std::to_string(settings_.crossoverHz));
}

void RegisterPanel::showSwitches() {
    view_.setChecked(controls::biq, settings_.biqEnabled);
    view_.setChecked(controls::split, settings_.splitEnabled);
    for (int32_t i = 0; i < 2; ++i) {
        view_.setChecked(controls::drcFirst + i, settings_.drcEnabled[i]);
    }
}

void RegisterPanel::Connect() {
    view_.status("");
    switch (link_.Connect()) {
        case CAmpLink::Connection::noSocket:
            return;
        case CAmpLink::Connection::refused:
            view_.status("Failed to connect");
            return;
        case CAmpLink::Connection::made:
            break;
    }
    showLinkControls(true);
    link_.TrimOscillator();
    Read();
}

void RegisterPanel::Term() {
    link_.Term();
    showLinkControls(false);
}

void RegisterPanel::NumberChanged(const std::string& text) {
    const auto number = ParseHexDigits(text, 2);
    if (!number) {
        view_.setText(controls::registerNumber, currentRegisterText_);
        return;
    }
    currentRegister_ = static_cast<int32_t>(*number);
    currentRegisterText_ = text;
    const RegisterInfo& row = LookUpRegister(currentRegister_);
    view_.setText(controls::registerLength, std::to_string(row.length));
    view_.setText(controls::registerName, row.name);
}

void RegisterPanel::WordChanged(int32_t word, const std::string& text) {
    const int32_t length = WordLengths(currentLength())[word];
    std::string& stored = wordTexts_[word];
    if (length == 0 || text == stored) {
        return;
    }
    if (ParseHexDigits(text, 2 * static_cast<size_t>(length))) {
        stored = text;
    } else {
        view_.setText(controls::wordFirst + word, stored);
    }
}

void RegisterPanel::Read() {
    std::array<uint8_t, mostRegisterBytes> reply{};
    link_.ReadRegister(currentRegister_, currentLength(), reply);
    size_t offset = 0;
    for (int32_t word = 0; word < mostRegisterWords; ++word) {
        const auto length = static_cast<size_t>(WordLengths(currentLength())[word]);
        wordTexts_[word] = HexGroups(std::span(reply).subspan(offset, length));
        offset += length;
        view_.enable(controls::wordFirst + word, length > 0);
        view_.setText(controls::wordFirst + word, wordTexts_[word]);
    }
}

void RegisterPanel::Send() {
    std::array<int32_t, mostRegisterWords> words{};
    for (size_t i = 0; i < words.size(); ++i) {
        words[i] = static_cast<int32_t>(ParseHexDigits(wordTexts_[i], 8).value_or(0));
    }
    link_.WriteRegister(currentRegister_, words, currentLength());
}

void RegisterPanel::Set1() {
    settings_.biqEnabled = false;
    settings_.splitEnabled = false;
    settings_.drcEnabled = {};
    showSwitches();
    WriteInShutdown(link_, StartValues(designed_()));
}

void RegisterPanel::ClickBiq(bool checked) {
    settings_.biqEnabled = checked;
    WriteInShutdown(link_, EqualizerGroup(checked, designed_()));
}

void RegisterPanel::ClickSplit(bool checked) {
    settings_.splitEnabled = checked;
    WriteInShutdown(link_, CrossoverGroup(settings_));
}

void RegisterPanel::ClickDrc(int32_t index, bool checked) {
    settings_.drcEnabled[index] = checked;
    WriteInShutdown(link_, DrcGroup(settings_));
}

void RegisterPanel::LeaveCrossoverBox(const std::string& text, int32_t designRate) {
    const auto hz = wholeNumber(text);
    if (!isBetween(hz, leastCrossoverHz, static_cast<int32_t>(crossoverShare * designRate))) {
        refuse(controls::crossover);
        return;
    }
    if (*hz != settings_.crossoverHz) {
        settings_.setCrossover(*hz);
        WriteInShutdown(link_, CrossoverGroup(settings_));
    }
}

void RegisterPanel::LeaveDrcBox(int id, const std::string& text) {
    constexpr auto fieldCount = static_cast<int32_t>(drcFields.size());
    const int32_t box = id - controls::drcBoxFirst;
    const int32_t index = box / fieldCount;
    const DrcField& field = drcFields[box % fieldCount];
    const auto value = wholeNumber(text);
    if (!isBetween(value, field.least, field.most)) {
        refuse(id);
        return;
    }
    DrcSettings changed = settings_.drc[index];
    changed.*field.value = *value;
    if (changed == settings_.drc[index]) {
        return;
    }
    settings_.setDrc(changed, index);
    if (settings_.drcEnabled[index]) {
        WriteInShutdown(link_, DrcRegisters(settings_, index));
    }
}

void RegisterPanel::refuse(int id) {
    view_.message("Illegal input (not a number or out of range)");
    ShowSettings();
    view_.focus(id);
}

}  // namespace tonvane
