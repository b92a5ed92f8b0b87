// The plot in a window: painted from its picture, with the mouse brought to it.
//
// By keyboard: Page Down and Page Up choose a handle, as a press of the mouse does; the arrow keys
// move it, by a 24th of an octave or, with Shift, by 1 Hz, and by 1 dB. It is let go with the key.
// A ring shows the handle of the keyboard from the first such key on until the mouse is used.
#pragma once

#include <QImage>
#include <QWidget>
#include <optional>

#include "graph/HandleKeys.h"
#include "ui/DialogHost.h"

namespace tonvane {

class CMainDlg;

class PlotWidget : public QWidget {
  public:
    explicit PlotWidget(QWidget* parent);

    // The dialog whose plot this shows; it outlives the widget's events. Null for nobody's any
    // more.
    void setDialog(CMainDlg* dialog);

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
    [[nodiscard]] bool takesKey(const QKeyEvent& event);
    void tellOfHandle();
    [[nodiscard]] QSize pixels() const;
    [[nodiscard]] Point inPlot(const QMouseEvent& event) const;

    CMainDlg* dialog_ = nullptr;
    std::optional<HandleKeys> keys_;  // of the dialog's plot
    bool showsRing_ = false;
    QImage image_;
};

}  // namespace tonvane
