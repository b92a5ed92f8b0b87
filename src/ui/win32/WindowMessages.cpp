#include "ui/win32/WindowMessages.h"

#include <string>

#include "platform/WideText.h"
#include "ui/Controls.h"

namespace tonvane {

namespace {

// An entry of a menu inside the system menu that was chosen by hand arrives as a command on some
// systems and as a system command on others.
DialogMessage commandOf(WPARAM wParam, LPARAM lParam) {
    const int id = LOWORD(wParam);
    const int code = HIWORD(wParam);
    if (lParam == 0 && code == 0 && id >= controls::deviceFirst && id <= controls::deviceLast) {
        return {.message = message::systemCommand, .id = id};
    }
    return {.message = message::command, .id = id, .code = code};
}

std::string firstOf(HDROP drop) {
    std::wstring path(DragQueryFileW(drop, 0, nullptr, 0), L'\0');
    DragQueryFileW(drop, 0, path.data(), static_cast<UINT>(path.size() + 1));
    DragFinish(drop);
    return Narrow(path);
}

}  // namespace

std::optional<DialogMessage> ToDialogMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND:
            return commandOf(wParam, lParam);
        case WM_SYSCOMMAND:
        case WM_TIMER:
            return DialogMessage{.message = message, .id = static_cast<int>(wParam)};
        case WM_HSCROLL:
            return DialogMessage{.message = message,
                                 .id = GetDlgCtrlID(reinterpret_cast<HWND>(lParam)),
                                 .code = LOWORD(wParam)};
        case WM_DROPFILES:
            return DialogMessage{.message = message,
                                 .text = firstOf(reinterpret_cast<HDROP>(wParam))};
        case WM_CLOSE:
        case WM_DESTROY:
            return DialogMessage{.message = message};
        case message::status:
        case message::captureDone:
        case message::curveChanged:
            return DialogMessage{
                .message = message, .id = static_cast<int>(wParam), .lParam = lParam};
        default:
            return std::nullopt;
    }
}

}  // namespace tonvane
