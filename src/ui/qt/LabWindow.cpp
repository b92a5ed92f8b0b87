#include "ui/qt/LabWindow.h"

#include <QCheckBox>
#include <QFontDatabase>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTableWidget>
#include <QToolButton>
#include <algorithm>
#include <initializer_list>

#include "ui/Controls.h"
#include "ui/CurveDisplay.h"
#include "ui/DialogTemplate.h"
#include "ui/qt/Child.h"
#include "ui/qt/ControlTexts.h"
#include "ui/qt/QtControls.h"

namespace tonvane {

namespace {

constexpr int legendLineSpace = 14;  // below the texts of the legend
constexpr int sideWidth = 290;
constexpr int swatchWidth = 22;
constexpr int openWaveId = 4000;  // these two are the window's own
constexpr int deviceButtonId = 4001;
constexpr int drcCount = 2;
constexpr std::array drcFields{"Threshold, dB", "Averaging, ms", "Attack, ms", "Release, ms"};

QHBoxLayout* row(std::initializer_list<QWidget*> widgets) {
    auto* layout = MakeChild<QHBoxLayout>();
    for (QWidget* widget : widgets) {
        layout->addWidget(widget);
    }
    return layout;
}

// The colour of a curve, in front of its check box.
QIcon swatch(const CurveStyle& style) {
    QPixmap pixmap(swatchWidth, 12);
    pixmap.fill(QColor(0xEE, 0xE9, 0xBF));
    QPainter painter(&pixmap);
    const QColor color(static_cast<int>(style.color & 0xFFU),
                       static_cast<int>(style.color >> 8U & 0xFFU),
                       static_cast<int>(style.color >> 16U & 0xFFU));
    painter.fillRect(0, 5, swatchWidth, style.penWidth, color);
    return pixmap;
}

}  // namespace

LabWindow::LabWindow() : DialogWindow(false) {
    setWindowTitle("Tonvane Lab");
    auto* plot = MakeChild<PlotWidget>(this);
    host().setPlot(plot);
    host().add(controls::plotPlace, plot);
    plot->setMinimumHeight(200);
    plot->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);

    auto* left = MakeChild<QVBoxLayout>();
    left->addWidget(plot, 1);
    left->addLayout(makeLegend());
    left->addLayout(makeStatus());
    auto* lower = MakeChild<QHBoxLayout>();
    lower->addWidget(makeMeasurement(), 4);
    lower->addWidget(makeTarget(), 3);
    lower->addWidget(makeCurves(), 3);
    left->addLayout(lower);
    left->addWidget(makePlayer());

    auto* right = MakeChild<QVBoxLayout>();
    right->addWidget(makeAmplifier());
    right->addWidget(makeDynamics());
    right->addStretch();
    right->addLayout(row({makeCommand(controls::savePicture), make(controls::close)}));

    auto* side = MakeChild<QWidget>(this);
    side->setLayout(right);
    side->setFixedWidth(sideWidth);
    right->setContentsMargins(0, 0, 0, 0);
    auto* all = MakeChild<QHBoxLayout>(this);
    all->addLayout(left, 1);
    all->addWidget(side);
    resize(QSize(1240, 760).boundedTo(screen()->availableSize()));
    makeOverlay();
}

QWidget* LabWindow::make(int id) {
    const auto items = MainDialogTemplate.items;
    const auto item = std::ranges::find(items, id, &DialogItem::id);
    QWidget* control = MakeControl(item->kind, QString::fromUtf8(item->text), this);
    host().add(id, control);
    return control;
}

QWidget* LabWindow::makeCommand(int id) {
    auto* button = MakeChild<QPushButton>(ControlName(id), this);
    host().add(id, button);
    return button;
}

QWidget* LabWindow::makeNamed(int id) {
    auto* both = MakeChild<QWidget>(this);
    auto* name = MakeChild<QLabel>(ControlName(id) + ":", both);
    QWidget* control = make(id);
    name->setBuddy(control);
    auto* layout = MakeChild<QHBoxLayout>(both);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(name);
    layout->addWidget(control, 1);
    return both;
}

QLayout* LabWindow::makeLegend() {
    QHBoxLayout* legend = row({make(controls::legendTarget), make(controls::legendMeasured),
                               make(controls::legendBiquads)});
    legend->setContentsMargins(12, 0, 12, legendLineSpace);
    legend->setSpacing(24);
    return legend;
}

QLayout* LabWindow::makeStatus() {
    QHBoxLayout* status = row({make(controls::status1), make(controls::status2)});
    status->setStretch(0, 1);
    return status;
}

QGroupBox* LabWindow::makeMeasurement() {
    auto* group = MakeChild<QGroupBox>("Response", this);
    auto* device = MakeChild<QToolButton>(group);
    device->setPopupMode(QToolButton::InstantPopup);
    device->setMenu(&host().deviceMenu());
    device->setAccessibleName("Wave device");
    device->setToolTip("The audio device that measures and plays");
    device->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    host().setDeviceButton(device);
    host().add(deviceButtonId, device);
    auto* layout = MakeChild<QVBoxLayout>(group);
    layout->addLayout(row({make(controls::measure), makeCommand(controls::openResponse),
                           makeCommand(controls::openTable)}));
    auto* name = MakeChild<QLabel>("Wave device:", group);
    name->setBuddy(device);
    layout->addLayout(row({name, device}));
    layout->addWidget(makeNamed(controls::inputRate));
    auto* results = qobject_cast<QTableWidget*>(make(controls::results));
    results->setFixedHeight(2 * fontMetrics().height() + 26);
    layout->addWidget(results);
    return group;
}

