#include "ui/win32/PlotPane.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "ui/MainDlg.h"
#include "ui/PlotScale.h"

namespace tonvane {

namespace {

constexpr const wchar_t* className = L"TonvanePlot";
constexpr int referenceUnitHeight = 13;  // pixels of eight dialog units on an ordinary display

PixelRectangle clientOf(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    return {client.left, client.top, client.right, client.bottom};
}

Point mouseAt(LPARAM lParam) {
    return {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
}

}  // namespace

double DisplayScale(HWND dialog) {
    RECT units{0, 0, 4, 8};
    MapDialogRect(dialog, &units);
    return std::max(1.0, static_cast<double>(units.bottom) / referenceUnitHeight);
}

void PlotPane::create(HWND parent, const PixelRectangle& place) {
    WNDCLASSEXW kind{};
    kind.cbSize = sizeof kind;
    kind.style = CS_DBLCLKS;
    kind.lpfnWndProc = procedure;
    kind.hInstance = GetModuleHandleW(nullptr);
    kind.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    kind.lpszClassName = className;
    RegisterClassExW(&kind);  // a second time it fails, and may
    window_ = CreateWindowExW(0, className, L"", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS,
                              place.left, place.top, place.right - place.left,
                              place.bottom - place.top, parent, nullptr, kind.hInstance, this);
    if (window_ == nullptr) {
        throw std::runtime_error("Windows makes no window for the plot.");
    }
}

PlotWindow PlotPane::window() const {
    const PixelRectangle client = clientOf(window_);
    const PlotScale scale = PlotScaleAt(DisplayScale(GetParent(window_)));
    const auto font = static_cast<int32_t>(std::lround(scale.fontPixels));
    return {std::make_unique<GdiCanvas>(1, 1, font), std::max(client.right, 1),
            std::max(client.bottom, 1), scale.unit};
}

void PlotPane::invalidate() {
    InvalidateRect(window_, nullptr, FALSE);
}

void PlotPane::capture(bool captured) {
    if (captured) {
        SetCapture(window_);
    } else {
        ReleaseCapture();
    }
}

void PlotPane::showCursor(GraphCursor cursor) {
    SetCursor(LoadCursorW(nullptr, cursor == GraphCursor::cross ? IDC_CROSS : IDC_SIZEALL));
}

LRESULT CALLBACK PlotPane::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        const auto* made = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(made->lpCreateParams));
    }
    auto* pane = reinterpret_cast<PlotPane*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (pane != nullptr && pane->window_ == window) {
        if (const auto answer = pane->handle(message, wParam, lParam)) {
            return *answer;
        }
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

std::optional<LRESULT> PlotPane::handle(UINT message, WPARAM wParam, LPARAM lParam) {
    if (dialog_ == nullptr) {
        return std::nullopt;
    }
    switch (message) {
        case WM_ERASEBKGND:
            return 1;  // the plot covers everything
        case WM_PAINT:
            paint();
            return 0;
        case WM_SIZE:
            resize(LOWORD(lParam), HIWORD(lParam));
            return 0;
        case WM_LBUTTONDOWN:
            dialog_->plot.OnLeftButtonDown(mouseAt(lParam));
            return 0;
        case WM_MOUSEMOVE:
            // A button that goes up elsewhere takes the capture away; what a program outside sends
            // need not tell of buttons.
            dialog_->plot.OnMouseMove(mouseAt(lParam), true);
            return 0;
        case WM_LBUTTONUP:
        case WM_CAPTURECHANGED:  // another window has taken the mouse
            dialog_->plot.OnLeftButtonUp();
            return 0;
        case WM_LBUTTONDBLCLK:
            return SendMessageW(GetParent(window_), message, wParam, lParam);
        default:
            return std::nullopt;
    }
}

void PlotPane::paint() {
    PAINTSTRUCT work{};
    const HDC device = BeginPaint(window_, &work);
    CCurveGraphWindow& plot = dialog_->plot;
    if (plot.width != 0) {
        if (!image_) {
            image_ = std::make_unique<GdiCanvas>(plot.width, plot.height, 1);
        }
        plot.Paint(*image_);
        image_->copyTo(device);
    }
    EndPaint(window_, &work);
}

void PlotPane::resize(int32_t width, int32_t height) {
    const CCurveGraphWindow& plot = dialog_->plot;
    if (plot.width != 0 && width > 0 && (plot.width != width || plot.height != height)) {
        image_.reset();
        dialog_->ResizePlot(window());
    }
}

}  // namespace tonvane
