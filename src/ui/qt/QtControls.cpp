#include "ui/qt/QtControls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QTableWidget>

#include "ui/qt/PathComboBox.h"

namespace tonvane {

namespace {

QWidget* makeList(QWidget* parent) {
    auto* list = new QTableWidget(1, 0, parent);
    list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list->setSelectionBehavior(QAbstractItemView::SelectRows);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list->setTabKeyNavigation(false);
    list->verticalHeader()->hide();
    list->verticalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    list->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    list->horizontalHeader()->setHighlightSections(false);
    return list;
}

QWidget* makeButton(ControlKind kind, const QString& text, QWidget* parent) {
    auto* button = new QPushButton(text, parent);
    button->setDefault(kind == ControlKind::defaultButton);
    return button;
}

QWidget* makeEdit(ControlKind kind, const QString& text, QWidget* parent) {
    auto* edit = new QLineEdit(text, parent);
    edit->setReadOnly(kind == ControlKind::readOnlyEdit);
    return edit;
}

}  // namespace

QWidget* MakeControl(ControlKind kind, const QString& text, QWidget* parent) {
    switch (kind) {
        case ControlKind::groupBox:
            return new QGroupBox(text.trimmed(), parent);
        case ControlKind::text:
            return new QLabel(text, parent);
        case ControlKind::button:
        case ControlKind::defaultButton:
            return makeButton(kind, text, parent);
        case ControlKind::checkBox:
            return new QCheckBox(text, parent);
        case ControlKind::edit:
        case ControlKind::readOnlyEdit:
            return makeEdit(kind, text, parent);
        case ControlKind::dropList:
            return new QComboBox(parent);
        case ControlKind::pathList:
            return new PathComboBox(parent);
        case ControlKind::list:
            return makeList(parent);
        case ControlKind::slider:
            return new QSlider(Qt::Horizontal, parent);
    }
    return new QWidget(parent);
}

}  // namespace tonvane