QGroupBox* LabWindow::makeTarget() {
    auto* group = MakeChild<QGroupBox>("Target", this);
    auto* layout = MakeChild<QVBoxLayout>(group);
    layout->addWidget(makeNamed(controls::curve));
    layout->addWidget(makeNamed(controls::gainClamp));
    host().tellOfHover(controls::gainClamp);
    layout->addLayout(row({makeCommand(controls::undo), makeCommand(controls::redo)}));
    layout->addLayout(row(
        {make(controls::reset), make(controls::loadParameters), make(controls::saveParameters)}));
    layout->addStretch();
    return group;
}

QGroupBox* LabWindow::makeCurves() {
    auto* group = MakeChild<QGroupBox>("Curves to plot", this);
    auto* layout = MakeChild<QGridLayout>(group);
    constexpr std::array<int32_t ShownCurves::*, 8> states{
        &ShownCurves::showSpec1,   &ShownCurves::showSpec2,  &ShownCurves::showTarget,
        &ShownCurves::showWeight,  &ShownCurves::showFilter, &ShownCurves::showMixed,
        &ShownCurves::showFilter2, &ShownCurves::showMixed2};
    for (int i = 0; i < static_cast<int>(states.size()); ++i) {
        auto* box = qobject_cast<QAbstractButton*>(make(controls::showFirst + i));
        const auto style =
            std::ranges::find(curveStyles, states[static_cast<size_t>(i)], &CurveStyle::state);
        box->setIcon(swatch(*style));
        box->setIconSize({swatchWidth, 12});
        layout->addWidget(box, i / 2, i % 2);
    }
    layout->addWidget(makeNamed(controls::filterRate), 4, 0, 1, 2);
    layout->setRowStretch(5, 1);
    return group;
}

QGroupBox* LabWindow::makePlayer() {
    auto* group = MakeChild<QGroupBox>("Player", this);
    auto* layout = MakeChild<QHBoxLayout>(group);
    auto* open = MakeChild<QPushButton>("Open wave", group);
    open->setToolTip("Choose a wave file to play; one can be dropped on the window as well");
    connect(open, &QPushButton::clicked, this, [this] { openWave(); });
    host().add(openWaveId, open);
    layout->addWidget(open);
    layout->addWidget(make(controls::path), 2);
    layout->addWidget(make(controls::play));
    layout->addWidget(make(controls::stop));
    layout->addWidget(make(controls::position), 3);
    // Room for any time, so that the row keeps its places while a file plays.
    QWidget* time = make(controls::time);
    time->setMinimumWidth(time->fontMetrics().horizontalAdvance("000:00 / 000:00"));
    layout->addWidget(time);
    return group;
}

void LabWindow::openWave() {
    constexpr FileDialog waveDialog{FileDialog::Form::open, "Wave files (*.wav)", "*.wav", "wav"};
    if (const auto path = host().chooseFile(waveDialog)) {
        host().send({.message = message::dropFiles, .text = *path});
    }
}

QGroupBox* LabWindow::makeAmplifier() {
    auto* group = MakeChild<QGroupBox>("Amplifier", this);
    auto* layout = MakeChild<QVBoxLayout>(group);
    layout->addLayout(row({make(controls::connect), make(controls::term)}));
    layout->addLayout(row({make(controls::set1), make(controls::dump)}));
    layout->addLayout(row(
        {make(controls::biq), make(controls::split), make(controls::drc1), make(controls::drc2)}));
    auto* live = MakeChild<QCheckBox>(ControlName(controls::liveAmplifier), group);
    host().add(controls::liveAmplifier, live);
    layout->addWidget(live);
    auto* registers = MakeChild<QGridLayout>();
    registers->addWidget(MakeChild<QLabel>("Register:", group), 0, 0);
    registers->addWidget(make(controls::registerNumber), 0, 1);
    registers->addWidget(MakeChild<QLabel>("Bytes:", group), 0, 2);
    registers->addWidget(make(controls::registerLength), 0, 3);
    registers->addWidget(make(controls::registerName), 1, 0, 1, 4);
    const QFont digits = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    for (int id = controls::wordFirst; id <= controls::wordLast; ++id) {
        const int line = 2 + id - controls::wordFirst;
        registers->addWidget(MakeChild<QLabel>(ControlName(id) + ":", group), line, 0);
        QWidget* word = make(id);
        word->setFont(digits);
        registers->addWidget(word, line, 1, 1, 3);
    }
    layout->addLayout(registers);
    layout->addLayout(row({make(controls::read), make(controls::send)}));
    return group;
}

QGroupBox* LabWindow::makeDynamics() {
    auto* group = MakeChild<QGroupBox>("Crossover and dynamics", this);
    auto* layout = MakeChild<QGridLayout>(group);
    layout->addWidget(MakeChild<QLabel>("Crossover, Hz", group), 0, 0);
    layout->addWidget(make(controls::crossover), 0, 1);
    for (int drc = 0; drc < drcCount; ++drc) {
        layout->addWidget(MakeChild<QLabel>(QString("DRC %1").arg(drc + 1), group), 1, 1 + drc);
        for (int field = 0; field < static_cast<int>(drcFields.size()); ++field) {
            if (drc == 0) {
                layout->addWidget(MakeChild<QLabel>(drcFields[static_cast<size_t>(field)], group),
                                  2 + field, 0);
            }
            layout->addWidget(make(controls::drcBoxFirst + 4 * drc + field), 2 + field, 1 + drc);
        }
    }
    return group;
}

}  // namespace tonvane
