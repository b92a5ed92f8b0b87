// The controls of the dialog by their ids.
#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QFocusEvent>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QSlider>
#include <QTableWidget>

#include "ui/Controls.h"
#include "ui/qt/ControlTexts.h"
#include "ui/qt/QtDialogHost.h"

namespace tonvane {

namespace {

constexpr const char* idProperty = "controlId";  // of edit boxes
constexpr const char* textProperty = "text";     // of labels, buttons and edit boxes
constexpr int thumbTrack = 5;                    // scroll code of a slider that is being dragged

}  // namespace

QWidget* QtDialogHost::control(int id) const {
    const auto found = controls_.find(id);
    return found == controls_.end() ? nullptr : found->second;
}

std::vector<int> QtDialogHost::ids() const {
    std::vector<int> all;
    all.reserve(controls_.size());
    for (const auto& entry : controls_) {
        all.push_back(entry.first);
    }
    return all;
}

void QtDialogHost::add(int id, QWidget* widget) {
    controls_[id] = widget;
    DescribeControl(id, *widget);
    if (auto* edit = qobject_cast<QLineEdit*>(widget)) {
        connect(edit, &QLineEdit::textChanged, this,
                [this, id] { command(id, notifications::textChange); });
        edit->installEventFilter(this);
        edit->setProperty(idProperty, id);
    } else if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
        connect(button, &QAbstractButton::clicked, this,
                [this, id] { command(id, notifications::click); });
    } else if (auto* list = qobject_cast<QComboBox*>(widget)) {
        connect(list, &QComboBox::activated, this,
                [this, id] { command(id, notifications::selectionChange); });
        takeNoStrayWheel(*list);
    } else {
        addSlider(id, widget);
    }
}

void QtDialogHost::tellOfHover(int id) {
    auto* list = qobject_cast<QComboBox*>(control(id));
    if (list == nullptr) {
        return;
    }
    connect(list, &QComboBox::highlighted, this, [this, id](int index) {
        send(
            {.message = message::command, .id = id, .code = notifications::hover, .lParam = index});
    });
    list->view()->setProperty(idProperty, id);
    list->view()->installEventFilter(this);
}

void QtDialogHost::addSlider(int id, QWidget* widget) {
    auto* slider = qobject_cast<QSlider*>(widget);
    if (slider == nullptr) {
        return;
    }
    const auto moved = [this, id](int code) {
        send({.message = message::sliderMoved, .id = id, .code = code});
    };
    connect(slider, &QSlider::valueChanged, this, [slider, moved] {
        moved(slider->isSliderDown() ? thumbTrack : notifications::endTrack);
    });
    connect(slider, &QSlider::sliderReleased, this, [moved] { moved(notifications::endTrack); });
    takeNoStrayWheel(*slider);
}

// The wheel works on the control that has the keyboard, wherever the mouse is on its way to.
void QtDialogHost::takeNoStrayWheel(QWidget& widget) {
    widget.setFocusPolicy(Qt::StrongFocus);
    widget.installEventFilter(this);
}

// A menu that opens over an edit box takes nothing away from it.
bool QtDialogHost::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Wheel) {
        const auto* widget = qobject_cast<QWidget*>(watched);
        event->setAccepted(widget != nullptr && widget->hasFocus());
        return !event->isAccepted();
    }
    if (event->type() == QEvent::Hide && qobject_cast<QAbstractItemView*>(watched) != nullptr) {
        // Behind the selection, which is told of when the list has gone.
        post({.message = message::command,
              .id = watched->property(idProperty).toInt(),
              .code = notifications::closeUp});
        return false;
    }
    if (event->type() == QEvent::FocusOut && qobject_cast<QLineEdit*>(watched) != nullptr &&
        static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason) {
        leaveEdit(*watched);
    }
    return false;
}

void QtDialogHost::leaveEdit(const QObject& edit) {
    command(edit.property(idProperty).toInt(), notifications::lostFocus);
}

void QtDialogHost::setText(int id, const std::string& text) {
    if (QWidget* widget = control(id)) {
        widget->setProperty(textProperty, QString::fromStdString(text));
        if (qobject_cast<QLabel*>(widget) != nullptr) {
            widget->repaint();  // before whatever comes next takes its time
        }
    }
}

std::string QtDialogHost::text(int id) const {
    const QWidget* widget = control(id);
    return widget == nullptr ? std::string()
                             : widget->property(textProperty).toString().toStdString();
}

