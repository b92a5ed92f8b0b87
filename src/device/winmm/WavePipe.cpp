#include "device/winmm/WavePipe.h"

#include <chrono>
#include <thread>
#include <utility>
#include <vector>

#include <windows.h>

namespace tonvane {

namespace {

::WAVEFORMATEX systemFormat(const WAVEFORMATEX& format) {
    ::WAVEFORMATEX same{};
    same.wFormatTag = format.formatTag;
    same.nChannels = static_cast<WORD>(format.channels);
    same.nSamplesPerSec = static_cast<DWORD>(format.sampleRate);
    same.nAvgBytesPerSec = static_cast<DWORD>(format.bytesPerSecond);
    same.nBlockAlign = static_cast<WORD>(format.blockAlign);
    same.wBitsPerSample = static_cast<WORD>(format.bitsPerSample);
    return same;
}

}  // namespace

struct WavePipe::System {
    std::vector<WAVEHDR> headers;  // one for each unit; they stay until the next Open
};

// The calls of a direction, which differ in nothing but the type of their handle.
struct WavePipe::Calls {
    MMRESULT (*open)(void*& handle, const ::WAVEFORMATEX& format, WavePipe* pipe);
    MMRESULT (*start)(void* handle);
    MMRESULT (*halt)(void* handle);
    MMRESULT (*prepare)(void* handle, WAVEHDR& header);
    MMRESULT (*unprepare)(void* handle, WAVEHDR& header);
    MMRESULT (*submit)(void* handle, WAVEHDR& header);
    MMRESULT (*reset)(void* handle);
    MMRESULT (*close)(void* handle);

    static const Calls capture;
    static const Calls play;

    template <typename Handle, auto call>
    static MMRESULT openWith(void*& handle, const ::WAVEFORMATEX& format, WavePipe* pipe) {
        Handle opened = nullptr;
        const MMRESULT result = call(&opened, WAVE_MAPPER, &format,
                                     reinterpret_cast<DWORD_PTR>(&onSystemMessage<Handle>),
                                     reinterpret_cast<DWORD_PTR>(pipe), CALLBACK_FUNCTION);
        handle = result == MMSYSERR_NOERROR ? opened : nullptr;
        return result;
    }

    template <typename Handle>
    static void CALLBACK onSystemMessage(Handle /*handle*/, UINT message, DWORD_PTR pipe,
                                         DWORD_PTR /*first*/, DWORD_PTR /*second*/) {
        reinterpret_cast<WavePipe*>(pipe)->onMessage(message);
    }

    template <typename Handle, auto call>
    static MMRESULT plain(void* handle) {
        return call(static_cast<Handle>(handle));
    }

