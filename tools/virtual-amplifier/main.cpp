// virtual-amplifier: a link server with an amplifier's registers behind it, for a desk without one.
#include <csignal>
#include <cstdio>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "commandline/CommandParser.h"
#include "link/AmpLink.h"
#include "link/LinkFrame.h"
#include "platform/System.h"
#include "virtual-amplifier/LinkServer.h"
#include "virtual-amplifier/VirtualAmplifier.h"

namespace {

using namespace tonvane;
using namespace tonvane::virtualamp;

LinkServer* runningServer = nullptr;

void stopServer(int /*signal*/) {
    runningServer->stop();
}

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File openLog(const std::string& path) {
    if (path.empty()) {
        return {stdout, [](std::FILE*) { return 0; }};
    }
    File file(std::fopen(path.c_str(), "w"), std::fclose);
    if (!file) {
        throw std::runtime_error(path + ": cannot be written");
    }
    return file;
}

void serve(uint16_t port, const std::string& logPath, Fault fault, int64_t firstWrongFrame) {
    const File log = openLog(logPath);
    VirtualAmplifier amplifier([&](auto frame, auto remarks) {
        std::fprintf(log.get(), "%s\n", linkframe::DescribeFrame(frame).c_str());
        for (const std::string& remark : remarks) {
            std::fprintf(log.get(), "  ! %s\n", remark.c_str());
        }
        std::fflush(log.get());
    });
    LinkServer server(port, [&](auto frame) { return amplifier.answer(frame); });
    server.goWrong(fault, firstWrongFrame);

    runningServer = &server;
    std::signal(SIGINT, stopServer);
    std::signal(SIGTERM, stopServer);
    std::printf("virtual-amplifier: listening at 127.0.0.1, port %d\n", server.port());
    std::fflush(stdout);
    server.run();
    std::printf("virtual-amplifier: stopped\n");
}

int runForPerson(int argc, char** argv) {
    CommandParser program(
        "A link server with the registers of an amplifier behind it, for trying things out.", {},
        "virtual-amplifier");
    uint16_t port = CAmpLink::defaultPort;
    std::string log;
    std::string fault;
    int64_t firstWrongFrame = 0;
    program.option("--port", port, "Port of 127.0.0.1, 0 for a free one").showDefault();
    program.option("--log", log, "File for the frames; without one they go to standard output");
    program
        .option("--fault", fault,
                "Go wrong on purpose: silent, half, closing, garbage, surplus, pieces or pausing")
        .oneOf(std::vector<std::string>{"silent", "half", "closing", "garbage", "surplus", "pieces",
                                        "pausing"});
    program.option("--after", firstWrongFrame, "How many frames are answered rightly before that")
        .notNegative();
    program.action([&] { serve(port, log, FaultNamed(fault), firstWrongFrame); });
    return program.run({argv + 1, argv + argc});
}

}  // namespace

int main(int argc, char** argv) {
    tonvane::KeepStandardStreams();
    try {
        return runForPerson(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "virtual-amplifier: %s\n", error.what());
        return 1;
    }
}
