// A canvas that keeps what is drawn on it as lines of text.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "graph/Canvas.h"

namespace tonvane::tests {

// All images of one device write to the device's list, each with its number in front: 0 for the
// device, then in the order in which they are made.
class RecordingCanvas : public Canvas {
  public:
    RecordingCanvas() = default;

    [[nodiscard]] std::unique_ptr<Canvas> makeImage(int32_t width, int32_t height) const override;
    void setOrigin(Point fromUpperLeft) override;
    void fillRectangle(const Rectangle& rectangle, Color color) override;
    void setPen(Color color, int32_t width) override;
    void drawLines(std::span<const Segment> segments) override;
    void drawText(Point at, TextAnchor anchor, Color color, std::string_view text) override;
    void roundRectangle(const Rectangle& rectangle, int32_t corner, Color fill) override;
    void clip(const Rectangle& rectangle) override;
    void endClip() override;
    void copyImage(const Canvas& image) override;

    // What was drawn since the last call.
    std::vector<std::string> take();

    // The segments of the last drawLines.
    [[nodiscard]] const std::vector<Segment>& lastLines() const { return shared_->lines; }

  private:
    struct Shared {
        std::vector<std::string> calls;
        std::vector<Segment> lines;
        int images = 0;
    };
    void add(const std::string& call) const;

    std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();
    int number_ = 0;
};

}  // namespace tonvane::tests
