#include "ui/qt/ProgramIcon.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace tonvane {

namespace {

// On a square of 64: a loudspeaker's curve that is pulled flat, with a handle on it.
void draw(QPainter& painter) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x1F, 0x3A, 0x4D));
    painter.drawRoundedRect(QRectF(2, 2, 60, 60), 12, 12);

    painter.setBrush(Qt::NoBrush);
    QPainterPath response(QPointF(9, 50));
    response.cubicTo({16, 44}, {15, 16}, {24, 16});
    response.cubicTo({34, 16}, {34, 36}, {44, 36});
    response.cubicTo({50, 36}, {50, 30}, {55, 30});
    painter.setPen(QPen(QColor(0x6F, 0xB7, 0xE8), 4.5, Qt::SolidLine, Qt::RoundCap));
    painter.drawPath(response);

    painter.setPen(QPen(QColor(0xF2, 0x9F, 0x3D), 4.5, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(9, 32), QPointF(55, 32));
    painter.setPen(QPen(QColor(0x1F, 0x3A, 0x4D), 2.5));
    painter.setBrush(Qt::white);
    painter.drawEllipse(QPointF(32, 32), 7, 7);
}

}  // namespace

QIcon ProgramIcon() {
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.scale(size / 64.0, size / 64.0);
        draw(painter);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

}  // namespace tonvane
