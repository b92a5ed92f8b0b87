// A host without a screen: keeps what the dialog sets in controls made from the template, notes
// what it asks for, and does what a person would do.
#pragma once

#include <deque>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "ui/Controls.h"
#include "ui/DialogHost.h"
#include "ui/DialogTemplate.h"
#include "ui/MainDlg.h"

namespace tonvane::tests {

class RecordingHost : public DialogHost {
  public:
    struct Control {
        ControlKind kind{};
        std::string text;
        bool enabled = true;
        bool visible = true;
        bool held = false;
        int check = 0;
        int selected = -1;
        int range = 0;
        int position = 0;
        std::vector<std::string> items{};
        std::vector<std::string> cells{};
    };

    RecordingHost() { renew(); }

    // As before the start.
    void renew();

    // Gives the messages to a dialog and starts it.
    void start(CMainDlg& dialog);

    // A person's doings, with the posted messages that follow; the dialog's answer.
    std::optional<std::intptr_t> tell(const DialogMessage& m);
    void press(int id, int code = 0) {
        tell({.message = message::command, .id = id, .code = code});
    }
    void choose(int id, int index);
    void type(int id, const std::string& text);
    void leave(int id) { press(id, notifications::lostFocus); }  // an edit box loses the focus
    void click(int id);                                          // a check box
    void closeBox();
    void drag(Point from, Point to);  // on the plot, from the window's corner

    // Delivers posted messages; waits for a posted message of this number, which may have come
    // since the last wait for it.
    void deliver();
    bool await(uint32_t message);

    // What the dialog has asked for since the last call.
    std::vector<std::string> take() { return std::exchange(events_, {}); }

    std::map<int, Control> controls;
    std::map<int, std::string> devices;
    std::set<int> disabledDevices;
    int markedDevice = 0;
    int redraws = 0;
    int timerMs = 0;  // of the player's timer, 0 when it is off
    std::set<int> visible() const;
    std::vector<std::string> chosenFiles;  // answers of the file dialog, the next one last
    bool answer = true;                    // of questions

    // DialogHost.
    void setText(int id, const std::string& text) override;
    std::string text(int id) const override { return controls.at(id).text; }
    void enable(int id, bool enabled) override { at(id).enabled = enabled; }
    void show(int id, bool visible) override { at(id).visible = visible; }
    void setFocus(int id) override { note("focus " + std::to_string(id)); }
    PixelRectangle rectangle(int id) const override;
    void setBoldFont(int id, int points) override {
        note("bold " + std::to_string(id) + " " + std::to_string(points));
    }
    void setCheck(int id, int state) override { controls[id].check = state; }
    int check(int id) const override { return controls.at(id).check; }
    void insertItem(int id, int index, const std::string& text) override {
        auto& items = controls[id].items;
        items.insert(index < 0 ? items.end() : items.begin() + index, text);
    }
    void deleteItem(int id, int index) override {
        controls[id].items.erase(controls[id].items.begin() + index);
    }
    int itemCount(int id) const override { return static_cast<int>(controls.at(id).items.size()); }
    std::string item(int id, int i) const override { return controls.at(id).items.at(i); }
    void select(int id, int i) override { controls[id].selected = i < itemCount(id) ? i : -1; }
    int selection(int id) const override { return controls.at(id).selected; }
    void setSliderRange(int id, int most) override { controls[id].range = most; }
    int sliderRange(int id) const override { return controls.at(id).range; }
    void setSliderPosition(int id, int position) override { controls[id].position = position; }
    int sliderPosition(int id) const override { return controls.at(id).position; }
    bool isTracking(int id) const override { return controls.at(id).held; }
    void setColumns(int id, std::span<const char* const> heads) override {
        controls[id].items.assign(heads.begin(), heads.end());
        controls[id].cells.resize(heads.size());
    }
    void setCell(int id, int i, const std::string& s) override { controls[id].cells.at(i) = s; }
    PlotWindow createPlot(int placeId) override;
    void invalidatePlot() override { ++redraws; }
    void capturePlotMouse(bool on) override { note(on ? "mouse captured" : "mouse free"); }
    void setPlotCursor(GraphCursor /*cursor*/) override {}
    void drawLine(int fromX, int toX, int y, int width, uint32_t color) override;
    void addDeviceEntry(int id, const std::string& name) override { devices[id] = name; }
    void enableDeviceEntry(int id, bool enabled) override;
    void selectDeviceEntry(int id) override { markedDevice = id; }
    void placeWindow() override {}
    void setBusy(bool /*busy*/) override {}
    void startTimer(int /*timerId*/, int milliseconds) override { timerMs = milliseconds; }
    void stopTimer(int /*timerId*/) override { timerMs = 0; }
    bool showMessage(const MessageBox& box) override;
    std::optional<std::string> chooseFile(const FileDialog& dialog) override;
    void post(const DialogMessage& m) override;
    void send(const DialogMessage& m) override;
    bool isWindow() const override { return dialog_ != nullptr; }
    void destroyWindow() override;
    void postQuit(int exitCode) override { note("quit " + std::to_string(exitCode)); }

  private:
    void note(const std::string& event) { events_.push_back(event); }
    // The control, or one that nobody sees.
    Control& at(int id) { return controls.contains(id) ? controls[id] : nowhere_; }

    CMainDlg* dialog_ = nullptr;
    Control nowhere_;
    std::vector<std::string> events_;
    std::mutex mutex_;
    std::deque<DialogMessage> posted_;
    std::set<uint32_t> delivered_;
};

}  // namespace tonvane::tests
