#include "simulator/device/still_store.h"

#include <algorithm>

namespace Morquil::Simulator {

namespace {

/// The flags that an action sets when it is complete.
VideoOutputChangeSet CompletionFlags(std::int32_t action, bool complete) {
    VideoOutputChangeSet flags;
    if (action == morquilAPIStillFrameCapture) {
        flags.stillStoreComplete.Set(complete);
    }
    if (action == morquilAPIStillFramePreview) {
        flags.stillLoadComplete.Set(complete);  // a displayed frame counts as loaded
        flags.stillPreviewComplete.Set(complete);
    }
    return flags;
}

VideoOutputChangeSet EmptyStore() {
    VideoOutputChangeSet flags;
    flags.stillFramePresent.Set(false);
    flags.stillLoadComplete.Set(false);
    flags.stillStoreComplete.Set(false);
    flags.stillPreviewComplete.Set(false);
    return flags;
}

VideoOutputChangeSet Done(std::int32_t action) {
    VideoOutputChangeSet flags = CompletionFlags(action, true);
    if (action == morquilAPIStillFrameCapture) {
        flags.stillFramePresent.Set(true);
    }
    return flags;
}

}  // namespace

VideoOutputChangeSet StillStore::Begin(std::int32_t action) {
    if (action == morquilAPIStillFrameDelete) {
        due_ = {};
        return EmptyStore();
    }
    due_[static_cast<std::size_t>(action)] = now_ + duration_;
    return CompletionFlags(action, false);
}

VideoOutputChangeSet StillStore::Advance(Time now) {
    now_ = std::max(now_, now);
    VideoOutputChangeSet flags;
    for (std::size_t action = 0; action < due_.size(); ++action) {
        if (due_[action] && *due_[action] <= now_) {
            Merge(flags, Done(static_cast<std::int32_t>(action)));
            due_[action].reset();
        }
    }
    return flags;
}

std::optional<StillStore::Time> StillStore::NextDue() const {
    std::optional<Time> next;
    for (const std::optional<Time>& due : due_) {
        if (due && (!next || *due < *next)) {
            next = due;
        }
    }
    return next;
}

}  // namespace Morquil::Simulator
