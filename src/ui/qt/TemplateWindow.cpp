#include "ui/qt/TemplateWindow.h"

#include <QGroupBox>

#include "ui/Controls.h"
#include "ui/qt/QtControls.h"

namespace tonvane {

namespace {

// Pixels of four units across and eight down: what the texts of the dialog need in the usual fonts.
constexpr int baseWidth = 8;
constexpr int baseHeight = 16;
constexpr int dialogFontPixels = 12;

QRect pixels(const DialogRectangle& place) {
    return {place.x * baseWidth / 4, place.y * baseHeight / 8, place.width * baseWidth / 4,
            place.height * baseHeight / 8};
}

}  // namespace

TemplateWindow::TemplateWindow(const DialogTemplate& dialog) : DialogWindow(true) {
    setWindowTitle(QString::fromUtf8(dialog.caption));
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                   Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint |
                   Qt::WindowCloseButtonHint);
    QFont font = this->font();
    font.setPixelSize(dialogFontPixels);
    setFont(font);
    setFixedSize(pixels({0, 0, dialog.width, dialog.height}).size());
    for (const DialogItem& item : dialog.items) {
        QWidget* control = MakeControl(item.kind, QString::fromUtf8(item.text), this);
        control->setGeometry(pixels(item.place));
        if (item.kind == ControlKind::dropList) {
            // A list has the height of its style, as on every platform.
            control->resize(control->width(), control->sizeHint().height());
        }
        if (item.kind == ControlKind::groupBox) {
            control->lower();
        }
        if (item.id != controls::noId) {
            host().add(item.id, control);
        }
    }
    makeOverlay();
}

}  // namespace tonvane
