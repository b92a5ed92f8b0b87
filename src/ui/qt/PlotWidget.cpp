#include "ui/qt/PlotWidget.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <cmath>

#include "graph/cairo/CairoCanvas.h"
#include "ui/MainDlg.h"
#include "ui/PlotScale.h"

namespace tonvane {

namespace {

constexpr int minWidth = 160;  // room for the margins and some plot
constexpr int minHeight = 80;
const QColor chosenColor(0xE0, 0x50, 0x00);

}  // namespace

PlotWidget::PlotWidget(QWidget* parent) : QWidget(parent) {
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(minWidth, minHeight);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName("Plot of the target curve");
}

void PlotWidget::setDialog(CMainDlg* dialog) {
    dialog_ = dialog;
    keys_.reset();
    if (dialog != nullptr) {
        keys_.emplace(dialog->plot);
    }
}

QSize PlotWidget::pixels() const {
    return (QSizeF(size()) * devicePixelRatioF()).toSize().expandedTo({1, 1});
}

PlotWindow PlotWidget::window() const {
    const QSize size = pixels();
    const PlotScale scale = PlotScaleAt(devicePixelRatioF());
    return {std::make_unique<CairoCanvas>(1, 1, scale.fontPixels), size.width(), size.height(),
            scale.unit};
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
                       static_cast<int32_t>(image_.bytesPerLine() / 4), 1.0);
    dialog_->plot.Paint(canvas);
    QPainter painter(this);
    painter.drawImage(rect(), image_);
    if (hasFocus() && showsRing_ && keys_->chosen() != -1) {
        const CCurveGraphWindow& plot = dialog_->plot;
        const Rectangle& handle = plot.handleRects[static_cast<size_t>(keys_->chosen())];
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
    if (dialog_ == nullptr) {
        return;
    }
    keys_->letGo();
    if (event->button() == Qt::LeftButton) {
        dialog_->plot.OnLeftButtonDown(inPlot(*event));
        if (isHeldByMouse()) {
            keys_->choose(dialog_->plot.dragIndex);
        }
        showsRing_ = false;
        update();
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
    return dialog_ != nullptr && dialog_->plot.dragIndex != -1 && !keys_->areHolding();
}

void PlotWidget::tellOfHandle() {
    if (dialog_ == nullptr || keys_->chosen() == -1) {
        return;
    }
    const int32_t chosen = keys_->chosen();
    const CurvePoint& point = dialog_->plot.record.points[static_cast<size_t>(chosen)];
    const QString hertz = QString::number(point.frequency) + " Hz";
    if (chosen < TargetRecord::knotCount) {
        setAccessibleDescription(
            QString("Knot %1 of 7, %2, %3 dB").arg(chosen + 1).arg(hertz).arg(point.level));
    } else {
        setAccessibleDescription((chosen == TargetRecord::lowEdge ? "Low edge, " : "High edge, ") +
                                 hertz);
    }
    QAccessibleEvent changed(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&changed);
}

// Whether it is a key of the plot's, which has done its work then.
bool PlotWidget::takesKey(const QKeyEvent& event) {
    const bool finely = event.modifiers().testFlag(Qt::ShiftModifier);
    switch (event.key()) {
        case Qt::Key_PageDown:
            keys_->chooseNext(1);
            return true;
        case Qt::Key_PageUp:
            keys_->chooseNext(-1);
            return true;
        case Qt::Key_Left:
            keys_->move(-1, 0, finely);
            return true;
        case Qt::Key_Right:
            keys_->move(1, 0, finely);
            return true;
        case Qt::Key_Up:
            keys_->move(0, 1, finely);
            return true;
        case Qt::Key_Down:
            keys_->move(0, -1, finely);
            return true;
        default:
            return false;
    }
}

void PlotWidget::keyPressEvent(QKeyEvent* event) {
    if (dialog_ == nullptr || isHeldByMouse() || !takesKey(*event)) {
        QWidget::keyPressEvent(event);
        return;
    }
    showsRing_ = true;
    tellOfHandle();
    update();
}

void PlotWidget::keyReleaseEvent(QKeyEvent* event) {
    if (!event->isAutoRepeat() && keys_) {
        keys_->letGo();
    }
    QWidget::keyReleaseEvent(event);
}

void PlotWidget::focusInEvent(QFocusEvent* event) {
    if (keys_ && keys_->chosen() == -1) {
        keys_->choose(-1);
        keys_->chooseNext(1);
    }
    showsRing_ = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    tellOfHandle();
    update();
}

// Whoever has the keyboard now may have the mouse as well.
void PlotWidget::focusOutEvent(QFocusEvent* /*event*/) {
    if (dialog_ != nullptr) {
        keys_->letGo();
        dialog_->plot.OnLeftButtonUp();
    }
    update();
}

}  // namespace tonvane
