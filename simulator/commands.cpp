#include "simulator/commands.h"

namespace Morquil::Simulator {

VideoOutputChangeSet StillStoreAfter(std::int32_t action) {
    VideoOutputChangeSet store;
    switch (action) {
        case morquilAPIStillFrameDelete:
            store.stillFramePresent.Set(false);
            store.stillLoadComplete.Set(false);
            store.stillStoreComplete.Set(false);
            store.stillPreviewComplete.Set(false);
            break;
        case morquilAPIStillFrameCapture:
            store.stillFramePresent.Set(true);
            store.stillStoreComplete.Set(true);
            break;
        case morquilAPIStillFramePreview:
            store.stillPreviewComplete.Set(true);
            break;
        default:
            break;
    }
    return store;
}

}  // namespace Morquil::Simulator
