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

#include "ui/qt/Child.h"
#include "ui/qt/PathComboBox.h"

namespace tonvane {

namespace {

QWidget* makeList(QWidget* parent) {
    auto* list = MakeChild<QTableWidget>(1, 0, parent);
    list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list->setSelectionBehavior(QAbstractItemView::SelectRows);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list->setTabKeyNavigation(false);
    list->setWordWrap(false);
    list->verticalHeader()->hide();
    list->verticalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    list->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    list->horizontalHeader()->setHighlightSections(false);
    return list;
}

QWidget* makeButton(ControlKind kind, const QString& text, QWidget* parent) {
    auto* button = MakeChild<QPushButton>(text, parent);
    button->setDefault(kind == ControlKind::defaultButton);
    return button;
}

QWidget* makeEdit(ControlKind kind, const QString& text, QWidget* parent) {
    auto* edit = MakeChild<QLineEdit>(text, parent);
    if (kind == ControlKind::readOnlyEdit) {
        edit->setReadOnly(true);
        QPalette colors = edit->palette();
        colors.setColor(QPalette::Base, colors.color(QPalette::Window));
        edit->setPalette(colors);
    }
    return edit;
}

// A list would keep the menu key to itself, which opens the menu of the window.
QWidget* makeDropList(QComboBox* list) {
    list->setContextMenuPolicy(Qt::NoContextMenu);
    return list;
}

}  // namespace

QWidget* MakeControl(ControlKind kind, const QString& text, QWidget* parent) {
    switch (kind) {
        case ControlKind::groupBox:
            return MakeChild<QGroupBox>(text.trimmed(), parent);
        case ControlKind::text:
            return MakeChild<QLabel>(text, parent);
        case ControlKind::button:
        case ControlKind::defaultButton:
            return makeButton(kind, text, parent);
        case ControlKind::checkBox:
            return MakeChild<QCheckBox>(text, parent);
        case ControlKind::edit:
        case ControlKind::readOnlyEdit:
            return makeEdit(kind, text, parent);
        case ControlKind::dropList:
            return makeDropList(MakeChild<QComboBox>(parent));
        case ControlKind::pathList:
            return makeDropList(MakeChild<PathComboBox>(parent));
        case ControlKind::list:
            return makeList(parent);
        case ControlKind::slider:
            return MakeChild<QSlider>(Qt::Horizontal, parent);
    }
    return MakeChild<QWidget>(parent);
}

}  // namespace tonvane
