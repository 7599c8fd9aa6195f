// What the device offers, as far as it is worked out from the vocabularies instead of being written down.
#pragma once

#include "protocol/blocks/all.h"

namespace Morquil::Simulator {

/// The conversions between modes whose frame rates belong together. Squeezing is always possible; the other aspect
/// ratios are for pictures of different shapes.
SupportedConversionsChangeSet OfferedConversions();

/// How far the picture can be moved against the reference: half a frame in each direction.
GenlockAvailabilityChangeSet OfferedReferenceOffsets();

/// Dropping frame numbers makes sense at 29.97 and 59.94 frames per second only.
AncillaryDataAvailabilityChangeSet OfferedDropFrameModes();

/// 3D pictures keep their mode, or change between interlaced and progressive of one height.
Mode3DAvailabilityChangeSet Offered3DModes();

/// All processing modes. Their words hold blanks, so no list of them can be read: they do not come from text.
VideoAdvancedAvailabilityChangeSet OfferedProcessingModes();

}  // namespace Morquil::Simulator
