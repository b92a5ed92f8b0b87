// The window around the dialog's controls: its keys, its closing, dropped files, its context menu.
#pragma once

#include <QWidget>

#include "ui/qt/QtDialogHost.h"

namespace tonvane {

class DialogWindow : public QWidget {
  public:
    [[nodiscard]] QtDialogHost& host() { return host_; }

  protected:
    explicit DialogWindow(bool keepsHidden);

    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

    // Above all controls, for what the dialog paints; to be made last.
    void makeOverlay();

  private:
    void addAction(const QString& text, const QKeySequence& keys, int id);

    QtDialogHost host_;
    QWidget* overlay_ = nullptr;
};

}  // namespace tonvane
