// A virtual amplifier behind a real socket, served by a thread of its own.
#pragma once

#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "link/LinkTransport.h"
#include "virtual-amplifier/LinkServer.h"
#include "virtual-amplifier/VirtualAmplifier.h"

namespace tonvane::tests {

class DeskAmplifier {
  public:
    // On a free port; from the frame `after` on it goes wrong.
    explicit DeskAmplifier(virtualamp::Fault fault = virtualamp::Fault::none, int64_t after = 0);
    ~DeskAmplifier() { stop(); }

    [[nodiscard]] uint16_t port() const { return server_.port(); }

    // Ends the server. The registers may be looked at after it.
    void stop();

    // What happened so far: frames as Hex has them, when the server took them, and what note added.
    std::vector<std::string> events();
    std::vector<std::string> remarks();
    void note(const std::string& event);

    // A transport of a window whose waits are noted instead of waited for.
    std::unique_ptr<LinkTransport> transport();

    virtualamp::VirtualAmplifier amplifier;

  private:
    std::mutex mutex_;
    std::vector<std::string> events_;
    std::vector<std::string> remarks_;
    virtualamp::LinkServer server_;
    std::thread thread_;
};

}  // namespace tonvane::tests
