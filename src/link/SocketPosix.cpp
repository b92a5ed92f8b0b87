#include "link/Socket.h"

#include <algorithm>
#include <cerrno>
#include <chrono>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tonvane::tcp {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

int descriptor(std::intptr_t socket) {
    return static_cast<int>(socket);
}

// Whether something has come of it before the limit. A signal takes nothing from the limit and adds
// nothing.
bool isReady(int socket, short event, int32_t limit) {
    const Clock::time_point end = Clock::now() + milliseconds(limit);
    pollfd waiting{socket, event, 0};
    int left = limit;
    for (;;) {
        const int ready = ::poll(&waiting, 1, left);
        if (ready >= 0 || errno != EINTR) {
            return ready > 0;
        }
        if (limit != noLimit) {
            const auto rest = std::chrono::ceil<milliseconds>(end - Clock::now());
            left = static_cast<int>(std::max<int64_t>(rest.count(), 0));
        }
    }
}

}  // namespace

std::intptr_t Open() {
    return ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
}

// The connection comes about beside the program, which waits for it.
Connection ConnectToLocalPort(std::intptr_t socket, uint16_t port, int32_t limit) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const auto* generic = reinterpret_cast<const sockaddr*>(&address);
    const int number = descriptor(socket);
    const int flags = ::fcntl(number, F_GETFL);
    ::fcntl(number, F_SETFL, flags | O_NONBLOCK);
    int error = ::connect(number, generic, sizeof address) == 0 ? 0 : errno;
    if (error == EINPROGRESS || error == EINTR) {
        if (!isReady(number, POLLOUT, limit)) {
            return Connection::outOfTime;
        }
        socklen_t size = sizeof error;
        ::getsockopt(number, SOL_SOCKET, SO_ERROR, &error, &size);
    }
    ::fcntl(number, F_SETFL, flags);
    return error == 0 ? Connection::made : Connection::refused;
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

// Two limits need no question ahead whether there is something: to wait for ever, and not at all.
int32_t Receive(std::intptr_t socket, std::span<uint8_t> bytes, int32_t limit) {
    if (limit > 0 && !isReady(descriptor(socket), POLLIN, limit)) {
        return outOfTime;
    }
    const int flags = limit == 0 ? MSG_DONTWAIT : 0;
    for (;;) {
        const ssize_t count = ::recv(descriptor(socket), bytes.data(), bytes.size(), flags);
        if (count >= 0) {
            return static_cast<int32_t>(count);
        }
        if (errno == EAGAIN) {
            return outOfTime;
        }
        if (errno != EINTR) {
            return failed;
        }
    }
}

void Close(std::intptr_t socket) {
    ::close(descriptor(socket));
}

}  // namespace tonvane::tcp
