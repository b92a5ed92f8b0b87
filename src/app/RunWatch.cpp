#include "app/RunWatch.h"

#include <algorithm>
#include <cstdio>
#include <thread>
#include <utility>

#include "app/Interruption.h"
#include "platform/System.h"

namespace tonvane {

namespace {

constexpr auto lookInterval = std::chrono::milliseconds(20);
constexpr int barWidth = 40;

}  // namespace

RunEnd WatchRun(CStreamEngine& engine, const RunNews& news, std::chrono::milliseconds limit,
                const std::function<void()>& progress) {
    using Clock = std::chrono::steady_clock;
    auto moved = Clock::now();
    int64_t before = -1;
    while (true) {
        const bool isDone = news.isDone;  // ahead of what may be the reason
        if (InterruptMark::isSet()) {
            return RunEnd::interrupted;
        }
        if (engine.deviceLost()) {
            return RunEnd::lost;
        }
        if (isDone) {
            return RunEnd::done;
        }
        const int64_t frames = engine.waveIn.framesCaptured + engine.waveOut.framesPlayed;
        if (frames != before || engine.paused) {
            before = frames;
            moved = Clock::now();
        } else if (Clock::now() - moved >= limit) {
            return RunEnd::stalled;
        }
        progress();
        std::this_thread::sleep_for(lookInterval);
    }
}

ProgressLine::ProgressLine(std::string title)
    : title_(std::move(title)), isTerminal_(IsTerminal()) {}

ProgressLine::~ProgressLine() {
    if (isTerminal_ && shown_ >= 0) {
        std::printf("\n");
    }
}

void ProgressLine::show(double share) {
    const int step = isTerminal_ ? 1 : 25;
    const int percent = static_cast<int>(100.0 * std::clamp(share, 0.0, 1.0)) / step * step;
    if (percent == shown_) {
        return;
    }
    shown_ = percent;
    if (isTerminal_) {
        const std::string bar(static_cast<size_t>(barWidth * percent / 100), '#');
        std::printf("\r%s [%-*s] %3d %%", title_.c_str(), barWidth, bar.c_str(), percent);
    } else {
        std::printf("%s: %d %%\n", title_.c_str(), percent);
    }
    std::fflush(stdout);
}

}  // namespace tonvane
