#include "link/LinkTransport.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <string>
#include <thread>

#include "link/LinkFrame.h"
#include "link/Socket.h"

namespace tonvane {

namespace {

using Clock = std::chrono::steady_clock;

std::string milliseconds(int32_t number) {
    return std::to_string(number) + " ms";
}

}  // namespace

std::intptr_t TcpTransport::open() {
    return tcp::Open();
}

bool TcpTransport::connect(std::intptr_t socket, uint16_t port) {
    return tcp::ConnectToLocalPort(socket, port);
}

void TcpTransport::exchange(std::intptr_t socket, std::span<const uint8_t> frame,
                            std::span<uint8_t> reply) {
    tcp::Send(socket, frame);
    while (!reply.empty()) {
        const int32_t count = tcp::Receive(socket, reply);
        if (count <= 0) {
            return;
        }
        reply = reply.subspan(static_cast<size_t>(count));
    }
}

void TcpTransport::close(std::intptr_t socket) {
    tcp::Close(socket);
}

void TcpTransport::wait(int32_t milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

bool CheckedTcpTransport::connect(std::intptr_t socket, uint16_t port) {
    if (!TcpTransport::connect(socket, port)) {
        throw LinkError("no link server answers at 127.0.0.1, port " + std::to_string(port));
    }
    tcp::LimitReceive(socket, timeLimit_);
    return true;
}

void CheckedTcpTransport::exchange(std::intptr_t socket, std::span<const uint8_t> frame,
                                   std::span<uint8_t> reply) {
    const auto complain = [&](const std::string& what) {
        throw LinkError("the server " + what + " at the " + linkframe::NameFrame(frame));
    };
    const Clock::time_point start = Clock::now();
    if (!tcp::Send(socket, frame)) {
        complain("has closed the connection");
    }
    // Room for one byte more than a right server sends.
    std::array<uint8_t, 256> received{};
    size_t count = 0;
    while (count < reply.size()) {
        const auto room = std::span(received).first(reply.size() + 1).subspan(count);
        const int32_t more = tcp::Receive(socket, room);
        const bool isLate = Clock::now() - start > std::chrono::milliseconds(timeLimit_);
        if (more == tcp::outOfTime || (more > 0 && isLate)) {
            complain("answered " + std::to_string(count) + " of " + std::to_string(reply.size()) +
                     " bytes within " + milliseconds(timeLimit_));
        }
        if (more <= 0) {
            complain("closed the connection after " + std::to_string(count) + " of " +
                     std::to_string(reply.size()) + " bytes");
        }
        count += static_cast<size_t>(more);
    }
    if (count > reply.size()) {
        complain("sent more than the " + std::to_string(reply.size()) + " bytes asked for");
    }
    std::copy_n(received.begin(), reply.size(), reply.begin());
}

}  // namespace tonvane
