// The plot in a window: painted from its picture, with the mouse brought to it.
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

  private:
    [[nodiscard]] QSize pixels() const;
    [[nodiscard]] Point inPlot(const QMouseEvent& event) const;

    CMainDlg* dialog_ = nullptr;
    QImage image_;
};

}  // namespace tonvane
