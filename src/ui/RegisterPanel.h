// The register panel: the dialog's controls of the amplifier.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "amplifier/WordBytes.h"
#include "tuning/TuningRun.h"
#include "ui/DialogHost.h"

namespace tonvane {

// Works on the link and the amplifier settings of a run; a message blocks while the link waits. A
// host may tell of a text that is set from here as if a person had typed it; that changes nothing.
class RegisterPanel {
  public:
    // Both outlive the panel.
    RegisterPanel(DialogHost& host, TuningRun& run) : host_(host), run_(run) {}

    // The state at the start: not connected, register 0, and the settings in their controls.
    void Start();

    // Handles a message of one of the panel's controls; the answer, nothing for any other.
    std::optional<std::intptr_t> ProcessMessage(const DialogMessage& m);

    // The settings into their check boxes and number boxes.
    void ShowSettings();

    // What the check boxes say into the settings. Nothing is sent.
    void TakeSwitches();

  private:
    using Row = MessageRow<RegisterPanel>;
    static const std::span<const Row> rows;

    void OnConnect(const DialogMessage& m);
    void OnTerm(const DialogMessage& m);
    void OnDump(const DialogMessage& m);
    void OnNumber(const DialogMessage& m);
    void OnWord(const DialogMessage& m);
    void OnRead(const DialogMessage& m);
    void OnSend(const DialogMessage& m);
    void OnSet1(const DialogMessage& m);
    void OnBiq(const DialogMessage& m);
    void OnSplit(const DialogMessage& m);
    void OnDrc(const DialogMessage& m);

    // A box has lost the focus.
    void OnLeaveCrossover(const DialogMessage& m);
    void OnLeaveDrcBox(const DialogMessage& m);

    [[nodiscard]] int32_t currentLength() const;
    void takeNumber(const std::string& text);
    void read();
    void showLinkControls(bool connected);
    void showSwitches();
    void refuse(int id);

    DialogHost& host_;
    TuningRun& run_;
    int32_t currentRegister_ = 0;
    std::string currentRegisterText_ = "0";                 // accepted last
    std::array<std::string, mostRegisterWords> wordTexts_;  // accepted last
};

}  // namespace tonvane
