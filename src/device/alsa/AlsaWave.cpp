#include "device/alsa/AlsaWave.h"

#include <algorithm>
#include <cerrno>
#include <chrono>

#include <pthread.h>

namespace tonvane {

namespace {

constexpr int32_t unit = UnitRing::unitFrames;
constexpr int32_t waitMs = 100;          // the longest time until an order is looked at
constexpr int32_t firstFramesMs = 5000;  // for the capture to begin
constexpr std::chrono::milliseconds napTime{5};
constexpr int32_t playBuffer = 8 * unit;
constexpr int32_t captureBuffer = 32 * unit;
constexpr int32_t leastFilled = 3 * unit;  // silence keeps the playback this far ahead

}  // namespace

CAlsaWave::~CAlsaWave() {
    CAlsaWave::Close();
}

bool CAlsaWave::Open(const WAVEFORMATEX* capture, const WAVEFORMATEX* play, int frames,
                     void* /*notify*/) {
    Close();
    faults_.Reset();
    if (capture != nullptr) {
        faults_.refusal =
            capturePcm_.Open(pcm_, AlsaPcm::Direction::capture, *capture, captureBuffer);
    }
    if (play != nullptr && faults_.refusal.empty()) {
        faults_.refusal = playPcm_.Open(pcm_, AlsaPcm::Direction::play, *play, playBuffer);
    }
    if (!faults_.refusal.empty()) {
        Close();
        return false;
    }
    if (capture != nullptr) {
        capture_.Open(UnitRing::Direction::capture, capture->blockAlign, capture->sampleRate,
                      frames);
        captureBytes_ = capture->blockAlign;
        captured_ = 0;
        unheard_.assign(static_cast<size_t>(capture->blockAlign) * unit, {});
    }
    if (play != nullptr) {
        play_.Open(UnitRing::Direction::play, play->blockAlign, play->sampleRate, frames);
        playBytes_ = play->blockAlign;
        silence_.assign(static_cast<size_t>(play->blockAlign) * unit, {});
        written_ = 0;
        silenceBehind_ = 0;
    }
    order_ = Order::halt;
    thread_ = std::thread([this] { serve(); });
    return true;
}

void CAlsaWave::Close() {
    closeRings();
    if (thread_.joinable()) {
        give(Order::quit);
        thread_.join();
    }
    capturePcm_.Close();
    playPcm_.Close();
}

// The order to quit is the last one until the next Open.
void CAlsaWave::give(Order order) {
    Order present = order_.load();
    while (present != Order::quit && !order_.compare_exchange_weak(present, order)) {
    }
    order_.notify_all();
}

bool CAlsaWave::Start() {
    give(Order::run);
    return isRunning() && !isLost();
}

void CAlsaWave::Stop() {
    give(Order::halt);
}

// Ahead of other work, as an audio thread wants to be, where the system lets it.
void CAlsaWave::hurry() {
    sched_param parameters{};
    parameters.sched_priority = 5;
    pthread_setschedparam(pthread_self(), SCHED_RR, &parameters);
}

void CAlsaWave::serve() {
    hurry();
    for (Order order = order_.load(); order != Order::quit; order = order_.load()) {
        if (order == Order::run && !isLost()) {
            run();
        } else {
            order_.wait(order);
        }
    }
}

void CAlsaWave::run() {
    bool isUp = startCapture() && startPlay();
    while (isUp && isRunning()) {
        hasMoved_ = false;
        isUp = waitForPeriod() && moveCaptured() && movePlayed();
        if (isUp && !hasMoved_) {
            std::this_thread::sleep_for(napTime);  // the library is ready, the ring is not
        }
    }
    if (!isUp && isRunning()) {
        markLost();
    }
    haltPlay();
    if (capturePcm_.isOpen()) {
        capturePcm_.Drop();
    }
}

// Whether an error was a gap, after which the stream stands ready to be started again.
bool CAlsaWave::hadGap(AlsaPcm& pcm, GapCount& gaps, int32_t error) {
    gaps.Add();
    return pcm.Recover(error) >= 0;
}

// Starts the capture and throws away what comes before the first look at it.
bool CAlsaWave::startCapture() {
    if (!capturePcm_.isOpen()) {
        return true;
    }
    if (capturePcm_.Prepare() < 0 || capturePcm_.Start() < 0) {
        return false;
    }
    int32_t waited = 0;
    while (isRunning() && waited < firstFramesMs && capturePcm_.Wait(waitMs) == 0) {
        waited += waitMs;
    }
    while (isRunning() && capturePcm_.Available() > 0) {
        if (capturePcm_.Read(unheard_.data(), unit) <= 0) {
            break;
        }
    }
    return true;
}

// Fills the library's buffer with what the ring holds and starts it.
bool CAlsaWave::startPlay() {
    if (!playPcm_.isOpen()) {
        return true;
    }
    return playPcm_.Prepare() >= 0 && feedPlay(playPcm_.bufferFrames()) && playPcm_.Start() >= 0;
}

// The capture gives the beat where there is one; playback is far enough ahead to follow it.
bool CAlsaWave::waitForPeriod() {
    AlsaPcm& pcm = capturePcm_.isOpen() ? capturePcm_ : playPcm_;
    const int ready = pcm.Wait(waitMs);
    return ready >= 0 || ready == -EINTR || ready == -EPIPE || ready == -ESTRPIPE;
}

bool CAlsaWave::moveCaptured() {
    if (!capturePcm_.isOpen()) {
        return true;
    }
    int32_t available = capturePcm_.Available();
    while (available > 0 && isRunning()) {
        const auto free = capture_.DeviceUnit();
        if (free.empty()) {
            faults_.captureGaps.Note();
            captured_ = 0;
        }
        auto* to = free.empty() ? unheard_.data() : free.data();
        const int32_t got = capturePcm_.Read(to + static_cast<size_t>(captured_) * captureBytes_,
                                             std::min(available, unit - captured_));
        if (got == -EAGAIN) {
            break;
        }
        if (got < 0) {
            available = got;
            break;
        }
        available -= got;
        hasMoved_ = true;
        captured_ = free.empty() ? 0 : captured_ + got;
        if (captured_ == unit) {
            captured_ = 0;
            capture_.Complete();
        }
    }
    return available >= 0 ||
           (hadGap(capturePcm_, faults_.captureGaps, available) && capturePcm_.Start() >= 0);
}

bool CAlsaWave::movePlayed() {
    if (!playPcm_.isOpen()) {
        return true;
    }
    const int32_t room = playPcm_.Available();
    if (room >= 0) {
        completePlayed();
        return feedPlay(room);
    }
    if (!hadGap(playPcm_, faults_.playGaps, room)) {
        return false;
    }
    // What was in the library's buffer is gone.
    for (; written_ >= unit; written_ -= unit) {
        play_.Complete();
    }
    silenceBehind_ = 0;
    return feedPlay(playPcm_.bufferFrames()) && playPcm_.Start() >= 0;
}

// Writes what the ring holds into the room, and silence when there is too little in the buffer.
bool CAlsaWave::feedPlay(int32_t room) {
    while (room >= unit) {
        const auto next = play_.DeviceUnit(written_ / unit);
        const int32_t offset = written_ % unit;
        int32_t put = 0;
        if (!next.empty()) {
            put = playPcm_.Write(next.data() + static_cast<size_t>(offset) * playBytes_,
                                 unit - offset);
            silenceBehind_ = 0;
            written_ += std::max(put, 0);
        } else if (playPcm_.bufferFrames() - room < leastFilled) {
            if (!play_.isFlushed()) {
                faults_.playGaps.Note();
            }
            put = playPcm_.Write(silence_.data(), unit);
            silenceBehind_ += std::max(put, 0);
        } else {
            return true;
        }
        if (put < 0) {
            return put == -EAGAIN || put == -EPIPE;  // a gap is dealt with at the next look
        }
        room -= put;
        hasMoved_ = true;
    }
    return true;
}

// Completes the units whose last frame has been heard.
void CAlsaWave::completePlayed() {
    const int32_t unheard = std::max(playPcm_.Delay() - silenceBehind_, 0);
    while (written_ >= unit && written_ - unheard >= unit) {
        play_.Complete();
        written_ -= unit;
    }
}

// Takes back what has not been heard: it is written again by the next start.
void CAlsaWave::haltPlay() {
    if (!playPcm_.isOpen()) {
        return;
    }
    completePlayed();
    const int32_t unheard = std::max(playPcm_.Delay() - silenceBehind_, 0);
    written_ = std::clamp(written_ - unheard, 0, unit - 1);
    silenceBehind_ = 0;
    playPcm_.Drop();
}

}  // namespace tonvane
