#include "link/Socket.h"

#include <cerrno>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace tonvane::tcp {

namespace {

int descriptor(std::intptr_t socket) {
    return static_cast<int>(socket);
}

}  // namespace

std::intptr_t Open() {
    return ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
}

bool ConnectToLocalPort(std::intptr_t socket, uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const auto* generic = reinterpret_cast<const sockaddr*>(&address);
    return ::connect(descriptor(socket), generic, sizeof address) == 0;
}

void LimitReceive(std::intptr_t socket, int32_t milliseconds) {
    timeval limit{};
    limit.tv_sec = milliseconds / 1000;
    limit.tv_usec = milliseconds % 1000 * 1000;
    ::setsockopt(descriptor(socket), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
}

bool Send(std::intptr_t socket, std::span<const uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(descriptor(socket), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR) {
            continue;
        }
        if (sent <= 0) {
            return false;
        }
        bytes = bytes.subspan(static_cast<size_t>(sent));
    }
    return true;
}

int32_t Receive(std::intptr_t socket, std::span<uint8_t> bytes) {
    for (;;) {
        const ssize_t count = ::recv(descriptor(socket), bytes.data(), bytes.size(), 0);
        if (count >= 0) {
            return static_cast<int32_t>(count);
        }
        if (errno != EINTR) {
            return errno == EAGAIN || errno == EWOULDBLOCK ? outOfTime : failed;
        }
    }
}

void Close(std::intptr_t socket) {
    ::close(descriptor(socket));
}

}  // namespace tonvane::tcp
