// Undo and redo of edits of the target.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "design/TargetRecord.h"

namespace tonvane {

// What an edit changes.
struct TargetState {
    int32_t curve = 0;  // 0 to 9
    TargetRecord record = BuiltInTargetCurve;
    int32_t kind = zeroCurve;

    bool operator==(const TargetState&) const = default;
};

class TargetHistory {
  public:
    static constexpr size_t maxSteps = 200;

    // Forgets all edits; the state is this from now on.
    void start(const TargetState& state);

    // The state has become another by an edit; what was undone is gone. The same state is no edit.
    void edited(const TargetState& state);

    // The state has become another by something that cannot be undone, such as the choice of
    // another curve; the edits stay.
    void moved(const TargetState& state) { present_ = state; }

    // The state to go back or forward to, which is the present one from now on; nothing at the end.
    std::optional<TargetState> undo();
    std::optional<TargetState> redo();

  private:
    struct Edit {
        TargetState before;
        TargetState after;
    };

    TargetState present_;
    std::vector<Edit> done_;
    std::vector<Edit> undone_;
};

}  // namespace tonvane
