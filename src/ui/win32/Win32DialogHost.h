// The dialog's host on Windows: a real dialog whose window messages become the dialog's messages.
//
// All controls are windows of their own, the hidden ones too, so that a program outside reaches
// them by their ids. Owns the window, its menu and its plot; for the thread that makes it, but for
// `post` and `isWindow`.
#pragma once

#include <atomic>
#include <map>

#include "ui/DialogHost.h"
#include "ui/DialogTemplate.h"
#include "ui/win32/Handles.h"
#include "ui/win32/PlotPane.h"

namespace tonvane {

class Win32DialogHost : public DialogHost {
  public:
    Win32DialogHost() = default;
    ~Win32DialogHost() override;
    Win32DialogHost(const Win32DialogHost&) = delete;
    Win32DialogHost& operator=(const Win32DialogHost&) = delete;

    // Makes the window and starts the dialog in it; the window is not shown yet. From here on until
    // its destruction the messages go to `dialog`. Throws std::runtime_error where Windows makes no
    // window.
    void create(const DialogTemplate& dialogTemplate, CMainDlg& dialog);

    // Shows the window as SW_SHOWNORMAL or another command of ShowWindow says.
    void showWindow(int command);

    // Runs the message loop to its end; the exit code.
    int run();

    // DialogHost.
    void setText(int id, const std::string& text) override;
    [[nodiscard]] std::string text(int id) const override;
    void enable(int id, bool enabled) override;
    void show(int id, bool visible) override;
    void setFocus(int id) override;
    [[nodiscard]] PixelRectangle rectangle(int id) const override;
    void setBoldFont(int id, int points) override;
    void setCheck(int id, int state) override;
    [[nodiscard]] int check(int id) const override;
    void insertItem(int id, int index, const std::string& text) override;
    void deleteItem(int id, int index) override;
    [[nodiscard]] int itemCount(int id) const override;
    [[nodiscard]] std::string item(int id, int index) const override;
    void select(int id, int index) override;
    [[nodiscard]] int selection(int id) const override;
    void setSliderRange(int id, int max) override;
    void setSliderPosition(int id, int position) override;
    [[nodiscard]] int sliderPosition(int id) const override;
    [[nodiscard]] bool isTracking(int id) const override;
    void setColumns(int id, std::span<const char* const> heads) override;
    void setCell(int id, int column, const std::string& text) override;
    PlotWindow createPlot(int placeId) override;
    void invalidatePlot() override;
    void capturePlotMouse(bool captured) override;
    void setPlotCursor(GraphCursor cursor) override;
    void drawLine(int fromX, int toX, int y, int width, uint32_t color) override;
    void addDeviceEntry(int id, const std::string& name) override;
    void enableDeviceEntry(int id, bool enabled) override;
    void selectDeviceEntry(int id) override;
    void placeWindow() override;
    void setBusy(bool busy) override;
    void startTimer(int timerId, int milliseconds) override;
    void stopTimer(int timerId) override;
    bool showMessage(const MessageBox& box) override;
    std::optional<std::string> chooseFile(const FileDialog& dialog) override;
    void post(const DialogMessage& m) override;
    void send(const DialogMessage& m) override;
    [[nodiscard]] bool isWindow() const override { return window_ != nullptr; }
    void destroyWindow() override;
    void postQuit(int exitCode) override;

  private:
    static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    // Whether the message was answered; if not, the default handling follows.
    bool handle(UINT message, WPARAM wParam, LPARAM lParam);
    bool initialise();
    bool paint();
    bool answer(std::intptr_t result);
    std::optional<std::intptr_t> dispatch(const DialogMessage& m);
    void setUpControls();
    void widenText(const DialogItem& item);
    [[nodiscard]] HWND control(int id) const;
    LRESULT ask(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;

    std::atomic<HWND> window_{nullptr};
    CMainDlg* dialog_ = nullptr;
    const DialogTemplate* template_ = nullptr;
    PlotPane plot_;
    HDC paintDevice_ = nullptr;   // while the dialog paints
    HMENU deviceMenu_ = nullptr;  // belongs to the window's system menu
    int lastDeviceId_ = 0;
    std::map<int, OwnedFont> fonts_;  // of controls that have one of their own
    std::map<int, bool> tracking_;    // sliders by id: whether a person holds them
    HCURSOR cursorBeforeBusy_ = nullptr;
};

}  // namespace tonvane
