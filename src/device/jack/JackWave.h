// A device on a running JACK server.
//
// Open makes a client with a port for each channel and connects it, channel by channel, to the
// ports of a client that stands for a device: its playback and its capture ports ("system" for the
// hardware). A channel for which it has no port stays unconnected and is silent. Between the
// workers and the server's thread stand two lock-free rings; the callback calls them and asks for
// the ports' buffers, and takes no lock and no memory.
#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <vector>

#include "device/SampleDevice.h"
#include "device/jack/JackClient.h"

struct _jack_port;  // NOLINT(bugprone-reserved-identifier): the library's own name

namespace tonvane {

class CJackWave : public SampleDevice {
  public:
    explicit CJackWave(std::string pair = "system") : pair_(std::move(pair)) {}
    ~CJackWave() override;

    // Refuses another rate than the server's, and a direction for which the pair has no port.
    bool Open(const WAVEFORMATEX* capture, const WAVEFORMATEX* play, int frames,
              void* notify) override;
    void Close() override;
    bool Start() override;
    void Stop() override { running_ = false; }

    // What the server reports for the way of the connected ports: from the device's input to this
    // program, and from it to the device's output. 0 while closed.
    int Latency() override;

    // The callback's body, on the server's thread.
    void Process(int32_t frames);

  private:
    using Ports = std::vector<_jack_port*>;

    std::string open(const WAVEFORMATEX* capture, const WAVEFORMATEX* play, int frames);
    bool setCallbacks();
    bool registerPorts(Ports& ports, int32_t count, const std::string& name, unsigned long kind);
    bool connect(const JackPair& pair);
    bool settle(const JackPair& pair);
    void noteTime(uint32_t frames);
    static int32_t latencyOf(const Ports& ports, int mode);

    std::string pair_;
    std::mutex clientMutex_;  // between Latency and Close
    JackClient client_;
    Ports inputs_;
    Ports outputs_;
    std::atomic<bool> isOpen_{false};
    _jack_client* clock_ = nullptr;      // the client, for as long as there are callbacks
    std::atomic<int64_t> lastTime_{-1};  // the server's count of frames, while it runs; -1 ahead
};

}  // namespace tonvane
