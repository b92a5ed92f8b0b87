// What the client of the link adds to bare socket calls: a register written and read back through
// CAmpLink, and the same two frames by plain send and recv, with one server behind both.
#include <array>
#include <memory>
#include <thread>

#include <benchmark/benchmark.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "link/AmpLink.h"
#include "virtual-amplifier/LinkServer.h"
#include "virtual-amplifier/VirtualAmplifier.h"

namespace tonvane::bench {
namespace {

constexpr int32_t section = 0x29;
constexpr int32_t sectionBytes = 20;
constexpr int32_t headerBytes = 3;

class Desk {
  public:
    ~Desk() {
        server_.stop();
        thread_.join();
    }

    [[nodiscard]] uint16_t port() const { return server_.port(); }

  private:
    virtualamp::VirtualAmplifier amplifier_{[](auto, auto) {}};
    virtualamp::LinkServer server_{0, [this](auto frame) { return amplifier_.answer(frame); }};
    std::thread thread_{[this] { server_.run(); }};
};

void LinkFrames(benchmark::State& state) {
    Desk desk;
    std::intptr_t socket = -1;
    CAmpLink link(socket, desk.port(), std::make_unique<CheckedTcpTransport>(10000));
    link.Connect();
    const std::array<int32_t, 5> words{1, 2, 3, 4, 5};
    std::array<uint8_t, sectionBytes> contents{};
    for (auto _ : state) {
        link.WriteRegister(section, words, sectionBytes);
        link.ReadRegister(section, sectionBytes, contents);
        benchmark::DoNotOptimize(contents.data());
    }
}
BENCHMARK(LinkFrames)->UseRealTime();

// recv until so many bytes are there.
bool receive(int socket, uint8_t* bytes, int32_t count) {
    while (count > 0) {
        const ssize_t more = recv(socket, bytes, static_cast<size_t>(count), 0);
        if (more <= 0) {
            return false;
        }
        bytes += more;
        count -= static_cast<int32_t>(more);
    }
    return true;
}

void BareFrames(benchmark::State& state) {
    Desk desk;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(desk.port());
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    if (connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        state.SkipWithError("no connection");
    }
    const std::array<uint8_t, headerBytes + sectionBytes> write{1, section, sectionBytes, 0, 0,
                                                                0, 1};
    const std::array<uint8_t, headerBytes> read{0, section, sectionBytes};
    std::array<uint8_t, sectionBytes> reply{};
    for (auto _ : state) {
        send(socket, write.data(), write.size(), 0);
        bool whole = receive(socket, reply.data(), 1);
        send(socket, read.data(), read.size(), 0);
        whole = receive(socket, reply.data(), sectionBytes) && whole;
        if (!whole) {
            state.SkipWithError("no reply");
            break;
        }
    }
    close(socket);
}
BENCHMARK(BareFrames)->UseRealTime();

}  // namespace
}  // namespace tonvane::bench
