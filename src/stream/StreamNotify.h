// What the workers of the engine tell the program.
#pragma once

#include <atomic>
#include <string>

namespace tonvane {

// Calls come on worker threads unless told otherwise, and must return soon: they are to pass the
// news on to the thread that owns the engine.
class StreamNotify {
  public:
    virtual ~StreamNotify() = default;

    // Playback or capture has ended; `complete`: a whole capture is there to be analysed.
    virtual void postCaptureDone(bool complete) = 0;

    // The text of StreamStatus has changed.
    virtual void postStatus() = 0;

    // An error to be shown, on the thread that owns the engine.
    virtual void showError(const std::string& text) = 0;
};

// The first status line as the workers last set it. Texts are constants of the program, so that
// setting and reading one is a single atomic access.
class StreamStatus {
  public:
    // Sets the text and tells the receiver.
    void announce(const char* text) {
        text_ = text;
        if (StreamNotify* receiver = notifyWindow) {
            receiver->postStatus();
        }
    }

    [[nodiscard]] const char* text() const { return text_; }

    std::atomic<StreamNotify*> notifyWindow{nullptr};  // outlives the workers; null for none

  private:
    std::atomic<const char*> text_{""};
};

}  // namespace tonvane
