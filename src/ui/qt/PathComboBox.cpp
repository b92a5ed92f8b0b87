#include "ui/qt/PathComboBox.h"

#include <QAbstractItemView>
#include <QStyleOptionComboBox>
#include <QStylePainter>

namespace tonvane {

PathComboBox::PathComboBox(QWidget* parent) : QComboBox(parent) {
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(12);
    view()->setTextElideMode(Qt::ElideLeft);
}

void PathComboBox::paintEvent(QPaintEvent* /*event*/) {
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    const QRect field =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    option.currentText =
        fontMetrics().elidedText(option.currentText, Qt::ElideLeft, field.width() - 4);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

}  // namespace tonvane
