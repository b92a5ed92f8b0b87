// A host without a screen: keeps what the dialog sets in controls made from the template, notes
// what it asks for, and does what a person would do.
#pragma once

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "graph/cairo/CairoCanvas.h"
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
        bool enabled = true, visible = true, held = false;
        int check = 0, selected = -1, range = 0, position = 0;
        std::vector<std::string> items{}, cells{};
    };

    // Gives the messages to a dialog and starts it, with the controls as the template has them.
    void start(CMainDlg& dialog) {
        events_.clear();
        posted_.clear();
        delivered_.clear();
        controls.clear();
        for (const DialogItem& item : MainDialogTemplate.items) {
            if (item.id != controls::noId) {
                controls[item.id] = {.kind = item.kind, .text = item.text};
            }
        }
        dialog_ = &dialog;
        tell({.message = message::initDialog});
    }

    // What a person does, with the posted messages that follow; the dialog's answer.
    std::optional<std::intptr_t> tell(const DialogMessage& m) {
        const auto result = dialog_->ProcessWindowMessage(m);
        deliver();
        return result;
    }
    void press(int id, int code = notifications::click) {
        tell({.message = message::command, .id = id, .code = code});
    }
    void choose(int id, int index) {
        controls.at(id).selected = index;
        press(id, notifications::selectionChange);
    }
    void click(int id) {  // a check box
        controls.at(id).check = controls.at(id).check == 0 ? 1 : 0;
        press(id);
    }
    void type(int id, const std::string& text) {
        setText(id, text);
        deliver();
    }
    void leave(int id) { press(id, notifications::lostFocus); }  // an edit box loses the focus
    void drag(Point from, Point to) {  // on the plot, from the window's corner
        dialog_->plot.OnMouseMove(from, false);
        dialog_->plot.OnLeftButtonDown(from);
        dialog_->plot.OnMouseMove(to, true);
        dialog_->plot.OnLeftButtonUp();
        deliver();
    }

    // Delivers posted messages.
    void deliver() {
        std::unique_lock lock(mutex_);
        while (!posted_.empty()) {
            const DialogMessage next = posted_.front();
            posted_.pop_front();
            lock.unlock();
            delivered_.insert(next.message);
            send(next);
            lock.lock();
        }
    }

    // Returns when a posted message of this number has been delivered since the last wait for it.
    void await(uint32_t message) {
        for (deliver(); delivered_.erase(message) == 0; deliver()) {
            std::unique_lock lock(mutex_);
            hasPosted_.wait(lock, [&] { return !posted_.empty(); });
        }
    }

    // What the dialog has asked for since the last call.
    std::vector<std::string> take() { return std::exchange(events_, {}); }

    std::map<int, Control> controls;  // the entries of the device menu among them
    int markedDevice = 0;
    int redraws = 0;
    int posts = 0;    // status texts that have not been sent at once
    int timerMs = 0;  // of the timer started last, 0 when it is off
    std::chrono::milliseconds time{1000};
    std::vector<std::string> chosenFiles;  // answers of the file dialog, the next one last
    bool answer = true;                    // of questions

    // DialogHost.
    void setText(int id, const std::string& text) override {
        Control& control = controls[id];
        const bool isEdit =
            control.kind == ControlKind::edit || control.kind == ControlKind::readOnlyEdit;
        if (std::exchange(control.text, text) != text && isEdit) {
            send({.message = message::command, .id = id, .code = notifications::textChange});
        }
    }
    std::string text(int id) const override { return controls.at(id).text; }
    void enable(int id, bool enabled) override { at(id).enabled = enabled; }
    void show(int id, bool visible) override { at(id).visible = visible; }
    void setFocus(int id) override { note("focus " + std::to_string(id)); }
    PixelRectangle rectangle(int id) const override {
        const auto items = MainDialogTemplate.items;
        const DialogRectangle& place = std::ranges::find(items, id, &DialogItem::id)->place;
        return {place.x, place.y, place.x + place.width, place.y + place.height};
    }
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
    void setSliderRange(int id, int max) override { controls[id].range = max; }
    void setSliderPosition(int id, int position) override { controls[id].position = position; }
    int sliderPosition(int id) const override { return controls.at(id).position; }
    bool isTracking(int id) const override { return controls.at(id).held; }
    void setColumns(int id, std::span<const char* const> heads) override {
        controls[id].items.assign(heads.begin(), heads.end());
        controls[id].cells.resize(heads.size());
    }
    void setCell(int id, int i, const std::string& s) override { controls[id].cells.at(i) = s; }
    PlotWindow createPlot(int /*placeId*/) override {
        return {std::make_unique<CairoCanvas>(1, 1, 11.0), 772, 332, 1};
    }
    void invalidatePlot() override { ++redraws; }
    void capturePlotMouse(bool on) override { note(on ? "mouse captured" : "mouse free"); }
    void setPlotCursor(GraphCursor /*cursor*/) override {}
    void drawLine(int fromX, int toX, int y, int width, uint32_t color) override {
        char text[64];
        std::snprintf(text, sizeof text, "line %d-%d y%d w%d %06X", fromX, toX, y, width, color);
        note(text);
    }
    void addDeviceEntry(int id, const std::string& name) override { controls[id].text = name; }
    void enableDeviceEntry(int id, bool enabled) override { enable(id, enabled); }
    void selectDeviceEntry(int id) override { markedDevice = id; }
    void placeWindow() override {}
    void setBusy(bool /*busy*/) override {}
    void startTimer(int /*timerId*/, int milliseconds) override { timerMs = milliseconds; }
    void stopTimer(int /*timerId*/) override { timerMs = 0; }
    std::chrono::steady_clock::time_point now() const override {
        return std::chrono::steady_clock::time_point(time);
    }
    bool showMessage(const MessageBox& box) override {
        note(box.caption + ": " + box.text);
        return answer;
    }
    std::optional<std::string> chooseFile(const FileDialog& dialog) override {
        note(std::string(dialog.form == FileDialog::Form::open ? "open " : "save ") +
             dialog.filterText + " " + dialog.pattern + " " + dialog.extension);
        if (chosenFiles.empty()) {
            return std::nullopt;
        }
        const std::string file = chosenFiles.back();
        chosenFiles.pop_back();
        return file;
    }
    void post(const DialogMessage& m) override {
        const std::lock_guard lock(mutex_);
        posts += m.message == message::status ? 1 : 0;
        posted_.push_back(m);
        hasPosted_.notify_one();
    }
    void send(const DialogMessage& m) override {
        if (dialog_ != nullptr) {
            dialog_->ProcessWindowMessage(m);
        }
    }
    bool isWindow() const override { return dialog_ != nullptr; }
    void destroyWindow() override {
        send({.message = message::destroy});
        dialog_ = nullptr;
        note("gone");
    }
    void postQuit(int exitCode) override { note("quit " + std::to_string(exitCode)); }

  private:
    void note(const std::string& event) { events_.push_back(event); }
    // The control, or one that nobody sees.
    Control& at(int id) { return controls.contains(id) ? controls[id] : nowhere_; }

    CMainDlg* dialog_ = nullptr;
    Control nowhere_;
    std::vector<std::string> events_;
    std::mutex mutex_;
    std::condition_variable hasPosted_;
    std::deque<DialogMessage> posted_;
    std::set<uint32_t> delivered_;
};

}  // namespace tonvane::tests
