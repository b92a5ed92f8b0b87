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

int32_t millisecondsUntil(Clock::time_point end) {
    const auto rest = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
    return static_cast<int32_t>(std::max<int64_t>(rest.count(), 0));
}

// A server that never stops sending is not read to its end.
void dropUnasked(std::intptr_t socket) {
    std::array<uint8_t, 4096> unasked{};
    constexpr int32_t mostRounds = 16;
    for (int32_t round = 0; round < mostRounds && tcp::Receive(socket, unasked, 0) > 0; ++round) {
    }
}

}  // namespace

std::intptr_t TcpTransport::open() {
    return tcp::Open();
}

bool TcpTransport::connect(std::intptr_t socket, uint16_t port) {
    return tcp::ConnectToLocalPort(socket, port, tcp::noLimit) == tcp::Connection::made;
}

void TcpTransport::exchange(std::intptr_t socket, std::span<const uint8_t> frame,
                            std::span<uint8_t> reply) {
    dropUnasked(socket);
    tcp::Send(socket, frame);
    int32_t limit = tcp::noLimit;
    while (!reply.empty()) {
        const int32_t count = tcp::Receive(socket, reply, limit);
        if (count <= 0) {
            return;
        }
        reply = reply.subspan(static_cast<size_t>(count));
        limit = pieceLimit_;
    }
}

void TcpTransport::close(std::intptr_t socket) {
    tcp::Close(socket);
}

void TcpTransport::wait(int32_t milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

bool CheckedTcpTransport::connect(std::intptr_t socket, uint16_t port) {
    const tcp::Connection connection = tcp::ConnectToLocalPort(socket, port, timeLimit_);
    if (connection != tcp::Connection::made) {
        const bool isLate = connection == tcp::Connection::outOfTime;
        throw LinkError("no link server answers at 127.0.0.1, port " + std::to_string(port) +
                        (isLate ? " within " + milliseconds(timeLimit_) : ""));
    }
    return true;
}

void CheckedTcpTransport::exchange(std::intptr_t socket, std::span<const uint8_t> frame,
                                   std::span<uint8_t> reply) {
    const auto complain = [&](const std::string& what) {
        throw LinkError("the server " + what + " at the " + linkframe::NameFrame(frame));
    };
    // Room for one byte more than a right server sends.
    std::array<uint8_t, 256> received{};
    if (tcp::Receive(socket, std::span(received).first(1), 0) > 0) {
        complain("had sent more than it was asked for");
    }
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(timeLimit_);
    if (!tcp::Send(socket, frame)) {
        complain("has closed the connection");
    }
    size_t count = 0;
    while (count < reply.size()) {
        const auto room = std::span(received).first(reply.size() + 1).subspan(count);
        const int32_t more = tcp::Receive(socket, room, millisecondsUntil(end));
        if (more == tcp::outOfTime) {
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
