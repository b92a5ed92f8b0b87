// The plot in a window: painted from its picture, with the mouse brought to it.
//
// By keyboard: Page Down and Page Up choose a handle, the arrow keys move it, by a 24th of an
// octave or, with Shift, by 1 Hz, and by 1 dB. It is let go with the key.
#pragma once

#include <QImage>
#include <QWidget>

#include "ui/DialogHost.h"

namespace tonvane {

class CMainDlg;

class PlotWidget : public QWidget {
  public:
    explicit PlotWidget(QWidget* parent);

    // The dialog whose plot this shows; it outlives the widget's events.
    void setDialog(CMainDlg* dialog) { dialog_ = dialog; }

    // The widget's size as the plot's window.
    [[nodiscard]] PlotWindow window() const;

    void setPlotCursor(GraphCursor cursor);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    [[nodiscard]] bool isHeldByMouse() const;
    [[nodiscard]] bool isShown(int32_t handle) const;
    [[nodiscard]] int32_t nextHandle(int32_t step) const;
    void chooseHandle(int32_t handle);
    void moveHandle(int key, bool finely);
    void letGo();
    void tellOfHandle();
    [[nodiscard]] QSize pixels() const;
    [[nodiscard]] Point inPlot(const QMouseEvent& event) const;

    CMainDlg* dialog_ = nullptr;
    QImage image_;
    int32_t chosen_ = -1;      // handle of the keyboard; -1 while there is none
    bool movesByKey_ = false;  // an arrow key holds it
};

}  // namespace tonvane
