#include "ui/qt/PlotWidget.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "graph/cairo/CairoCanvas.h"
#include "ui/MainDlg.h"

namespace tonvane {

namespace {

constexpr double fontPixels = 11.0;
constexpr int minWidth = 160;  // room for the margins and some plot
constexpr int minHeight = 80;
constexpr int handleCount = 9;
constexpr double keyRatio = 1.0292;  // a 24th of an octave
const QColor chosenColor(0xE0, 0x50, 0x00);

}  // namespace

PlotWidget::PlotWidget(QWidget* parent) : QWidget(parent) {
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(minWidth, minHeight);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName("Plot of the target curve");
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
    QPainter painter(this);
    painter.drawImage(rect(), image_);
    if (hasFocus() && isShown(chosen_)) {
        const CCurveGraphWindow& plot = dialog_->plot;
        const Rectangle& handle = plot.handleRects[static_cast<size_t>(chosen_)];
        const int unit = plot.xAxis.unit;
        const QRect ring(handle.left + plot.left * unit,
                         handle.top + plot.yAxis.pixels + plot.top * unit,
                         handle.right - handle.left, handle.bottom - handle.top);
        painter.scale(1.0 / devicePixelRatioF(), 1.0 / devicePixelRatioF());
        painter.setPen(QPen(chosenColor, 2.0 * unit));
        painter.drawRect(ring.adjusted(-3 * unit, -3 * unit, 3 * unit, 3 * unit));
    }
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
    letGo();
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
    dialog_->plot.OnMouseMove(inPlot(*event), event->buttons().testFlag(Qt::LeftButton));
}

void PlotWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (dialog_ != nullptr && event->button() == Qt::LeftButton) {
        dialog_->plot.OnLeftButtonUp();
    }
}

// The second click takes up no handle.
void PlotWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    event->ignore();
}

// A menu takes the mouse away from whoever holds a handle with it.
void PlotWidget::contextMenuEvent(QContextMenuEvent* event) {
    event->setAccepted(isHeldByMouse());
}

bool PlotWidget::isHeldByMouse() const {
    return dialog_ != nullptr && dialog_->plot.dragIndex != -1 && !movesByKey_;
}

bool PlotWidget::isShown(int32_t handle) const {
    return dialog_ != nullptr && handle >= 0 &&
           (handle < TargetRecord::knotCount ? dialog_->plot.showKnots
                                             : dialog_->plot.showBandEdges);
}

// The next one that is shown, in the order of the record; the same one if there is no other.
int32_t PlotWidget::nextHandle(int32_t step) const {
    for (int32_t i = 1; i <= handleCount; ++i) {
        const int32_t handle = (chosen_ + step * i + 2 * handleCount) % handleCount;
        if (isShown(handle)) {
            return handle;
        }
    }
    return chosen_;
}

void PlotWidget::chooseHandle(int32_t handle) {
    letGo();
    chosen_ = handle;
    tellOfHandle();
    update();
}

void PlotWidget::tellOfHandle() {
    if (!isShown(chosen_)) {
        return;
    }
    const CurvePoint& point = dialog_->plot.record.points[static_cast<size_t>(chosen_)];
    const QString hertz = QString::number(point.frequency) + " Hz";
    if (chosen_ < TargetRecord::knotCount) {
        setAccessibleDescription(
            QString("Knot %1 of 7, %2, %3 dB").arg(chosen_ + 1).arg(hertz).arg(point.level));
    } else {
        setAccessibleDescription((chosen_ == TargetRecord::lowEdge ? "Low edge, " : "High edge, ") +
                                 hertz);
    }
    QAccessibleEvent changed(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&changed);
}

void PlotWidget::moveHandle(int key, bool finely) {
    CurvePoint to = dialog_->plot.record.points[static_cast<size_t>(chosen_)];
    const double step = finely ? 1.0 : std::max(1.0, to.frequency * (keyRatio - 1.0));
    if (key == Qt::Key_Up || key == Qt::Key_Down) {
        to.level += key == Qt::Key_Up ? 1 : -1;
    } else {
        const double shift = key == Qt::Key_Right ? step : -step;
        to.frequency = static_cast<int32_t>(std::lround(to.frequency + shift));
    }
    movesByKey_ = true;
    dialog_->plot.MoveHandle(chosen_, to);
    tellOfHandle();
}

void PlotWidget::letGo() {
    if (movesByKey_ && dialog_ != nullptr) {
        movesByKey_ = false;
        dialog_->plot.OnLeftButtonUp();
    }
}

void PlotWidget::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (dialog_ == nullptr || isHeldByMouse()) {
        return;
    }
    if (key == Qt::Key_PageDown || key == Qt::Key_PageUp) {
        chooseHandle(nextHandle(key == Qt::Key_PageDown ? 1 : -1));
    } else if (isShown(chosen_) && (key == Qt::Key_Left || key == Qt::Key_Right ||
                                    key == Qt::Key_Up || key == Qt::Key_Down)) {
        moveHandle(key, event->modifiers().testFlag(Qt::ShiftModifier));
    } else {
        QWidget::keyPressEvent(event);
    }
}

void PlotWidget::keyReleaseEvent(QKeyEvent* event) {
    if (!event->isAutoRepeat()) {
        letGo();
    }
    QWidget::keyReleaseEvent(event);
}

void PlotWidget::focusInEvent(QFocusEvent* /*event*/) {
    if (!isShown(chosen_)) {
        chosen_ = -1;
        chosen_ = nextHandle(1);
    }
    tellOfHandle();
    update();
}

// Whoever has the keyboard now may have the mouse as well.
void PlotWidget::focusOutEvent(QFocusEvent* /*event*/) {
    letGo();
    if (dialog_ != nullptr) {
        dialog_->plot.OnLeftButtonUp();
    }
    update();
}

}  // namespace tonvane
