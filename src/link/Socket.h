// TCP client sockets of this computer: the one place that calls the platform's socket functions.
//
// Handles are the platform's, -1 for none. Calls block; none raises a signal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace tonvane::tcp {

// A new stream socket, -1 on failure.
std::intptr_t Open();

// Connects to a port of 127.0.0.1; whether it came about.
bool ConnectToLocalPort(std::intptr_t socket, uint16_t port);

// From now on a Receive gives up after so many milliseconds.
void LimitReceive(std::intptr_t socket, int32_t milliseconds);

// Whether all bytes went out.
bool Send(std::intptr_t socket, std::span<const uint8_t> bytes);

// What a Receive came to, in the place of a count above 0.
enum ReceiveEnd : int32_t { closedByPeer = 0, outOfTime = -1, failed = -2 };

// Waits for bytes and takes those that are there, at most as many as fit; their number, above 0, or
// a ReceiveEnd.
int32_t Receive(std::intptr_t socket, std::span<uint8_t> bytes);

void Close(std::intptr_t socket);

}  // namespace tonvane::tcp
