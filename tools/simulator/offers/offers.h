// The device's offers that are computed from the vocabularies instead of written out.
#pragma once

#include "protocol/blocks/all.h"

namespace Morquil::Simulator {

/// The conversions between modes with compatible frame rates. Squeezing is always possible; the other aspect ratios are
/// for pictures of different shapes.
SupportedConversionsChangeSet OfferedConversions();

/// How far the picture can be moved relative to the reference: half a frame in each direction.
GenlockAvailabilityChangeSet OfferedReferenceOffsets();

/// Dropping frame numbers only makes sense at 29.97 and 59.94 frames per second.
AncillaryDataAvailabilityChangeSet OfferedDropFrameModes();

/// 3D pictures keep their mode, or change between interlaced and progressive at the same height.
Mode3DAvailabilityChangeSet Offered3DModes();

/// All processing modes. Their words contain blanks, so a list of them cannot be parsed: they do not come from text.
VideoAdvancedAvailabilityChangeSet OfferedProcessingModes();

}  // namespace Morquil::Simulator
