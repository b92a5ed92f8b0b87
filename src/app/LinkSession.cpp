#include "app/LinkSession.h"

#include <cstdio>

#include "amplifier/RegisterTable.h"
#include "app/Interruption.h"
#include "link/LinkFrame.h"

namespace tonvane {

namespace {

// Prints what would go out; every reply is zero.
class DryRunTransport : public LinkTransport {
  public:
    std::intptr_t open() override { return 0; }
    bool connect(std::intptr_t /*socket*/, uint16_t /*port*/) override { return true; }
    void exchange(std::intptr_t /*socket*/, std::span<const uint8_t> frame,
                  std::span<uint8_t> /*reply*/) override {
        std::printf("%s\n", linkframe::DescribeFrame(frame).c_str());
    }
    void close(std::intptr_t /*socket*/) override {}
    void wait(int32_t milliseconds) override { std::printf("wait %d ms\n", milliseconds); }
};

}  // namespace

void AddLinkOptions(Command& command, LinkOptions& options) {
    command.option("--port", options.port, "Port of the link server on this computer")
        .showDefault();
    command
        .option("--timeout", options.timeLimitMs, "Milliseconds that the server may take to answer")
        .range(1, 3600000)
        .showDefault();
}

std::unique_ptr<LinkTransport> MakeTransport(const LinkOptions& options) {
    if (options.dryRun) {
        return std::make_unique<DryRunTransport>();
    }
    return std::make_unique<CheckedTcpTransport>(options.timeLimitMs);
}

void ConnectLink(CAmpLink& link) {
    if (link.Connect() != CAmpLink::Connection::made) {
        throw LinkError("no socket can be made");
    }
    link.TrimOscillator();
}

void WriteUninterrupted(CAmpLink& link, std::span<const RegisterWrite> writes) {
    const InterruptMark interrupt;
    WriteInShutdown(link, writes);
    if (InterruptMark::isSet()) {
        throw Interrupted("interrupted; the registers are written and the amplifier runs");
    }
}

LinkSession::LinkSession(const LinkOptions& options)
    : isDryRun(options.dryRun), link(socket, options.port, MakeTransport(options)) {
    ConnectLink(link);
}

std::vector<uint8_t> LinkSession::readWhole(int32_t reg) {
    const int32_t length = LookUpRegister(reg).length;
    std::vector<uint8_t> bytes(static_cast<size_t>(length));
    link.ReadRegister(reg, length, bytes);
    return bytes;
}

void LinkSession::printDone(const std::string& text) const {
    if (!isDryRun) {
        std::printf("%s\n", text.c_str());
    }
}

}  // namespace tonvane
