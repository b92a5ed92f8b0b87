#include "ui/win32/Win32DialogHost.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "platform/WideText.h"
#include "ui/Controls.h"
#include "ui/MainDlg.h"
#include "ui/win32/FileChooser.h"
#include "ui/win32/PathBox.h"
#include "ui/win32/TemplateBytes.h"
#include "ui/win32/WindowMessages.h"

namespace tonvane {

namespace {

constexpr WORD iconId = 128;

constexpr std::array<ACCEL, 3> keys{{{FVIRTKEY | FCONTROL, 'Z', controls::undo},
                                     {FVIRTKEY | FCONTROL, 'Y', controls::redo},
                                     {FVIRTKEY | FCONTROL | FSHIFT, 'Z', controls::redo}}};

// Windows keeps an icon that it shares.
HICON programIcon(int widthMetric, int heightMetric) {
    return static_cast<HICON>(LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(iconId),
                                         IMAGE_ICON, GetSystemMetrics(widthMetric),
                                         GetSystemMetrics(heightMetric), LR_SHARED));
}

}  // namespace

Win32DialogHost::~Win32DialogHost() {
    if (window_ != nullptr) {
        DestroyWindow(window_);
    }
}

void Win32DialogHost::create(const DialogTemplate& dialogTemplate, CMainDlg& dialog) {
    dialog_ = &dialog;
    template_ = &dialogTemplate;
    const std::vector<uint16_t> bytes = TemplateBytes(dialogTemplate);
    const HWND made = CreateDialogIndirectParamW(
        GetModuleHandleW(nullptr), reinterpret_cast<const DLGTEMPLATE*>(bytes.data()), nullptr,
        procedure, reinterpret_cast<LPARAM>(this));
    if (made == nullptr) {
        throw std::runtime_error("Windows makes no window for the dialog.");
    }
}

void Win32DialogHost::showWindow(int command) {
    ShowWindow(window_, command);
    UpdateWindow(window_);
}

int Win32DialogHost::run() {
    auto accelerators = keys;
    const OwnedKeys table(CreateAcceleratorTableW(accelerators.data(), keys.size()));
    MSG m{};
    while (GetMessageW(&m, nullptr, 0, 0) > 0) {
        const HWND window = window_;
        if (window != nullptr && (TranslateAcceleratorW(window, table.get(), &m) != 0 ||
                                  IsDialogMessageW(window, &m) != FALSE)) {
            continue;
        }
        TranslateMessage(&m);
        DispatchMessageW(&m);
    }
    return static_cast<int>(m.wParam);
}

INT_PTR CALLBACK Win32DialogHost::procedure(HWND window, UINT message, WPARAM wParam,
                                            LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, DWLP_USER, lParam);
        reinterpret_cast<Win32DialogHost*>(lParam)->window_ = window;
    }
    auto* host = reinterpret_cast<Win32DialogHost*>(GetWindowLongPtrW(window, DWLP_USER));
    return host != nullptr && host->handle(message, wParam, lParam) ? TRUE : FALSE;
}

bool Win32DialogHost::answer(std::intptr_t result) {
    SetWindowLongPtrW(window_, DWLP_MSGRESULT, static_cast<LONG_PTR>(result));
    return true;
}

bool Win32DialogHost::handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG:
            return initialise();
        case WM_PAINT:
            return paint();
        case WM_DRAWITEM:
            PaintPath(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
            return answer(TRUE);
        case DM_GETDEFID:
            // A default button that nobody sees is not pressed by the Enter key.
            return IsWindowVisible(control(controls::measure)) == FALSE && answer(0);
        default:
            break;
    }
    const auto m = ToDialogMessage(message, wParam, lParam);
    if (!m) {
        return false;
    }
    const auto result = dispatch(*m);
    if (message == WM_DESTROY) {
        plot_.setDialog(nullptr);
        dialog_ = nullptr;
        window_ = nullptr;
        return true;
    }
    return result && answer(*result);
}

bool Win32DialogHost::initialise() {
    setUpControls();
    dispatch({.message = message::initDialog});
    return true;  // the first control that can have the keyboard gets it
}

bool Win32DialogHost::paint() {
    PAINTSTRUCT work{};
    paintDevice_ = BeginPaint(window_, &work);
    dispatch({.message = message::paint});
    EndPaint(window_, &work);
    paintDevice_ = nullptr;
    return true;
}

void Win32DialogHost::drawLine(int fromX, int toX, int y, int width, uint32_t color) {
    if (paintDevice_ == nullptr) {
        return;
    }
    const int scaled = static_cast<int>(width * DisplayScale(window_));
    const OwnedPen pen(CreatePen(PS_SOLID, scaled, color));
    const HGDIOBJ before = SelectObject(paintDevice_, pen.get());
    MoveToEx(paintDevice_, fromX, y, nullptr);
    LineTo(paintDevice_, toX, y);
    SelectObject(paintDevice_, before);
}