    template <typename Handle, auto call>
    static MMRESULT withHeader(void* handle, WAVEHDR& header) {
        return call(static_cast<Handle>(handle), &header, sizeof header);
    }
};

const WavePipe::Calls WavePipe::Calls::capture{
    &openWith<HWAVEIN, waveInOpen>,
    &plain<HWAVEIN, waveInStart>,
    &plain<HWAVEIN, waveInStop>,
    &withHeader<HWAVEIN, waveInPrepareHeader>,
    &withHeader<HWAVEIN, waveInUnprepareHeader>,
    &withHeader<HWAVEIN, waveInAddBuffer>,
    &plain<HWAVEIN, waveInReset>,
    &plain<HWAVEIN, waveInClose>,
};

const WavePipe::Calls WavePipe::Calls::play{
    &openWith<HWAVEOUT, waveOutOpen>,
    &plain<HWAVEOUT, waveOutRestart>,
    &plain<HWAVEOUT, waveOutPause>,
    &withHeader<HWAVEOUT, waveOutPrepareHeader>,
    &withHeader<HWAVEOUT, waveOutUnprepareHeader>,
    &withHeader<HWAVEOUT, waveOutWrite>,
    &plain<HWAVEOUT, waveOutReset>,
    &plain<HWAVEOUT, waveOutClose>,
};

WavePipe::WavePipe(UnitRing::Direction direction, UnitRing& ring, GapCount& gaps,
                   std::function<void()> onLost)
    : direction_(direction),
      ring_(ring),
      gaps_(gaps),
      onLost_(std::move(onLost)),
      calls_(direction == UnitRing::Direction::capture ? Calls::capture : Calls::play),
      system_(std::make_unique<System>()) {
    ring_.SetOnSubmit([this](int32_t unit) { submit(unit); });
}

WavePipe::~WavePipe() {
    Close();
}

// On the system's thread.
void WavePipe::onMessage(uint32_t message) {
    if (message == WIM_DATA || message == WOM_DONE) {
        ring_.Complete();
        if (running_ && ring_.DeviceUnit().empty() && !ring_.isFlushed()) {
            gaps_.Note();
        }
    } else if (message == WIM_CLOSE || message == WOM_CLOSE) {
        handle_ = nullptr;
    }
}

std::string WavePipe::refusal(uint32_t error, const WAVEFORMATEX& format) const {
    const bool captures = direction_ == UnitRing::Direction::capture;
    const std::string use = captures ? "capture from" : "play to";
    switch (error) {
        case WAVERR_BADFORMAT:
            return "WinMM cannot " + std::string(captures ? "capture " : "play ") +
                   std::to_string(format.channels) + " channels of " +
                   std::to_string(format.bitsPerSample) + " bits at " +
                   std::to_string(format.sampleRate) + " Hz";
        case MMSYSERR_ALLOCATED:
            return "The device to " + use + " is in use by another program";
        case MMSYSERR_BADDEVICEID:
        case MMSYSERR_NODRIVER:
            return "WinMM has no device to " + use;
        default:
            return "WinMM cannot open the device to " + use + " (error " + std::to_string(error) +
                   ")";
    }
}

std::string WavePipe::openDevice(const WAVEFORMATEX& format) {
    void* handle = nullptr;
    const MMRESULT error = calls_.open(handle, systemFormat(format), this);
    if (error != MMSYSERR_NOERROR) {
        return refusal(error, format);
    }
    handle_ = handle;
    calls_.halt(handle);
    return "";
}

std::string WavePipe::Open(const WAVEFORMATEX& format, int32_t frames) {
    if (handle_ != nullptr) {
        return "The device is open already";
    }
    std::string reason = openDevice(format);
    if (!reason.empty()) {
        return reason;
    }
    const int32_t units = frames / UnitRing::unitFrames;
    system_->headers.assign(static_cast<size_t>(units), {});
    if (!ring_.Open(direction_, format.blockAlign, format.sampleRate, frames)) {
        Close();
        return refusal(WAVERR_BADFORMAT, format);
    }
    // Capture units were prepared when they were submitted.
    if (direction_ == UnitRing::Direction::play) {
        for (int32_t unit = 0; unit < units; ++unit) {
            prepare(unit);
        }
    }
    return "";
}

void WavePipe::prepare(int32_t unit) {
    WAVEHDR& header = system_->headers[static_cast<size_t>(unit)];
    if ((header.dwFlags & WHDR_PREPARED) == 0) {
        const auto bytes = ring_.UnitAt(unit);
        header.lpData = reinterpret_cast<char*>(bytes.data());
        header.dwBufferLength = static_cast<DWORD>(bytes.size());
        calls_.prepare(handle_, header);
    }
}

// On the thread of a worker; for the first units of a capture on the owner's.
void WavePipe::submit(int32_t unit) {
    MMRESULT error = MMSYSERR_NOERROR;
    {
        const std::lock_guard lock(closing_);
        if (handle_ == nullptr) {
            return;
        }
        prepare(unit);
        error = calls_.submit(handle_, system_->headers[static_cast<size_t>(unit)]);
    }
    if (error != MMSYSERR_NOERROR) {
        onLost_();
    }
}

void WavePipe::Start() {
    running_ = handle_ != nullptr;
    if (running_) {
        calls_.start(handle_);
    }
}

void WavePipe::Stop() {
    running_ = false;
    if (handle_ != nullptr) {
        calls_.halt(handle_);
    }
}

void WavePipe::Close() {
    ring_.Close();
    running_ = false;
    const std::lock_guard lock(closing_);
    void* const handle = handle_;
    if (handle == nullptr) {
        return;
    }
    calls_.reset(handle);
    for (WAVEHDR& header : system_->headers) {
        calls_.unprepare(handle, header);
    }
    const MMRESULT error = calls_.close(handle);
    while (error == MMSYSERR_NOERROR && handle_ != nullptr) {
        std::this_thread::sleep_for(std::chrono::milliseconds(ring_.sleepMs()));
    }
    handle_ = nullptr;
}

}  // namespace tonvane
