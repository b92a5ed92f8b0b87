#include "link/DeskAmplifier.h"

#include "link/Recording.h"

namespace tonvane::tests {

namespace {

class NotedWaits : public TcpTransport {
  public:
    explicit NotedWaits(DeskAmplifier& desk) : desk_(desk) {}
    void wait(int32_t milliseconds) override { desk_.note("wait " + std::to_string(milliseconds)); }

  private:
    DeskAmplifier& desk_;
};

}  // namespace

DeskAmplifier::DeskAmplifier(virtualamp::Fault fault, int64_t after)
    : amplifier([this](auto frame, auto remarks) {
          const std::lock_guard lock(mutex_);
          events_.push_back(Hex(frame));
          remarks_.insert(remarks_.end(), remarks.begin(), remarks.end());
      }),
      server_(0, [this](auto frame) { return amplifier.answer(frame); }) {
    server_.goWrong(fault, after);
    thread_ = std::thread([this] { server_.run(); });
}

void DeskAmplifier::stop() {
    if (thread_.joinable()) {
        server_.stop();
        thread_.join();
    }
}

std::vector<std::string> DeskAmplifier::events() {
    const std::lock_guard lock(mutex_);
    return events_;
}

std::vector<std::string> DeskAmplifier::remarks() {
    const std::lock_guard lock(mutex_);
    return remarks_;
}

void DeskAmplifier::note(const std::string& event) {
    const std::lock_guard lock(mutex_);
    events_.push_back(event);
}

std::unique_ptr<LinkTransport> DeskAmplifier::transport() {
    return std::make_unique<NotedWaits>(*this);
}

}  // namespace tonvane::tests