std::optional<std::intptr_t> Win32DialogHost::dispatch(const DialogMessage& m) {
    return dialog_ == nullptr ? std::nullopt : dialog_->ProcessWindowMessage(m);
}

void Win32DialogHost::send(const DialogMessage& m) {
    dispatch(m);
}

// Only messages without text and code are posted.
void Win32DialogHost::post(const DialogMessage& m) {
    PostMessageW(window_, m.message, static_cast<WPARAM>(m.id), m.lParam);
}

void Win32DialogHost::destroyWindow() {
    DestroyWindow(window_);
}

void Win32DialogHost::postQuit(int exitCode) {
    PostQuitMessage(exitCode);
}

PlotWindow Win32DialogHost::createPlot(int placeId) {
    if (plot_.handle() == nullptr) {
        plot_.create(window_, rectangle(placeId));
    }
    plot_.setDialog(dialog_);
    return plot_.window();
}

void Win32DialogHost::invalidatePlot() {
    plot_.invalidate();
}

void Win32DialogHost::capturePlotMouse(bool captured) {
    plot_.capture(captured);
}

void Win32DialogHost::setPlotCursor(GraphCursor cursor) {
    PlotPane::showCursor(cursor);
}

void Win32DialogHost::addDeviceEntry(int id, const std::string& name) {
    const HMENU system = GetSystemMenu(window_, FALSE);
    if (system == nullptr) {
        return;
    }
    if (deviceMenu_ == nullptr) {
        OwnedMenu menu(CreatePopupMenu());
        deviceMenu_ = menu.get();
        AppendMenuW(system, MF_SEPARATOR, 0, nullptr);
        AppendMenuW(system, MF_POPUP, reinterpret_cast<UINT_PTR>(menu.release()), L"Wave Device");
    }
    AppendMenuW(deviceMenu_, MF_STRING, static_cast<UINT_PTR>(id), Widen(name).c_str());
    lastDeviceId_ = std::max(lastDeviceId_, id);
}

void Win32DialogHost::enableDeviceEntry(int id, bool enabled) {
    const UINT state = enabled ? MF_ENABLED : MF_GRAYED;
    EnableMenuItem(deviceMenu_, static_cast<UINT>(id), MF_BYCOMMAND | state);
}

void Win32DialogHost::selectDeviceEntry(int id) {
    CheckMenuRadioItem(deviceMenu_, controls::deviceFirst, static_cast<UINT>(lastDeviceId_),
                       static_cast<UINT>(id), MF_BYCOMMAND);
}

// With no owner the screen is the monitor that the window would appear on.
void Win32DialogHost::placeWindow() {
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromWindow(window_, MONITOR_DEFAULTTOPRIMARY), &monitor);
    const RECT& work = monitor.rcWork;
    RECT place{};
    GetWindowRect(window_, &place);
    const LONG left = (work.left + work.right - (place.right - place.left)) / 2;
    const LONG top = (work.top + work.bottom - (place.bottom - place.top)) / 2;
    SetWindowPos(window_, nullptr, std::max(left, work.left), std::max(top, work.top), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    SendMessageW(window_, WM_SETICON, ICON_BIG,
                 reinterpret_cast<LPARAM>(programIcon(SM_CXICON, SM_CYICON)));
    SendMessageW(window_, WM_SETICON, ICON_SMALL,
                 reinterpret_cast<LPARAM>(programIcon(SM_CXSMICON, SM_CYSMICON)));
    DragAcceptFiles(window_, TRUE);
}

void Win32DialogHost::setBusy(bool busy) {
    if (busy) {
        cursorBeforeBusy_ = SetCursor(LoadCursorW(nullptr, IDC_WAIT));
    } else {
        SetCursor(cursorBeforeBusy_);
    }
}

void Win32DialogHost::startTimer(int timerId, int milliseconds) {
    SetTimer(window_, static_cast<UINT_PTR>(timerId), static_cast<UINT>(milliseconds), nullptr);
}

void Win32DialogHost::stopTimer(int timerId) {
    KillTimer(window_, static_cast<UINT_PTR>(timerId));
}

// Errors are nobody's boxes; the others stand before the dialog.
bool Win32DialogHost::showMessage(const MessageBox& box) {
    HWND owner = window_;
    UINT kind = MB_OK;
    if (box.kind == MessageBox::Kind::error) {
        owner = nullptr;
        kind |= MB_ICONSTOP;
    } else if (box.kind == MessageBox::Kind::question) {
        kind = MB_OKCANCEL;
    }
    return MessageBoxW(owner, Widen(box.text).c_str(), Widen(box.caption).c_str(), kind) == IDOK;
}

std::optional<std::string> Win32DialogHost::chooseFile(const FileDialog& dialog) {
    return ChooseFile(dialog);
}

}  // namespace tonvane