void QtDialogHost::enable(int id, bool enabled) {
    QWidget* widget = control(id);
    if (widget == nullptr) {
        return;
    }
    if (!enabled && widget->hasFocus()) {
        window_.setFocus();  // else the next box in the row would get what is typed
    }
    widget->setEnabled(enabled);
}

void QtDialogHost::show(int id, bool visible) {
    if (QWidget* widget = control(id); widget != nullptr && keepsHidden_) {
        widget->setVisible(visible);
    }
}

void QtDialogHost::setFocus(int id) {
    if (id == controls::dialog) {
        window_.setFocus();
    } else if (QWidget* widget = control(id)) {
        widget->setFocus();
    }
}

PixelRectangle QtDialogHost::rectangle(int id) const {
    const QWidget* widget = control(id);
    if (widget == nullptr) {
        return {};
    }
    const QPoint corner = widget->mapTo(&window_, QPoint(0, 0));
    return {corner.x(), corner.y(), corner.x() + widget->width(), corner.y() + widget->height()};
}

void QtDialogHost::setBoldFont(int id, int points) {
    if (QWidget* widget = control(id)) {
        QFont font = widget->font();
        font.setBold(true);
        font.setPointSize(points);
        widget->setFont(font);
    }
}

void QtDialogHost::setCheck(int id, int state) {
    if (auto* box = qobject_cast<QCheckBox*>(control(id))) {
        box->setTristate(state == 2);
        box->setCheckState(state == 1   ? Qt::Checked
                           : state == 2 ? Qt::PartiallyChecked
                                        : Qt::Unchecked);
    }
}

int QtDialogHost::check(int id) const {
    const auto* box = qobject_cast<QCheckBox*>(control(id));
    if (box == nullptr) {
        return 0;
    }
    return box->checkState() == Qt::Checked ? 1 : box->checkState() == Qt::PartiallyChecked ? 2 : 0;
}

void QtDialogHost::insertItem(int id, int index, const std::string& text) {
    if (auto* list = qobject_cast<QComboBox*>(control(id))) {
        list->insertItem(index < 0 ? list->count() : index, QString::fromStdString(text));
    }
}

void QtDialogHost::deleteItem(int id, int index) {
    if (auto* list = qobject_cast<QComboBox*>(control(id))) {
        list->removeItem(index);
    }
}

int QtDialogHost::itemCount(int id) const {
    const auto* list = qobject_cast<QComboBox*>(control(id));
    return list == nullptr ? 0 : list->count();
}

std::string QtDialogHost::item(int id, int index) const {
    const auto* list = qobject_cast<QComboBox*>(control(id));
    return list == nullptr ? std::string() : list->itemText(index).toStdString();
}

void QtDialogHost::select(int id, int index) {
    if (auto* list = qobject_cast<QComboBox*>(control(id))) {
        list->setCurrentIndex(index < list->count() ? index : -1);
    }
}

int QtDialogHost::selection(int id) const {
    const auto* list = qobject_cast<QComboBox*>(control(id));
    return list == nullptr ? -1 : list->currentIndex();
}

void QtDialogHost::setSliderRange(int id, int max) {
    if (auto* slider = qobject_cast<QSlider*>(control(id))) {
        const QSignalBlocker quiet(slider);
        slider->setRange(0, std::max(max, 0));
    }
}

void QtDialogHost::setSliderPosition(int id, int position) {
    if (auto* slider = qobject_cast<QSlider*>(control(id))) {
        const QSignalBlocker quiet(slider);
        slider->setValue(position);
    }
}

int QtDialogHost::sliderPosition(int id) const {
    const auto* slider = qobject_cast<QSlider*>(control(id));
    return slider == nullptr ? 0 : slider->value();
}

bool QtDialogHost::isTracking(int id) const {
    const auto* slider = qobject_cast<QSlider*>(control(id));
    return slider != nullptr && slider->isSliderDown();
}

void QtDialogHost::setColumns(int id, std::span<const char* const> heads) {
    auto* list = qobject_cast<QTableWidget*>(control(id));
    if (list == nullptr) {
        return;
    }
    QStringList names;
    for (const char* head : heads) {
        names << QString::fromUtf8(head);
    }
    list->setColumnCount(static_cast<int>(names.size()));
    list->setHorizontalHeaderLabels(names);
}

void QtDialogHost::setCell(int id, int column, const std::string& text) {
    if (auto* list = qobject_cast<QTableWidget*>(control(id))) {
        auto cell = std::make_unique<QTableWidgetItem>(QString::fromStdString(text));
        cell->setTextAlignment(Qt::AlignCenter);
        list->setItem(0, column, cell.release());  // the list owns it
    }
}

}  // namespace tonvane
