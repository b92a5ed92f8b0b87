#include "ui/qt/QtDialogHost.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QFileDialog>
#include <QFocusEvent>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QSlider>
#include <QTableWidget>
#include <exception>

#include "ui/Controls.h"
#include "ui/MainDlg.h"
#include "ui/qt/Child.h"
#include "ui/qt/ControlTexts.h"
#include "ui/qt/ProgramIcon.h"

namespace tonvane {

namespace {

constexpr const char* idProperty = "controlId";  // of edit boxes
constexpr const char* textProperty = "text";     // of labels, buttons and edit boxes
constexpr int darkBelow = 128;                   // lightness of a dark window
constexpr uint32_t lightPlate = 0xBFE9EE;        // the plot's colour, below lines in such a window
constexpr int thumbTrack = 5;                    // scroll code of a slider that is being dragged

QString toQt(const std::string& text) {
    return QString::fromStdString(text);
}

QColor toQt(uint32_t color) {
    return {static_cast<int>(color & 0xFFU), static_cast<int>(color >> 8U & 0xFFU),
            static_cast<int>(color >> 16U & 0xFFU)};
}

}  // namespace

QtDialogHost::QtDialogHost(QWidget& window, bool keepsHidden)
    : window_(window),
      keepsHidden_(keepsHidden),
      deviceMenu_(tr("Wave &Device"), &window),
      deviceGroup_(nullptr) {}

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
    } else {
        addSlider(id, widget);
    }
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
}

// A menu that opens over an edit box takes nothing away from it.
bool QtDialogHost::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusOut &&
        static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason) {
        leaveEdit(*watched);
    }
    return false;
}

void QtDialogHost::leaveEdit(const QObject& edit) {
    command(edit.property(idProperty).toInt(), notifications::lostFocus);
}

void QtDialogHost::start(CMainDlg& dialog) {
    dialog_ = &dialog;
    isAlive_ = true;
    send({.message = message::initDialog});
}

std::optional<std::intptr_t> QtDialogHost::dispatch(const DialogMessage& m) {
    if (dialog_ == nullptr) {
        return std::nullopt;
    }
    try {
        return dialog_->ProcessWindowMessage(m);
    } catch (const std::exception& error) {
        showMessage({MessageBox::Kind::error, error.what(), "Error"});
        return 0;
    }
}

void QtDialogHost::send(const DialogMessage& m) {
    dispatch(m);
}

void QtDialogHost::post(const DialogMessage& m) {
    QMetaObject::invokeMethod(
        this, [this, m] { send(m); }, Qt::QueuedConnection);
}

void QtDialogHost::command(int id, int code) {
    send({.message = message::command, .id = id, .code = code});
}

void QtDialogHost::close() {
    if (isAlive_ && !dispatch({.message = message::close})) {
        command(controls::cancel, notifications::click);
    }
}

void QtDialogHost::destroyWindow() {
    if (!isAlive_) {
        return;
    }
    send({.message = message::destroy});
    isAlive_ = false;
    dialog_ = nullptr;
    timers_.clear();
    if (plot_ != nullptr) {
        plot_->setDialog(nullptr);
    }
    window_.hide();
}

void QtDialogHost::postQuit(int exitCode) {
    QCoreApplication::exit(exitCode);
}

