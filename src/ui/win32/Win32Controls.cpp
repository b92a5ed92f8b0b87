// The controls of the dialog by their ids.
#include <algorithm>

#include "platform/WideText.h"
#include "ui/Controls.h"
#include "ui/win32/PathBox.h"
#include "ui/win32/Win32DialogHost.h"

namespace tonvane {

namespace {

constexpr int pointsPerInch = 72;
constexpr UINT_PTR trackingSubclass = 1;
constexpr UINT_PTR wheelSubclass = 2;

// Keeps a flag that says whether the left button holds the slider.
LRESULT CALLBACK trackButton(HWND slider, UINT message, WPARAM wParam, LPARAM lParam,
                             UINT_PTR /*id*/, DWORD_PTR flag) {
    if (message == WM_LBUTTONDOWN || message == WM_LBUTTONUP) {
        *reinterpret_cast<bool*>(flag) = message == WM_LBUTTONDOWN;
    } else if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(slider, trackButton, trackingSubclass);
    }
    return DefSubclassProc(slider, message, wParam, lParam);
}

bool isOver(HWND control, LPARAM mouse) {
    RECT place{};
    GetWindowRect(control, &place);
    return PtInRect(&place, {GET_X_LPARAM(mouse), GET_Y_LPARAM(mouse)}) != FALSE;
}

// Keeps the wheel away from a control that has not got the keyboard and, since some systems send it
// to whoever has, from one that the mouse is not over. An open list has a window of its own.
LRESULT CALLBACK ignoreStrayWheel(HWND control, UINT message, WPARAM wParam, LPARAM lParam,
                                  UINT_PTR /*id*/, DWORD_PTR /*data*/) {
    if (message == WM_MOUSEWHEEL &&
        (GetFocus() != control ||
         (!isOver(control, lParam) && SendMessageW(control, CB_GETDROPPEDSTATE, 0, 0) == FALSE))) {
        return 0;
    }
    if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(control, ignoreStrayWheel, wheelSubclass);
    }
    return DefSubclassProc(control, message, wParam, lParam);
}

}  // namespace

HWND Win32DialogHost::control(int id) const {
    return id == controls::dialog ? nullptr : GetDlgItem(window_, id);
}

LRESULT Win32DialogHost::ask(int id, UINT message, WPARAM wParam, LPARAM lParam) const {
    const HWND window = control(id);
    return window == nullptr ? 0 : SendMessageW(window, message, wParam, lParam);
}

