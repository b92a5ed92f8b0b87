// tonvane-drag-bench RESPONSE.qsr: tonvane-lab's window for a mouse from outside, as bench/drag
// moves it. Prints where a knot is in the window, then a line for each drag of it: redesigns on the
// screen, seconds, processor time in ms for one of them from the move of the mouse to the curve
// drawn, milliseconds from a move to its picture (middle and worst), milliseconds from letting go
// to the final picture.
#include <QApplication>
#include <QMouseEvent>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <optional>
#include <vector>

#include "transform/FftTables.h"
#include "ui/Controls.h"
#include "ui/MainDlg.h"
#include "ui/qt/LabWindow.h"

namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// Sees every event before and after the program has dealt with it.
class WatchedApplication : public QApplication {
  public:
    using QApplication::QApplication;

    void watch(const tonvane::CMainDlg& dialog, const QWidget& plot) {
        dialog_ = &dialog;
        plot_ = &plot;
    }

    bool notify(QObject* receiver, QEvent* event) override {
        const auto type = event->type();
        if (receiver == plot_) {
            before(type);
        }
        ++depth_;
        const bool result = QApplication::notify(receiver, event);
        --depth_;
        if (type == QEvent::WindowActivate && plot_ != nullptr && receiver == plot_->window()) {
            tellKnot();
        }
        if (receiver == plot_ && type == QEvent::Paint) {
            isPainted_ = true;
        }
        if (depth_ == 0 && isPainted_) {
            isPainted_ = false;
            painted();
        }
        return result;
    }

  private:
    // The window has got its place and size.
    void tellKnot() {
        const tonvane::CCurveGraphWindow& plot = dialog_->plot;
        const tonvane::Rectangle& knot = plot.handleRects[3];
        const QPoint at = plot_->mapTo(
            plot_->window(), QPoint((knot.left + knot.right) / 2 + plot.left,
                                    (knot.top + knot.bottom) / 2 + plot.yAxis.pixels + plot.top));
        std::printf("%d %d\n", at.x(), at.y());
        std::fflush(stdout);
    }

    void before(QEvent::Type type) {
        if (type == QEvent::MouseButtonPress) {
            times_.clear();
            pressed_ = Clock::now();
            processor_ = std::clock();
            isDragging_ = true;
        } else if (type == QEvent::MouseMove && isDragging_ && !moved_) {
            moved_ = Clock::now();
        } else if (type == QEvent::MouseButtonRelease && isDragging_) {
            seconds_ = millisecondsSince(pressed_) / 1000.0;
            processor_ = std::clock() - processor_;
            letGo_ = Clock::now();
            isDragging_ = false;
        }
    }

    // The window has got a picture of the plot.
    void painted() {
        const auto words = dialog_->tuningRun().fittedWords();
        const bool isRedesigned = !std::ranges::equal(words, words_);
        words_.assign(words.begin(), words.end());
        if (isDragging_ && moved_ && isRedesigned) {
            times_.push_back(millisecondsSince(*moved_));
        }
        moved_.reset();  // also where the knot has stayed on its hertz and decibel
        if (letGo_ && !times_.empty()) {
            QGuiApplication::sync();
            report(millisecondsSince(*letGo_));
            letGo_.reset();
        }
    }

    void report(double finalMs) {
        std::ranges::sort(times_);
        const auto count = static_cast<double>(times_.size());
        const double processorMs = 1000.0 * static_cast<double>(processor_) / CLOCKS_PER_SEC;
        std::printf("%.0f %.3f %.2f %.1f %.1f %.1f\n", count, seconds_, processorMs / count,
                    times_[times_.size() / 2], times_.back(), finalMs);
        std::fflush(stdout);
    }

    const tonvane::CMainDlg* dialog_ = nullptr;
    const QWidget* plot_ = nullptr;
    int depth_ = 0;
    bool isPainted_ = false;
    bool isDragging_ = false;
    Clock::time_point pressed_;
    std::clock_t processor_ = 0;
    double seconds_ = 0.0;
    std::optional<Clock::time_point> moved_;  // by the first move that is not on the screen yet
    std::optional<Clock::time_point> letGo_;
    std::vector<double> times_;
    std::vector<int32_t> words_;
};

}  // namespace

int main(int argc, char** argv) {
    WatchedApplication application(argc, argv);
    if (argc < 2) {
        std::fputs("usage: tonvane-drag-bench RESPONSE.qsr\n", stderr);
        return 2;
    }
    tonvane::ProgramValues values;
    values.ResponseFilePath = argv[1];
    values.ResponseIsCsv = false;
    values.InitialGainClamp = -6;
    values.TargetCurveKind = tonvane::savedCurve;
    values.fitMethod = tonvane::FitMethod::refined;
    values.followsMouse = true;
    tonvane::InitFftTables(tonvane::responseLength);
    tonvane::FileUserStore store("");
    tonvane::LabWindow window;
    tonvane::CMainDlg dialog(window.host(), values, {}, store, false);
    window.host().start(dialog);
    application.watch(dialog, *window.host().control(tonvane::controls::plotPlace));
    window.show();
    return QApplication::exec();
}
