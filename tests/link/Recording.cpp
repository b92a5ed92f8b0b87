#include "link/Recording.h"

#include <fmt/format.h>

#include "amplifier/RegisterTable.h"
#include "amplifier/WordBytes.h"

namespace tonvane::tests {

namespace {

constexpr std::intptr_t handle = 5;

std::string hex(std::span<const uint8_t> bytes) {
    return fmt::format("{:02X}", fmt::join(bytes, " "));
}

class RecordingTransport : public LinkTransport {
  public:
    explicit RecordingTransport(Recording& record) : record_(record) {}

    std::intptr_t open() override {
        record_.log.emplace_back("open");
        return record_.opens ? handle : -1;
    }
    bool connect(std::intptr_t /*socket*/, uint16_t port) override {
        record_.log.push_back("connect " + std::to_string(port));
        return record_.connects;
    }
    void exchange(std::intptr_t /*socket*/, std::span<const uint8_t> frame,
                  std::span<uint8_t> reply) override {
        record_.log.push_back(hex(frame));
        for (uint8_t& byte : reply) {
            if (frame[0] == 0 && !record_.replies.empty()) {
                byte = record_.replies.front();
                record_.replies.pop_front();
            }
        }
    }
    void close(std::intptr_t /*socket*/) override { record_.log.emplace_back("close"); }
    void wait(int32_t milliseconds) override {
        record_.log.push_back("wait " + std::to_string(milliseconds));
    }

  private:
    Recording& record_;
};

}  // namespace

std::unique_ptr<LinkTransport> Recording::transport() {
    return std::make_unique<RecordingTransport>(*this);
}

Lines Bracketed(const Lines& inside) {
    Lines all{"00 1A 01", "01 05 01 40", "wait 23"};
    all.insert(all.end(), inside.begin(), inside.end());
    all.insert(all.end(), {"00 1A 01", "01 05 01 00", "wait 23"});
    return all;
}

std::string WriteFrame(const RegisterWrite& write) {
    const auto length = static_cast<uint8_t>(LookUpRegister(write.reg).length);
    std::vector<uint8_t> frame{1, static_cast<uint8_t>(write.reg), length};
    frame.resize(3 + size_t{length});
    WordsToBytes(write.words, std::span(frame).subspan(3));
    return hex(frame);
}

Lines SectionFrames(int first, std::span<const int32_t> words) {
    Lines frames;
    for (int reg = first; !words.empty(); ++reg, words = words.subspan(5)) {
        frames.push_back(WriteFrame({reg, {words[0], words[1], words[2], words[3], words[4]}}));
    }
    return frames;
}

Lines UnityFrames(int first, int last) {
    Lines frames;
    for (int reg = first; reg <= last; ++reg) {
        frames.push_back(WriteFrame({reg, {0x800000}}));
    }
    return frames;
}

}  // namespace tonvane::tests
