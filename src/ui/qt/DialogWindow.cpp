#include "ui/qt/DialogWindow.h"

#include <QContextMenuEvent>
#include <QDropEvent>
#include <QFile>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QUrl>

#include "ui/Controls.h"
#include "ui/qt/Child.h"

namespace tonvane {

namespace {

class Overlay : public QWidget {
  public:
    Overlay(QtDialogHost& host, QWidget* parent) : QWidget(parent), host_(host) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        host_.paint(painter);
    }

  private:
    QtDialogHost& host_;
};

// The first dropped thing that is a file here; empty for none.
QString localFile(const QMimeData* data) {
    for (const QUrl& url : data->urls()) {
        if (url.isLocalFile()) {
            return url.toLocalFile();
        }
    }
    return {};
}

}  // namespace

DialogWindow::DialogWindow(bool keepsHidden) : host_(*this, keepsHidden) {
    setFocusPolicy(Qt::ClickFocus);  // no stop of the Tab key
    addAction(tr("&Undo"), QKeySequence::Undo, controls::undo);
    addAction(tr("&Redo"), QKeySequence::Redo, controls::redo);
    addAction(tr("&Save Picture..."), QKeySequence::Save, controls::savePicture);
}

void DialogWindow::addAction(const QString& text, const QKeySequence& keys, int id) {
    auto* action = MakeChild<QAction>(text, this);
    action->setShortcut(keys);
    connect(action, &QAction::triggered, this,
            [this, id] { host_.command(id, notifications::click); });
    QWidget::addAction(action);
}

void DialogWindow::makeOverlay() {
    overlay_ = MakeChild<Overlay>(host_, this);
    overlay_->setGeometry(rect());
    overlay_->raise();
}

void DialogWindow::resizeEvent(QResizeEvent* /*event*/) {
    if (overlay_ != nullptr) {
        overlay_->setGeometry(rect());
    }
}

void DialogWindow::closeEvent(QCloseEvent* event) {
    event->ignore();  // the dialog ends the window by itself
    host_.close();
}

void DialogWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        host_.command(controls::cancel, notifications::click);
        return;
    }
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
        QWidget::keyPressEvent(event);
        return;
    }
    if (auto* edit = qobject_cast<QLineEdit*>(focusWidget())) {
        host_.leaveEdit(*edit);
        return;
    }
    auto* button = qobject_cast<QPushButton*>(focusWidget());
    if (button == nullptr) {
        button = qobject_cast<QPushButton*>(host_.control(controls::measure));
    }
    if (button != nullptr && button->isVisible()) {
        button->click();
    }
}

// Qt brings the menu key and Shift+F10 here as well.
void DialogWindow::contextMenuEvent(QContextMenuEvent* event) {
    QMenu menu(this);
    menu.addActions(actions());
    menu.addSeparator();
    menu.addMenu(&host_.deviceMenu());
    menu.exec(event->globalPos());
}

void DialogWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (!localFile(event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
    }
}

void DialogWindow::dropEvent(QDropEvent* event) {
    const QString file = localFile(event->mimeData());
    if (!file.isEmpty()) {
        event->acceptProposedAction();
        host_.send({.message = message::dropFiles, .text = QFile::encodeName(file).toStdString()});
    }
}

}  // namespace tonvane
