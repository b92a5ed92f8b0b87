#include "link/Recording.h"

#include <cstdio>

namespace tonvane::tests {

namespace {

class RecordingTransport : public LinkTransport {
  public:
    explicit RecordingTransport(Recording& record) : record_(record) {}

    std::intptr_t open() override {
        record_.log.emplace_back("open");
        return record_.opens ? 5 : -1;
    }
    bool connect(std::intptr_t /*socket*/, uint16_t port) override {
        record_.log.push_back("connect " + std::to_string(port));
        return record_.connects;
    }
    void exchange(std::intptr_t /*socket*/, std::span<const uint8_t> frame,
                  std::span<uint8_t> reply) override {
        record_.log.push_back(Hex(frame));
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

std::string Hex(std::span<const uint8_t> bytes) {
    std::string text;
    for (const uint8_t byte : bytes) {
        char digits[8];
        std::snprintf(digits, sizeof digits, "%s%02X", text.empty() ? "" : " ", byte);
        text += digits;
    }
    return text;
}

std::unique_ptr<LinkTransport> Recording::transport() {
    return std::make_unique<RecordingTransport>(*this);
}

std::vector<std::string> Bracketed(const std::vector<std::string>& inside) {
    std::vector<std::string> all{"00 1A 01", "01 05 01 40", "wait 23"};
    all.insert(all.end(), inside.begin(), inside.end());
    all.insert(all.end(), {"00 1A 01", "01 05 01 00", "wait 23"});
    return all;
}

std::vector<std::string> UnityFrames(int first, int last) {
    std::vector<std::string> frames;
    for (int reg = first; reg <= last; ++reg) {
        const uint8_t head[] = {1, static_cast<uint8_t>(reg), 20, 0, 0x80};
        std::string frame = Hex(head);
        for (int zero = 0; zero < 18; ++zero) {
            frame += " 00";
        }
        frames.push_back(frame);
    }
    return frames;
}

}  // namespace tonvane::tests