void QtDialogHost::setText(int id, const std::string& text) {
    if (QWidget* widget = control(id)) {
        widget->setProperty(textProperty, toQt(text));
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
    if (QWidget* widget = control(id)) {
        widget->setEnabled(enabled);
    }
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
        list->insertItem(index < 0 ? list->count() : index, toQt(text));
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

void QtDialogHost::setSliderRange(int id, int most) {
    if (auto* slider = qobject_cast<QSlider*>(control(id))) {
        const QSignalBlocker quiet(slider);
        slider->setRange(0, std::max(most, 0));
    }
}

int QtDialogHost::sliderRange(int id) const {
    const auto* slider = qobject_cast<QSlider*>(control(id));
    return slider == nullptr ? 0 : slider->maximum();
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
        auto cell = std::make_unique<QTableWidgetItem>(toQt(text));
        cell->setTextAlignment(Qt::AlignCenter);
        list->setItem(0, column, cell.release());  // the list owns it
    }
}

PlotWindow QtDialogHost::createPlot(int placeId) {
    if (plot_ == nullptr) {
        plot_ = MakeChild<PlotWidget>(&window_);
        const PixelRectangle place = rectangle(placeId);
        plot_->setGeometry(place.left, place.top, place.right - place.left,
                           place.bottom - place.top);
        plot_->show();
    }
    plot_->setDialog(dialog_);
    return plot_->window();
}

void QtDialogHost::invalidatePlot() {
    if (plot_ != nullptr) {
        plot_->update();
    }
}

// Qt keeps the mouse of a pressed button by itself.
void QtDialogHost::capturePlotMouse(bool /*captured*/) {}

void QtDialogHost::setPlotCursor(GraphCursor cursor) {
    if (plot_ != nullptr) {
        plot_->setPlotCursor(cursor);
    }
}

void QtDialogHost::paint(QPainter& painter) {
    painter_ = &painter;
    send({.message = message::paint});
    painter_ = nullptr;
}

void QtDialogHost::drawLine(int fromX, int toX, int y, int width, uint32_t color) {
    if (painter_ == nullptr) {
        return;
    }
    const QRect line(fromX, y - width / 2, toX - fromX, width);
    if (window_.palette().window().color().lightness() < darkBelow) {
        painter_->fillRect(line.adjusted(-2, -2, 2, 2), toQt(lightPlate));
    }
    painter_->fillRect(line, toQt(color));
}

void QtDialogHost::addDeviceEntry(int id, const std::string& name) {
    QAction* entry = deviceMenu_.addAction(toQt(name));
    entry->setCheckable(true);
    deviceGroup_.addAction(entry);
    deviceEntries_[id] = entry;
    connect(entry, &QAction::triggered, this,
            [this, id] { send({.message = message::systemCommand, .id = id}); });
}

void QtDialogHost::enableDeviceEntry(int id, bool enabled) {
    if (const auto entry = deviceEntries_.find(id); entry != deviceEntries_.end()) {
        entry->second->setEnabled(enabled);
    }
}

void QtDialogHost::selectDeviceEntry(int id) {
    if (const auto entry = deviceEntries_.find(id); entry != deviceEntries_.end()) {
        entry->second->setChecked(true);
        if (deviceButton_ != nullptr) {
            deviceButton_->setText(entry->second->text());
        }
    }
}

void QtDialogHost::placeWindow() {
    window_.setWindowIcon(ProgramIcon());
    window_.setAcceptDrops(true);
    const QRect screen = window_.screen()->availableGeometry();
    QRect place(QPoint(), window_.size());
    place.moveCenter(screen.center());
    window_.move(place.topLeft().x() < screen.left() ? screen.left() : place.left(),
                 place.top() < screen.top() ? screen.top() : place.top());
}

void QtDialogHost::setBusy(bool busy) {
    if (busy) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        QApplication::restoreOverrideCursor();
    }
}

void QtDialogHost::startTimer(int timerId, int milliseconds) {
    auto& timer = timers_[timerId];
    timer = std::make_unique<QTimer>();
    connect(timer.get(), &QTimer::timeout, this,
            [this, timerId] { send({.message = message::timer, .id = timerId}); });
    timer->start(milliseconds);
}

// Perhaps called by the timer itself.
void QtDialogHost::stopTimer(int timerId) {
    if (const auto timer = timers_.find(timerId); timer != timers_.end()) {
        timer->second->stop();
    }
}

bool QtDialogHost::showMessage(const MessageBox& box) {
    const bool asks = box.kind == MessageBox::Kind::question;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    if (asks) {
        icon = QMessageBox::Question;
    } else if (box.kind == MessageBox::Kind::error) {
        icon = QMessageBox::Critical;
    }
    QMessageBox shown(icon, toQt(box.caption), toQt(box.text),
                      asks ? QMessageBox::Ok | QMessageBox::Cancel : QMessageBox::Ok,
                      window_.isVisible() ? &window_ : nullptr);
    shown.setTextFormat(Qt::PlainText);
    return shown.exec() == QMessageBox::Ok;
}

std::optional<std::string> QtDialogHost::chooseFile(const FileDialog& wanted) {
    const bool saves = wanted.form == FileDialog::Form::save;
    QFileDialog dialog(&window_, saves ? tr("Save As") : tr("Open"));
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    dialog.setAcceptMode(saves ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setNameFilter(QString::fromUtf8(wanted.filterText));
    dialog.setDefaultSuffix(QString::fromUtf8(wanted.extension));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return std::nullopt;
    }
    return QFile::encodeName(dialog.selectedFiles().first()).toStdString();
}

}  // namespace tonvane
