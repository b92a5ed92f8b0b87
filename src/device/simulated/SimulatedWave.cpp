#include "device/simulated/SimulatedWave.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "text/LittleEndian.h"

namespace tonvane {

namespace {

constexpr int32_t stepFrames = BlockConvolver::blockFrames;
using Block = std::array<double, stepFrames>;

double decode(const uint8_t* bytes, int32_t bits) {
    const std::span sample(bytes, static_cast<size_t>(bits / 8));
    return static_cast<int32_t>(LoadLittleEndian<uint32_t>(sample) << (32 - bits)) * 0x1p-31;
}

void encode(double sample, uint8_t* bytes, int32_t bits) {
    const double scale = std::ldexp(1.0, bits - 1);
    double value = std::floor(sample * scale + 0.5);
    value = value > -scale ? std::min(value, scale - 1.0) : -scale;
    StoreLittleEndian(static_cast<uint32_t>(static_cast<int32_t>(value)),
                      std::span(bytes, static_cast<size_t>(bits / 8)));
}

}  // namespace

void CSimulatedWave::Queue::open(const WAVEFORMATEX* format, int32_t frames) {
    channels = format == nullptr ? 0 : format->channels;
    depth = frames / stepFrames * stepFrames;
    put = 0;
    taken = 0;
    samples.assign(static_cast<size_t>(channels) * static_cast<size_t>(depth), 0.0);
}

CSimulatedWave::CSimulatedWave(SimulatedSetup setup) : setup_(std::move(setup)) {}

CSimulatedWave::~CSimulatedWave() {
    CSimulatedWave::Close();
}

std::string CSimulatedWave::refusalOf(const WAVEFORMATEX* capture, const WAVEFORMATEX* play,
                                      int frames) const {
    if (setup_.refusesToOpen) {
        return "The simulated device is set up to refuse";
    }
    if (capture != nullptr && play != nullptr && capture->sampleRate != play->sampleRate) {
        return "Capture and playback have different sample rates";
    }
    for (const WAVEFORMATEX* format : {capture, play}) {
        if (format != nullptr && (format->bitsPerSample != setup_.bits || format->channels < 1)) {
            return "The simulated device takes samples of " + std::to_string(setup_.bits) + " bits";
        }
    }
    return frames < stepFrames ? "The queue is too short" : "";
}

bool CSimulatedWave::Open(const WAVEFORMATEX* capture, const WAVEFORMATEX* play, int frames,
                          void* /*notify*/) {
    Close();
    faults_.Reset();
    faults_.refusal = refusalOf(capture, play, frames);
    if (!faults_.refusal.empty()) {
        return false;
    }
    const Lock lock(mutex_);
    play_.open(play, frames);
    capture_.open(capture, frames);
    const auto channels = static_cast<size_t>(capture_.channels);
    paths_.clear();
    paths_.reserve(channels);
    for (size_t channel = 0; channel < channels; ++channel) {
        paths_.emplace_back(setup_.impulse);
    }
    delays_.assign(channels, std::vector<double>(static_cast<size_t>(setup_.delay)));
    noise_.seed(setup_.noiseSeed);
    now_ = 0;
    open_ = true;
    running_ = flushed_ = withoutWriter_ = withoutReader_ = hadXrun_ = hadSlip_ = false;
    return true;
}

void CSimulatedWave::Close() {
    const Lock lock(mutex_);
    open_ = false;
    running_ = false;
    changed_.notify_all();
}

bool CSimulatedWave::Start() {
    const Lock lock(mutex_);
    running_ = isUp();
    changed_.notify_all();
    return running_;
}

void CSimulatedWave::Stop() {
    const Lock lock(mutex_);
    running_ = false;
    changed_.notify_all();
}

int64_t CSimulatedWave::framesPlayed() const {
    const Lock lock(mutex_);
    return now_;
}

int CSimulatedWave::Latency() {
    return setup_.latency + (framesPlayed() >= setup_.changesLatencyAfter ? stepFrames : 0);
}

bool CSimulatedWave::timeFlows() const {
    return running_ && isUp() && now_ < setup_.stopsAfter;
}

bool CSimulatedWave::canStep() const {
    const bool hasSound =
        play_.held() >= stepFrames || (flushed_ && play_.held() > 0) || !play_.isOpen();
    const bool hasRoom = capture_.room() >= stepFrames || !capture_.isOpen();
    if (hasSound && hasRoom) {
        return true;
    }
    // One direction alone: silence into what room there is, or sound that nobody captures.
    return capture_.isOpen() && play_.isOpen() &&
           ((hasRoom && (flushed_ || withoutWriter_)) || (hasSound && withoutReader_));
}

// Lets all time pass that can.
void CSimulatedWave::advance() {
    const int64_t before = now_;
    while (timeFlows() && canStep()) {
        step();
    }
    if (now_ != before || faults_.isLost) {
        changed_.notify_all();
    }
}

void CSimulatedWave::step() {
    if (play_.isOpen() && !flushed_ && play_.held() < stepFrames) {
        faults_.playGaps.Note();
    }
    bool kept = capture_.room() >= stepFrames;
    if (capture_.isOpen() && !kept) {
        faults_.captureGaps.Note();
    }
    if (now_ >= setup_.xrunAfter && !hadXrun_) {
        hadXrun_ = true;
        kept = false;
        faults_.captureGaps.Add();
    }
    if (now_ >= setup_.slipsAfter && !hadSlip_) {
        hadSlip_ = true;
        kept = false;
    }
    for (int32_t channel = 0; channel < capture_.channels; ++channel) {
        Block block{};
        takePlayed(channel, block);
        paths_[channel].Process(block);
        putCaptured(channel, block, kept);
    }
    play_.taken += std::min(play_.held(), stepFrames);
    capture_.put += kept && capture_.isOpen() ? stepFrames : 0;
    now_ += stepFrames;
    faults_.isLost = now_ >= setup_.disappearsAfter;
}

// The next frames of the queue, left there, with silence behind the last.
void CSimulatedWave::takePlayed(int32_t channel, std::span<double> block) {
    const int32_t count = channel < play_.channels ? std::min(play_.held(), stepFrames) : 0;
    for (int32_t i = 0; i < count; ++i) {
        block[i] = play_.frame(play_.taken + i)[channel];
    }
}

void CSimulatedWave::putCaptured(int32_t channel, std::span<const double> block, bool kept) {
    std::vector<double>& delay = delays_[channel];
    const auto length = static_cast<int64_t>(delay.size());
    for (int32_t i = 0; i < stepFrames; ++i) {
        double sample = block[i];
        if (length > 0) {
            std::swap(sample, delay[static_cast<size_t>((now_ + i) % length)]);
        }
        sample *= setup_.gain;
        if (setup_.noise != 0.0) {
            // Equally likely between +-sqrt(3), which has an rms of 1.
            const double unit = static_cast<double>(noise_()) / std::minstd_rand::max();
            sample += setup_.noise * std::numbers::sqrt3 * (2.0 * unit - 1.0);
        }
        if (kept) {
            capture_.frame(capture_.put + i)[channel] = sample;
        }
    }
}

// Waits until something has changed. False when time flows but the other worker does not come.
bool CSimulatedWave::waitForOther(Lock& lock) {
    if (!timeFlows()) {
        changed_.wait(lock);
        return true;
    }
    return changed_.wait_for(lock, setup_.patience) == std::cv_status::no_timeout;
}

size_t CSimulatedWave::byteIndex(int32_t frame, int32_t channel, int32_t frames,
                                 int32_t channels) const {
    const int32_t index =
        setup_.interleaved ? frame * channels + channel : channel * frames + frame;
    return static_cast<size_t>(index) * static_cast<size_t>(setup_.bits / 8);
}

int CSimulatedWave::Write(const void* data, int frames) {
    const auto* bytes = static_cast<const uint8_t*>(data);
    Lock lock(mutex_);
    flushed_ = false;
    withoutWriter_ = false;
    faults_.playGaps.Settle();
    int32_t done = 0;
    while (isUp() && play_.isOpen() && done < frames) {
        const int32_t count = std::min(frames - done, play_.room());
        for (int32_t i = 0; i < count; ++i) {
            double* frame = play_.frame(play_.put + i);
            for (int32_t channel = 0; channel < play_.channels; ++channel) {
                frame[channel] = decode(
                    bytes + byteIndex(done + i, channel, frames, play_.channels), setup_.bits);
            }
        }
        play_.put += count;
        done += count;
        if (play_.room() == 0) {
            changed_.notify_all();
        }
        advance();
        if (done < frames && play_.room() == 0 && isUp() && !waitForOther(lock)) {
            advance();
            withoutReader_ = play_.room() == 0;
        }
    }
    return done;
}

int CSimulatedWave::Read(void* data, int frames) {
    auto* bytes = static_cast<uint8_t*>(data);
    Lock lock(mutex_);
    withoutReader_ = false;
    faults_.captureGaps.Settle();
    int32_t done = 0;
    while (open_ && capture_.isOpen() && done < frames) {
        advance();
        const int32_t count = std::min(frames - done, capture_.held());
        for (int32_t i = 0; i < count; ++i) {
            const double* frame = capture_.frame(capture_.taken + i);
            for (int32_t channel = 0; channel < capture_.channels; ++channel) {
                encode(frame[channel],
                       bytes + byteIndex(done + i, channel, frames, capture_.channels),
                       setup_.bits);
            }
        }
        capture_.taken += count;
        done += count;
        if (count == 0 && faults_.isLost) {
            break;
        }
        if (count == 0 && open_ && !waitForOther(lock)) {
            withoutWriter_ = capture_.held() == 0;
        }
    }
    return done;
}

void CSimulatedWave::FlushOutput() {
    const Lock lock(mutex_);
    flushed_ = true;
    changed_.notify_all();
}

void CSimulatedWave::WaitFilled() {
    Lock lock(mutex_);
    changed_.wait(lock,
                  [&] { return !isUp() || !play_.isOpen() || play_.room() == 0 || flushed_; });
}

void CSimulatedWave::WaitEmpty() {
    Lock lock(mutex_);
    flushed_ = true;
    while (isUp() && play_.isOpen() && play_.held() > 0) {
        advance();
        if (play_.held() > 0 && isUp() && !waitForOther(lock)) {
            withoutReader_ = true;
        }
    }
}

}  // namespace tonvane
