// TCP client sockets of this computer: the one place that calls the platform's socket functions.
//
// Handles are the platform's, -1 for none. A limit is in milliseconds, and holds whatever signals
// arrive meanwhile; no call raises a signal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace tonvane::tcp {

constexpr int32_t noLimit = -1;  // waits as long as it takes

// A new stream socket, -1 on failure.
std::intptr_t Open();

// Connects to a port of 127.0.0.1. Only a limit of time runs out.
enum class Connection { made, refused, outOfTime };
Connection ConnectToLocalPort(std::intptr_t socket, uint16_t port, int32_t limit);

// Whether all bytes went out.
bool Send(std::intptr_t socket, std::span<const uint8_t> bytes);

// What a Receive came to, in the place of a count above 0.
enum ReceiveEnd : int32_t { closedByPeer = 0, outOfTime = -1, failed = -2 };

// Waits for bytes and takes those that are there, at most as many as fit; their number, above 0, or
// a ReceiveEnd. With a limit of 0 it does not wait.
int32_t Receive(std::intptr_t socket, std::span<uint8_t> bytes, int32_t limit);

void Close(std::intptr_t socket);

}  // namespace tonvane::tcp
