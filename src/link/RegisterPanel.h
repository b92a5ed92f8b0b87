// The register panel: what its controls do, without a window.
#pragma once

#include <array>
#include <functional>
#include <string>

#include "amplifier/AmplifierSettings.h"
#include "amplifier/WordBytes.h"
#include "link/AmpLink.h"

namespace tonvane {

// What the panel shows, by the ids of PanelControls.h.
class PanelView {
  public:
    virtual ~PanelView() = default;

    virtual void setText(int id, const std::string& text) = 0;
    virtual void enable(int id, bool enabled) = 0;
    virtual void setChecked(int id, bool checked) = 0;
    virtual void focus(int id) = 0;

    // A message box without a caption.
    virtual void message(const std::string& text) = 0;

    // The second status line.
    virtual void status(const std::string& text) = 0;
};

// Each operation is what one event of a control does; it blocks while the link waits. Handlers of a
// box take its present text, those of a check box its present state. A view may tell of a text that
// is set from here as if a person had typed it; that changes nothing.
class RegisterPanel {
  public:
    // Five words for each section of the design; empty without a valid response.
    using DesignedSections = std::function<std::span<const int32_t>()>;

    // Link, settings and view outlive the panel.
    RegisterPanel(CAmpLink& link, AmplifierSettings& settings, PanelView& view,
                  DesignedSections designed);

    // The state at the start: not connected, register 0, and the settings in their controls.
    void Start();

    void Connect();
    void Term();

    void NumberChanged(const std::string& text);
    void WordChanged(int32_t word, const std::string& text);  // word: 0 to 4
    void Read();
    void Send();
    void Set1();

    void ClickBiq(bool checked);
    void ClickSplit(bool checked);
    void ClickDrc(int32_t index, bool checked);  // index: 0 or 1

    // A box has lost the focus. designRate (Hz) is that of the run.
    void LeaveCrossoverBox(const std::string& text, int32_t designRate);
    void LeaveDrcBox(int id, const std::string& text);

    // The settings into their check boxes and number boxes.
    void ShowSettings();

  private:
    [[nodiscard]] int32_t currentLength() const;
    void showLinkControls(bool connected);
    void showSwitches();
    void refuse(int id);

    CAmpLink& link_;
    AmplifierSettings& settings_;
    PanelView& view_;
    DesignedSections designed_;
    int32_t currentRegister_ = 0;
    std::string currentRegisterText_ = "0";                 // accepted last
    std::array<std::string, mostRegisterWords> wordTexts_;  // accepted last
};

}  // namespace tonvane
