#include "ui/qt/PlotWidget.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "graph/CairoCanvas.h"
#include "ui/MainDlg.h"

namespace tonvane {

namespace {

constexpr double fontPixels = 11.0;
constexpr int leastWidth = 160;  // room for the margins and some plot
constexpr int leastHeight = 80;

}  // namespace

PlotWidget::PlotWidget(QWidget* parent) : QWidget(parent) {
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(leastWidth, leastHeight);
}

QSize PlotWidget::pixels() const {
    return (QSizeF(size()) * devicePixelRatioF()).toSize().expandedTo({1, 1});
}

PlotWindow PlotWidget::window() const {
    const QSize size = pixels();
    const int unit = std::max(1, qRound(devicePixelRatioF()));
    return {std::make_unique<CairoCanvas>(1, 1, fontPixels * unit), size.width(), size.height(),
            unit};
}

void PlotWidget::paintEvent(QPaintEvent* /*event*/) {
    if (dialog_ == nullptr || dialog_->plot.width == 0) {
        return;
    }
    const QSize size = pixels();
    if (dialog_->plot.width != size.width() || dialog_->plot.height != size.height()) {
        dialog_->ResizePlot(window());  // the window has gone to a screen of another density
    }
    if (image_.size() != size) {
        image_ = QImage(size, QImage::Format_RGB32);
    }
    CairoCanvas canvas(reinterpret_cast<uint32_t*>(image_.bits()), size.width(), size.height(),
                       static_cast<int32_t>(image_.bytesPerLine() / 4), fontPixels);
    dialog_->plot.Paint(canvas);
    QPainter(this).drawImage(rect(), image_);
}

void PlotWidget::resizeEvent(QResizeEvent* /*event*/) {
    if (dialog_ != nullptr && dialog_->plot.width != 0) {
        dialog_->ResizePlot(window());
    }
}

Point PlotWidget::inPlot(const QMouseEvent& event) const {
    const QPointF at = event.position() * devicePixelRatioF();
    return {static_cast<int32_t>(std::floor(at.x())), static_cast<int32_t>(std::floor(at.y()))};
}

void PlotWidget::setPlotCursor(GraphCursor cursor) {
    setCursor(cursor == GraphCursor::cross ? Qt::CrossCursor : Qt::SizeAllCursor);
}

void PlotWidget::mousePressEvent(QMouseEvent* event) {
    if (dialog_ != nullptr && event->button() == Qt::LeftButton) {
        dialog_->plot.OnLeftButtonDown(inPlot(*event));
    }
}

void PlotWidget::mouseMoveEvent(QMouseEvent* event) {
    if (dialog_ == nullptr) {
        return;
    }
    if (dialog_->plot.dragIndex == -1) {
        unsetCursor();
    }
    dialog_->plot.OnMouseMove(inPlot(*event));
}

void PlotWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (dialog_ != nullptr && event->button() == Qt::LeftButton) {
        dialog_->plot.OnLeftButtonUp();
    }
}

// Its second click takes up no handle.
void PlotWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    event->ignore();
}

}  // namespace tonvane
