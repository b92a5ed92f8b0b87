// The plot's window: a child of the dialog that paints the plot and brings it the mouse.
//
// A double click takes up no handle and goes to the dialog.
#pragma once

#include "graph/GraphHost.h"
#include "ui/DialogHost.h"
#include "ui/win32/GdiCanvas.h"
#include "ui/win32/WindowsApi.h"

namespace tonvane {

class CMainDlg;

class PlotPane {
  public:
    PlotPane() = default;
    PlotPane(const PlotPane&) = delete;
    PlotPane& operator=(const PlotPane&) = delete;

    // Makes the window, which goes with its parent.
    void create(HWND parent, const PixelRectangle& place);

    // Whose plot this is; null for nobody's any more.
    void setDialog(CMainDlg* dialog) { dialog_ = dialog; }

    [[nodiscard]] PlotWindow window() const;
    [[nodiscard]] HWND handle() const { return window_; }

    void invalidate();
    void capture(bool captured);
    static void showCursor(GraphCursor cursor);

  private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    std::optional<LRESULT> handle(UINT message, WPARAM wParam, LPARAM lParam);
    void paint();
    void resize(int32_t width, int32_t height);

    HWND window_ = nullptr;
    CMainDlg* dialog_ = nullptr;
    std::unique_ptr<GdiCanvas> image_;  // of the window's size
};

// How many pixels of this dialog's screen make one of an ordinary display, not below 1.
double DisplayScale(HWND dialog);

}  // namespace tonvane
