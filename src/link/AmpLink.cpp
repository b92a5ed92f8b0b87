#include "link/AmpLink.h"

#include <algorithm>
#include <array>

#include "amplifier/RegisterTable.h"
#include "amplifier/WordBytes.h"
#include "link/LinkFrame.h"

namespace tonvane {

namespace {

constexpr std::intptr_t noSocket = -1;

constexpr int32_t stopAudio = 0x40;
constexpr int32_t runAudio = 0x00;
constexpr int32_t shutdownMs = 23;

constexpr int32_t factoryTrim = 0x80;
constexpr int32_t trimMs = 240;

bool isFrameLength(int32_t byteCount) {
    return byteCount > 0 && byteCount <= mostRegisterBytes;
}

}  // namespace

CAmpLink::CAmpLink(std::intptr_t& socket, uint16_t port, std::unique_ptr<LinkTransport> transport)
    : socket_(socket), port_(port), transport_(std::move(transport)) {
    socket_ = noSocket;
}

CAmpLink::Connection CAmpLink::Connect() {
    Term();
    socket_ = transport_->open();
    if (socket_ == noSocket) {
        return Connection::noSocket;
    }
    return transport_->connect(socket_, port_) ? Connection::made : Connection::refused;
}

void CAmpLink::TrimOscillator() {
    if (socket_ == noSocket) {
        return;
    }
    WriteRegister(registers::oscillatorTrim, {&factoryTrim, 1}, 1);
    transport_->wait(trimMs);
}

void CAmpLink::Term() {
    if (socket_ != noSocket) {
        transport_->close(socket_);
        socket_ = noSocket;
    }
}

void CAmpLink::WriteRegister(int32_t reg, std::span<const int32_t> words, int32_t byteCount) {
    if (socket_ == noSocket || !isFrameLength(byteCount)) {
        return;
    }
    std::array<uint8_t, linkframe::headerBytes + mostRegisterBytes> buffer{
        linkframe::writeCommand, static_cast<uint8_t>(reg), static_cast<uint8_t>(byteCount)};
    const auto frame = std::span(buffer).first(linkframe::headerBytes + byteCount);
    WordsToBytes(words, frame.subspan(linkframe::headerBytes));
    uint8_t answer = 0;
    transport_->exchange(socket_, frame, {&answer, 1});
}

void CAmpLink::ReadRegister(int32_t reg, int32_t byteCount, std::span<uint8_t> buffer) {
    if (socket_ == noSocket || !isFrameLength(byteCount)) {
        return;
    }
    const std::array<uint8_t, linkframe::headerBytes> frame{
        linkframe::readCommand, static_cast<uint8_t>(reg), static_cast<uint8_t>(byteCount)};
    const auto reply = buffer.first(byteCount);
    std::ranges::fill(reply, uint8_t{0});
    transport_->exchange(socket_, frame, reply);
}

void CAmpLink::EnterShutdown() {
    setShutdown(stopAudio);
}

void CAmpLink::ExitShutdown() {
    setShutdown(runAudio);
}

void CAmpLink::setShutdown(int32_t systemControl) {
    if (socket_ == noSocket) {
        return;
    }
    uint8_t period = 0;  // does not change the wait
    ReadRegister(registers::startStopPeriod, 1, {&period, 1});
    WriteRegister(registers::systemControl2, {&systemControl, 1}, 1);
    transport_->wait(shutdownMs);
}

}  // namespace tonvane
