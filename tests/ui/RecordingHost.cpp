#include "ui/RecordingHost.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "graph/cairo/CairoCanvas.h"

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

void RecordingHost::choose(int id, int index) {
    controls.at(id).selected = index;
    press(id, notifications::selectionChange);
}

void RecordingHost::type(int id, const std::string& text) {
    setText(id, text);
    deliver();
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

PixelRectangle RecordingHost::rectangle(int id) const {
    for (const DialogItem& item : MainDialogTemplate.items) {
        if (item.id == id) {
            const DialogRectangle& at = item.place;
            return {at.x, at.y, at.x + at.width, at.y + at.height};
        }
    }
    return {};
}

PlotWindow RecordingHost::createPlot(int /*placeId*/) {
    return {std::make_unique<CairoCanvas>(1, 1, 11.0), 772, 332, 1};
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
