#include "ui/RecordingHost.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include "graph/cairo/CairoCanvas.h"
#include "ui/Controls.h"

namespace tonvane::tests {

void RecordingHost::renew() {
    dialog_ = nullptr;
    events_.clear();
    posted_.clear();
    delivered_.clear();
    controls.clear();
    for (const DialogItem& item : MainDialogTemplate.items) {
        if (item.id != controls::noId) {
            controls[item.id] = {.kind = item.kind, .text = item.text};
        }
    }
}

void RecordingHost::start(CMainDlg& dialog) {
    dialog_ = &dialog;
    tell({.message = message::initDialog});
}

std::optional<std::intptr_t> RecordingHost::tell(const DialogMessage& m) {
    const auto result = dialog_->ProcessWindowMessage(m);
    deliver();
    return result;
}

void RecordingHost::press(int id, int code) {
    tell({.message = message::command, .id = id, .code = code});
}

void RecordingHost::choose(int id, int index) {
    controls.at(id).selected = index;
    press(id, notifications::selectionChange);
}

void RecordingHost::type(int id, const std::string& text) {
    setText(id, text);
    deliver();
}

void RecordingHost::leave(int id) {
    press(id, notifications::lostFocus);
}

void RecordingHost::click(int id) {
    controls.at(id).check = controls.at(id).check == 0 ? 1 : 0;
    press(id);
}

void RecordingHost::closeBox() {
    if (!tell({.message = message::close})) {
        press(controls::cancel);
    }
}

void RecordingHost::drag(Point from, Point to) {
    dialog_->plot.OnMouseMove(from);
    dialog_->plot.OnLeftButtonDown(from);
    dialog_->plot.OnMouseMove(to);
    dialog_->plot.OnLeftButtonUp();
    deliver();
}

void RecordingHost::deliver() {
    for (;;) {
        DialogMessage next;
        {
            const std::lock_guard lock(mutex_);
            if (posted_.empty()) {
                return;
            }
            next = posted_.front();
            posted_.pop_front();
        }
        delivered_.insert(next.message);
        send(next);
    }
}

bool RecordingHost::await(uint32_t message) {
    for (int i = 0; i < 3000; ++i) {
        deliver();
        if (delivered_.erase(message) > 0) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

std::vector<std::string> RecordingHost::take() {
    return std::exchange(events_, {});
}

std::set<int> RecordingHost::visible() const {
    std::set<int> ids;
    for (const auto& [id, control] : controls) {
        if (control.visible) {
            ids.insert(id);
        }
    }
    return ids;
}

void RecordingHost::setText(int id, const std::string& text) {
    Control& control = controls[id];
    const bool isEdit =
        control.kind == ControlKind::edit || control.kind == ControlKind::readOnlyEdit;
    if (std::exchange(control.text, text) != text && isEdit) {
        send({.message = message::command, .id = id, .code = notifications::textChange});
    }
}

std::string RecordingHost::text(int id) const {
    return controls.at(id).text;
}

void RecordingHost::enable(int id, bool enabled) {
    if (controls.contains(id)) {
        controls[id].enabled = enabled;
    }
}

void RecordingHost::show(int id, bool visible) {
    if (controls.contains(id)) {
        controls[id].visible = visible;
    }
}

PixelRectangle RecordingHost::rectangle(int id) const {
    for (const DialogItem& item : MainDialogTemplate.items) {
        if (item.id == id) {
            const DialogRectangle& at = item.place;
            return {at.x, at.y, at.x + at.width, at.y + at.height};
        }
    }
    return {};
}

void RecordingHost::setBoldFont(int id, int points) {
    note("bold " + std::to_string(id) + " " + std::to_string(points));
}

void RecordingHost::insertItem(int id, int index, const std::string& text) {
    auto& items = controls[id].items;
    items.insert(index < 0 ? items.end() : items.begin() + index, text);
}

void RecordingHost::deleteItem(int id, int index) {
    auto& items = controls[id].items;
    items.erase(items.begin() + index);
}

int RecordingHost::itemCount(int id) const {
    return static_cast<int>(controls.at(id).items.size());
}

std::string RecordingHost::item(int id, int index) const {
    return controls.at(id).items.at(static_cast<size_t>(index));
}

void RecordingHost::select(int id, int index) {
    controls[id].selected = index < itemCount(id) ? index : -1;
}

void RecordingHost::setColumns(int id, std::span<const char* const> heads) {
    controls[id].items.assign(heads.begin(), heads.end());
    controls[id].cells.resize(heads.size());
}

void RecordingHost::setCell(int id, int column, const std::string& text) {
    controls[id].cells.at(static_cast<size_t>(column)) = text;
}

PlotWindow RecordingHost::createPlot(int /*placeId*/) {
    return {std::make_unique<CairoCanvas>(1, 1, 11.0), 772, 332, 1};
}

void RecordingHost::capturePlotMouse(bool captured) {
    note(captured ? "mouse captured" : "mouse free");
}

void RecordingHost::drawLine(int fromX, int toX, int y, int width, uint32_t color) {
    char text[64];
    std::snprintf(text, sizeof text, "line %d-%d y%d w%d %06X", fromX, toX, y, width, color);
    note(text);
}

void RecordingHost::enableDeviceEntry(int id, bool enabled) {
    if (enabled) {
        disabledDevices.erase(id);
    } else {
        disabledDevices.insert(id);
    }
}

bool RecordingHost::showMessage(const MessageBox& box) {
    note(box.caption + ": " + box.text);
    return answer;
}

std::optional<std::string> RecordingHost::chooseFile(const FileDialog& dialog) {
    note(std::string(dialog.form == FileDialog::Form::open ? "open " : "save ") +
         dialog.filterText + " " + dialog.pattern + " " + dialog.extension);
    if (chosenFiles.empty()) {
        return std::nullopt;
    }
    const std::string file = chosenFiles.back();
    chosenFiles.pop_back();
    return file;
}

void RecordingHost::post(const DialogMessage& m) {
    const std::lock_guard lock(mutex_);
    posted_.push_back(m);
}

void RecordingHost::send(const DialogMessage& m) {
    if (dialog_ != nullptr) {
        dialog_->ProcessWindowMessage(m);
    }
}

void RecordingHost::destroyWindow() {
    send({.message = message::destroy});
    dialog_ = nullptr;
    note("gone");
}

}  // namespace tonvane::tests
