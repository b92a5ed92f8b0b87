#include "ui/win32/PathBox.h"

#include <string>

namespace tonvane {

namespace {

constexpr LPARAM lowerThanItems = 4;  // pixels
constexpr int inset = 2;              // pixels on both sides of a text
constexpr WPARAM closedBox = static_cast<WPARAM>(-1);

std::wstring itemText(HWND box, UINT index) {
    const LRESULT length = SendMessageW(box, CB_GETLBTEXTLEN, index, 0);
    if (length <= 0) {
        return {};
    }
    std::wstring text(static_cast<size_t>(length), L'\0');
    SendMessageW(box, CB_GETLBTEXT, index, reinterpret_cast<LPARAM>(text.data()));
    return text;
}

}  // namespace

void SetUpPathBox(HWND box) {
    const LRESULT itemHeight = SendMessageW(box, CB_GETITEMHEIGHT, 0, 0);
    SendMessageW(box, CB_SETITEMHEIGHT, closedBox, itemHeight - lowerThanItems);
}

void PaintPath(const DRAWITEMSTRUCT& item) {
    const bool chosen = (item.itemState & ODS_SELECTED) != 0;
    const HDC device = item.hDC;
    const int saved = SaveDC(device);
    SelectObject(device, GetStockObject(DEFAULT_GUI_FONT));
    SetTextColor(device, GetSysColor(chosen ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    SetBkMode(device, TRANSPARENT);
    FillRect(device, &item.rcItem, GetSysColorBrush(chosen ? COLOR_HIGHLIGHT : COLOR_WINDOW));

    const std::wstring text = item.itemID == static_cast<UINT>(-1)
                                  ? std::wstring()
                                  : itemText(item.hwndItem, item.itemID);
    const int length = static_cast<int>(text.size());
    RECT place = item.rcItem;
    InflateRect(&place, -inset, 0);
    SIZE size{};
    GetTextExtentPoint32W(device, text.c_str(), length, &size);
    const UINT side = size.cx < place.right - place.left ? DT_LEFT : DT_RIGHT;
    DrawTextW(device, text.c_str(), length, &place,
              side | DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
    RestoreDC(device, saved);
    if (chosen) {
        DrawFocusRect(device, &item.rcItem);
    }
}

}  // namespace tonvane
