// tonvane-window-bench RESPONSE.qsr: what the dialog's window takes, on the screen that it is
// started on: redraws a second while a knot is dragged, and the time from letting it go to the new
// filter on the screen.
#include <QApplication>
#include <QMouseEvent>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <vector>

#include "transform/FftTables.h"
#include "ui/MainDlg.h"
#include "ui/qt/TemplateWindow.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr int moves = 500;
constexpr int releases = 21;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// Until everything that is due has been drawn and handed to the screen.
void draw() {
    QCoreApplication::processEvents();
    QGuiApplication::sync();
}

void mouse(QWidget& plot, QEvent::Type type, QPointF at) {
    const bool isMove = type == QEvent::MouseMove;
    QMouseEvent event(type, at, plot.mapToGlobal(at), isMove ? Qt::NoButton : Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(&plot, &event);
}

void measure(tonvane::CMainDlg& dialog, QWidget& plot) {
    const auto& handle = dialog.plot.handleRects[3];
    const QPointF knot(
        (handle.left + handle.right) / 2 + dialog.plot.left,
        (handle.top + handle.bottom) / 2 + dialog.plot.yAxis.pixels + dialog.plot.top);
    mouse(plot, QEvent::MouseButtonPress, knot);
    const auto start = Clock::now();
    for (int i = 0; i < moves; ++i) {
        mouse(plot, QEvent::MouseMove, knot + QPointF(40 * std::sin(i * 0.05), i % 60 - 30));
        draw();
    }
    const double perMove = millisecondsSince(start) / moves;
    std::printf("moving a knot       %6.2f ms a redraw, %.0f a second\n", perMove, 1000 / perMove);

    std::vector<double> times;
    for (int i = 0; i < releases; ++i) {
        mouse(plot, QEvent::MouseMove, knot + QPointF(i, i));
        draw();
        const auto letGo = Clock::now();
        mouse(plot, QEvent::MouseButtonRelease, knot + QPointF(i, i));
        draw();
        times.push_back(millisecondsSince(letGo));
        mouse(plot, QEvent::MouseButtonPress, knot + QPointF(i, i));
    }
    std::ranges::sort(times);
    std::printf("letting a knot go   %6.1f ms to the new filter on the screen, at most %.1f\n",
                times[times.size() / 2], times.back());
}

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    if (argc < 2) {
        std::fputs("usage: tonvane-window-bench RESPONSE.qsr\n", stderr);
        return 2;
    }
    tonvane::ProgramValues values;
    values.ResponseFilePath = argv[1];
    values.ResponseIsCsv = false;
    values.InitialGainClamp = -6;
    values.TargetCurveKind = tonvane::savedCurve;
    tonvane::InitFftTables(tonvane::responseLength);
    tonvane::FileUserStore store("");
    tonvane::TemplateWindow window(tonvane::MainDialogTemplate);
    tonvane::CMainDlg dialog(window.host(), values, {}, store, false);
    window.host().start(dialog);
    window.show();
    draw();
    for (QWidget* child : window.findChildren<QWidget*>()) {
        if (dynamic_cast<tonvane::PlotWidget*>(child) != nullptr) {
            measure(dialog, *child);
        }
    }
    window.host().destroyWindow();
    return 0;
}
