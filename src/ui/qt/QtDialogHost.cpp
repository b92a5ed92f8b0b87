#include "ui/qt/QtDialogHost.h"

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QScreen>

#include "ui/Controls.h"
#include "ui/MainDlg.h"
#include "ui/qt/Child.h"
#include "ui/qt/ProgramIcon.h"

namespace tonvane {

namespace {

constexpr int darkBelow = 128;             // lightness of a dark window
constexpr uint32_t lightPlate = 0xBFE9EE;  // the plot's colour, below lines in such a window

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

void QtDialogHost::start(CMainDlg& dialog) {
    dialog_ = &dialog;
    isAlive_ = true;
    send({.message = message::initDialog});
}

std::optional<std::intptr_t> QtDialogHost::dispatch(const DialogMessage& m) {
    return dialog_ == nullptr ? std::nullopt : dialog_->ProcessWindowMessage(m);
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
    // Without any caption Qt writes the program's name there.
    QMessageBox shown(icon, box.caption.empty() ? " " : toQt(box.caption), toQt(box.text),
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