// Lets a text have the width that it needs, where the dialog has room for it.
void Win32DialogHost::widenText(const DialogItem& item) {
    const HWND window = control(item.id);
    const std::wstring text = Widen(item.text);
    const HDC device = GetDC(window);
    const HGDIOBJ before = SelectObject(device, reinterpret_cast<HFONT>(ask(item.id, WM_GETFONT)));
    SIZE needed{};
    GetTextExtentPoint32W(device, text.c_str(), static_cast<int>(text.size()), &needed);
    SelectObject(device, before);
    ReleaseDC(window, device);
    RECT limit{0, 0, RightLimit(*template_, item), 0};
    MapDialogRect(window_, &limit);
    const PixelRectangle own = rectangle(item.id);
    const int width =
        std::min(static_cast<int>(needed.cx), static_cast<int>(limit.right) - own.left);
    if (width > own.right - own.left) {
        SetWindowPos(window, nullptr, 0, 0, width, own.bottom - own.top,
                     SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

void Win32DialogHost::setUpControls() {
    for (const DialogItem& item : template_->items) {
        const HWND window = control(item.id);
        if (item.kind == ControlKind::text && item.place.width > 0) {
            widenText(item);
        }
        if (item.kind == ControlKind::dropList || item.kind == ControlKind::pathList ||
            item.kind == ControlKind::slider) {
            SetWindowSubclass(window, ignoreStrayWheel, wheelSubclass, 0);
        }
        if (item.kind == ControlKind::pathList) {
            SetUpPathBox(window);
        } else if (item.kind == ControlKind::slider) {
            SetWindowSubclass(window, trackButton, trackingSubclass,
                              reinterpret_cast<DWORD_PTR>(&tracking_[item.id]));
        }
    }
}

void Win32DialogHost::setText(int id, const std::string& text) {
    if (const HWND window = control(id)) {
        SetWindowTextW(window, Widen(text).c_str());
        UpdateWindow(window);  // before whatever comes next takes its time
    }
}

std::string Win32DialogHost::text(int id) const {
    const HWND window = control(id);
    if (window == nullptr) {
        return {};
    }
    std::wstring text(static_cast<size_t>(GetWindowTextLengthW(window)), L'\0');
    const int length = GetWindowTextW(window, text.data(), static_cast<int>(text.size() + 1));
    text.resize(static_cast<size_t>(length));
    return Narrow(text);
}

void Win32DialogHost::enable(int id, bool enabled) {
    const HWND window = control(id);
    if (window == nullptr) {
        return;
    }
    if (!enabled && GetFocus() == window) {
        SetFocus(window_);  // a disabled one would keep the keys to itself
    }
    EnableWindow(window, enabled ? TRUE : FALSE);
}

void Win32DialogHost::show(int id, bool visible) {
    if (const HWND window = control(id)) {
        ShowWindow(window, visible ? SW_SHOW : SW_HIDE);
    }
}

void Win32DialogHost::setFocus(int id) {
    const HWND window = id == controls::dialog ? window_.load() : control(id);
    if (window != nullptr) {
        SetFocus(window);
    }
}

PixelRectangle Win32DialogHost::rectangle(int id) const {
    RECT place{};
    if (const HWND window = control(id)) {
        GetWindowRect(window, &place);
        MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&place), 2);
    }
    return {place.left, place.top, place.right, place.bottom};
}

void Win32DialogHost::setBoldFont(int id, int points) {
    LOGFONTW font{};
    const auto own = reinterpret_cast<HFONT>(ask(id, WM_GETFONT));
    if (own == nullptr || GetObjectW(own, sizeof font, &font) == 0) {
        return;
    }
    const HDC screen = GetDC(window_);
    font.lfHeight = -MulDiv(points, GetDeviceCaps(screen, LOGPIXELSY), pointsPerInch);
    ReleaseDC(window_, screen);
    font.lfWeight = FW_BOLD;
    OwnedFont bold(CreateFontIndirectW(&font));
    ask(id, WM_SETFONT, reinterpret_cast<WPARAM>(bold.get()), TRUE);
    fonts_[id] = std::move(bold);
}

void Win32DialogHost::setCheck(int id, int state) {
    const auto style = static_cast<WPARAM>(state == 2 ? BS_AUTO3STATE : BS_AUTOCHECKBOX);
    ask(id, BM_SETSTYLE, style, TRUE);
    ask(id, BM_SETCHECK, static_cast<WPARAM>(state));
}

int Win32DialogHost::check(int id) const {
    return static_cast<int>(ask(id, BM_GETCHECK));
}

void Win32DialogHost::insertItem(int id, int index, const std::string& text) {
    ask(id, CB_INSERTSTRING, static_cast<WPARAM>(index),
        reinterpret_cast<LPARAM>(Widen(text).c_str()));
}

void Win32DialogHost::deleteItem(int id, int index) {
    ask(id, CB_DELETESTRING, static_cast<WPARAM>(index));
}

int Win32DialogHost::itemCount(int id) const {
    return static_cast<int>(std::max<LRESULT>(ask(id, CB_GETCOUNT), 0));
}

std::string Win32DialogHost::item(int id, int index) const {
    const LRESULT length = ask(id, CB_GETLBTEXTLEN, static_cast<WPARAM>(index));
    if (length <= 0) {
        return {};
    }
    std::wstring text(static_cast<size_t>(length), L'\0');
    ask(id, CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
    return Narrow(text);
}

void Win32DialogHost::select(int id, int index) {
    ask(id, CB_SETCURSEL, static_cast<WPARAM>(index));
}

int Win32DialogHost::selection(int id) const {
    return control(id) == nullptr ? -1 : static_cast<int>(ask(id, CB_GETCURSEL));
}

void Win32DialogHost::setSliderRange(int id, int max) {
    ask(id, TBM_SETRANGEMAX, TRUE, std::max(max, 0));
}

void Win32DialogHost::setSliderPosition(int id, int position) {
    ask(id, TBM_SETPOS, TRUE, position);
}

int Win32DialogHost::sliderPosition(int id) const {
    return static_cast<int>(ask(id, TBM_GETPOS));
}

bool Win32DialogHost::isTracking(int id) const {
    const auto slider = tracking_.find(id);
    return slider != tracking_.end() && slider->second;
}

void Win32DialogHost::setColumns(int id, std::span<const char* const> heads) {
    const HWND list = control(id);
    if (list == nullptr) {
        return;
    }
    ListView_SetExtendedListViewStyle(list, LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
    RECT client{};
    GetClientRect(list, &client);
    const int count = static_cast<int>(heads.size());
    const int width = static_cast<int>(client.right) / std::max(count, 1);
    for (int i = 0; i < count; ++i) {
        std::wstring head = Widen(heads[static_cast<size_t>(i)]);
        LVCOLUMNW column{};
        column.mask = LVCF_FMT | LVCF_TEXT | LVCF_WIDTH;
        column.fmt = LVCFMT_CENTER;
        column.cx = i + 1 < count ? width : static_cast<int>(client.right) - width * (count - 1);
        column.pszText = head.data();
        ask(id, LVM_INSERTCOLUMNW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&column));
    }
    LVITEMW row{};
    row.mask = LVIF_STATE;
    row.state = row.stateMask = LVIS_FOCUSED;
    ask(id, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&row));
}

void Win32DialogHost::setCell(int id, int column, const std::string& text) {
    std::wstring wide = Widen(text);
    LVITEMW cell{};
    cell.iSubItem = column;
    cell.pszText = wide.data();
    ask(id, LVM_SETITEMTEXTW, 0, reinterpret_cast<LPARAM>(&cell));
}

}  // namespace tonvane
