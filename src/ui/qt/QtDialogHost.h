// The dialog's host on Qt: controls are widgets by id, what happens to them becomes messages.
//
// A window makes the widgets, adds them here, attaches the dialog and starts it.
#pragma once

#include <QAbstractButton>
#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QPainter>
#include <QTimer>
#include <QWidget>
#include <atomic>
#include <functional>
#include <map>

#include "ui/DialogHost.h"
#include "ui/qt/PlotWidget.h"

namespace tonvane {

class QtDialogHost : public QObject, public DialogHost {
  public:
    // The window outlives the host's work. With `keepsHidden` controls that the dialog hides stay
    // hidden, else all are in the open.
    QtDialogHost(QWidget& window, bool keepsHidden);

    // Takes a control in; its events become messages from now on.
    void add(int id, QWidget* control);

    // From now on an open list tells of the entry under the mouse, and of its closing.
    void tellOfHover(int id);

    // Where the plot goes: called by createPlot for the rectangle of the place.
    void setPlot(PlotWidget* plot) { plot_ = plot; }

    // From here on until destroyWindow the messages go to the dialog.
    void start(CMainDlg& dialog);

    // A click on a control or a notification of it, as a message.
    void command(int id, int code);

    // What was typed into an edit box is to be taken.
    void leaveEdit(const QObject& edit);

    // The window was asked to close: the message, and what follows it by default.
    void close();

    // Draws what the dialog paints over the window.
    void paint(QPainter& painter);

    [[nodiscard]] QMenu& deviceMenu() { return deviceMenu_; }

    // A button that shows the name of the device in use.
    void setDeviceButton(QAbstractButton* button) { deviceButton_ = button; }

    [[nodiscard]] QWidget* control(int id) const;
    [[nodiscard]] std::vector<int> ids() const;

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
    [[nodiscard]] bool isWindow() const override { return isAlive_; }
    void destroyWindow() override;
    void postQuit(int exitCode) override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void addSlider(int id, QWidget* control);
    void takeNoStrayWheel(QWidget& control);
    std::optional<std::intptr_t> dispatch(const DialogMessage& m);

    QWidget& window_;
    bool keepsHidden_;
    CMainDlg* dialog_ = nullptr;
    std::atomic<bool> isAlive_{false};
    std::map<int, QWidget*> controls_;
    PlotWidget* plot_ = nullptr;
    QPainter* painter_ = nullptr;  // while the dialog paints
    QMenu deviceMenu_;
    QActionGroup deviceGroup_;
    std::map<int, QAction*> deviceEntries_;
    QAbstractButton* deviceButton_ = nullptr;
    std::map<int, std::unique_ptr<QTimer>> timers_;
};

}  // namespace tonvane
