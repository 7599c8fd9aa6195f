#include "features/video_index.h"

#include "protocol/table/frame_heights.h"

using namespace Morquil;
using Settings = AncillaryDataChangeSet;
using Availability = AncillaryDataAvailabilityChangeSet;

CMorquilVideoIndex::CMorquilVideoIndex(IUnknown& owner, IMessageQueue& queue)
    : Feature(owner, queue, IID_IMorquilVideoIndex, morquilVideoIndexPropertySetId) {}

// clang-format off
STDMETHODIMP CMorquilVideoIndex::SetIndexReaction(_MorquilAPIVideoIndexReaction reaction) { return SendWord<IndexReactions>(&Settings::indexReaction, reaction); }
STDMETHODIMP CMorquilVideoIndex::GetIndexReaction(_MorquilAPIVideoIndexReaction* reaction) { return Read(reaction, &Settings::indexReaction); }
STDMETHODIMP CMorquilVideoIndex::SetAFDInsertType(_MorquilAPIAFDInsertType type) { return SendWord<AfdInsertTypes>(&Settings::afdInsertType, type); }
STDMETHODIMP CMorquilVideoIndex::GetAFDInsertType(_MorquilAPIAFDInsertType* type) { return Read(type, &Settings::afdInsertType); }
STDMETHODIMP CMorquilVideoIndex::IsAFDInsertTypeAvailable(_MorquilAPIAFDInsertType type, LONG* isAvailable) { return QueryList(&Availability::afdInsertTypes, type, isAvailable); }
STDMETHODIMP CMorquilVideoIndex::SetAFDOutputLine(unsigned int line) { return Send(&Settings::afdOutputLine, line); }
STDMETHODIMP CMorquilVideoIndex::GetAFDOutputLine(unsigned int* line) { return Read(line, &Settings::afdOutputLine); }
STDMETHODIMP CMorquilVideoIndex::GetAFDOutputLineRange(unsigned int frameHeight, unsigned int* min, unsigned int* max) { return ReadRange(min, max, &Availability::afdOutputLineRange, FrameHeightSlot(frameHeight)); }
// clang-format on

/// Other features share this block; changes to their values are not reported here. The reset and the last height belong
/// to no feature.
bool CMorquilVideoIndex::MergeSettings(Settings& copy, const Settings& incoming) {
    return MergeShared(copy, incoming, &Settings::indexReaction, &Settings::afdInsertType, &Settings::afdOutputLine);
}

bool CMorquilVideoIndex::MergeAvailability(Availability& copy, const Availability& incoming) {
    return MergeShared(copy, incoming, &Availability::indexReactions, &Availability::afdInsertTypes,
                       &Availability::afdOutputLineRange);
}
