// An ASIO driver without hardware: what the host plays on a channel it captures on the same
// channel, some frames later. The clock is that of the computer.
#pragma once

#include <array>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "Settings.h"
#include "device/asio/AsioInterface.h"

namespace tonvane::loop {

// The class of the driver, which is the id of its interface as well.
extern const GUID driverClass;
constexpr const char* driverName = "Loop driver";

class LoopDriver final : public IASIO {
  public:
    LoopDriver();

    // Objects that live.
    static std::atomic<int32_t> alive;

    STDMETHODIMP QueryInterface(REFIID id, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;

    int32_t init(void* system) override;
    void getDriverName(char* name) override;
    int32_t getDriverVersion() override { return 1; }
    void getErrorMessage(char* text) override;
    AsioError start() override;
    AsioError stop() override;
    AsioError getChannels(int32_t* inputs, int32_t* outputs) override;
    AsioError getLatencies(int32_t* input, int32_t* output) override;
    AsioError getBufferSize(int32_t* least, int32_t* most, int32_t* preferred,
                            int32_t* granularity) override;
    AsioError canSampleRate(double rate) override;
    AsioError getSampleRate(double* rate) override;
    AsioError setSampleRate(double rate) override;
    AsioError getClockSources(ASIOClockSource* clocks, int32_t* count) override;
    AsioError setClockSource(int32_t reference) override;
    AsioError getSamplePosition(void* position, void* timeStamp) override;
    AsioError getChannelInfo(ASIOChannelInfo* info) override;
    AsioError createBuffers(ASIOBufferInfo* infos, int32_t channels, int32_t frames,
                            ASIOCallbacks* callbacks) override;
    AsioError disposeBuffers() override;
    AsioError controlPanel() override { return ASE_NotPresent; }
    AsioError future(int32_t selector, void* option) override;
    AsioError outputReady() override;

  private:
    using Sample = uint32_t;  // the bits of a sample, of whatever type
    using Buffers = std::array<std::vector<Sample>, 2>;

    struct Channel {
        Buffers in;
        Buffers out;
        bool hasInput = false;
        bool hasOutput = false;
        std::vector<Sample> onTheWay;  // a ring of as many frames as the path is long
    };

    ~LoopDriver();
    void note(const std::string& event) const;
    void run();
    void callHost(int32_t index);
    void deliver(Channel& channel, size_t index) const;
    void take(Channel& channel, size_t index) const;

    Settings settings_;
    std::atomic<ULONG> references_{1};
    double rate_ = 0.0;
    std::vector<Channel> channels_;
    ASIOCallbacks* callbacks_ = nullptr;  // null without buffers
    bool withTimeInfo_ = false;
    size_t position_ = 0;  // in the rings
    bool isReady_ = false;
    std::atomic<bool> running_{false};
    std::thread thread_;
};

}  // namespace tonvane::loop
