#include "features/timecode.h"

#include "protocol/table/frame_heights.h"

using namespace Morquil;
using Settings = AncillaryDataChangeSet;
using Availability = AncillaryDataAvailabilityChangeSet;

CMorquilTimecode::CMorquilTimecode(IUnknown& owner, IMessageQueue& queue)
    : Feature(owner, queue, IID_IMorquilTimecode, morquilTimecodePropertySetId) {}

// clang-format off
STDMETHODIMP CMorquilTimecode::SetMode(_MorquilAPITimecodeMode mode) { return SendWord<TimecodeModes>(&Settings::timecodeMode, mode); }
STDMETHODIMP CMorquilTimecode::GetMode(_MorquilAPITimecodeMode* mode) { return Read(mode, &Settings::timecodeMode); }
STDMETHODIMP CMorquilTimecode::IsModeAvailable(_MorquilAPITimecodeMode mode, LONG* isAvailable) { return QueryList(&Availability::timecodeModes, mode, isAvailable); }
STDMETHODIMP CMorquilTimecode::SetInputLine(unsigned int line) { return Send(&Settings::timecodeInputLine, line); }
STDMETHODIMP CMorquilTimecode::GetInputLine(unsigned int* line) { return Read(line, &Settings::timecodeInputLine); }
STDMETHODIMP CMorquilTimecode::SetOutputLine(unsigned int line) { return Send(&Settings::timecodeOutputLine, line); }
STDMETHODIMP CMorquilTimecode::GetOutputLine(unsigned int* line) { return Read(line, &Settings::timecodeOutputLine); }
STDMETHODIMP CMorquilTimecode::GetLineRange(unsigned int frameHeight, unsigned int* min, unsigned int* max) { return ReadRange(min, max, &Availability::timecodeLineRange, FrameHeightSlot(frameHeight)); }
STDMETHODIMP CMorquilTimecode::SetDropFrameMode(_MorquilAPITimecodeDropFrameMode mode) { return SendWord<TimecodeDropFrameModes>(&Settings::timecodeDropFrameMode, mode); }
STDMETHODIMP CMorquilTimecode::GetDropFrameMode(_MorquilAPITimecodeDropFrameMode* mode) { return Read(mode, &Settings::timecodeDropFrameMode); }
STDMETHODIMP CMorquilTimecode::IsDropFrameModeAvailable(_MorquilAPIVideoMode outputMode, _MorquilAPITimecodeDropFrameMode mode, LONG* isAvailable) { return QueryList(&Availability::timecodeDropFrameModes, outputMode, mode, isAvailable); }
STDMETHODIMP CMorquilTimecode::SetLossMode(_MorquilAPITimecodeLossMode mode) { return SendWord<TimecodeLossModes>(&Settings::timecodeLossMode, mode); }
STDMETHODIMP CMorquilTimecode::GetLossMode(_MorquilAPITimecodeLossMode* mode) { return Read(mode, &Settings::timecodeLossMode); }
STDMETHODIMP CMorquilTimecode::SetSource(_MorquilAPITimecodeSource source) { return SendWord<TimecodeSources>(&Settings::timecodeSource, source); }
STDMETHODIMP CMorquilTimecode::GetSource(_MorquilAPITimecodeSource* source) { return Read(source, &Settings::timecodeSource); }
STDMETHODIMP CMorquilTimecode::SetGenerateValue(unsigned int timecode) { return Send(&Settings::timecodeGenerateValue, timecode); }
STDMETHODIMP CMorquilTimecode::GetGenerateValue(unsigned int* timecode) { return Read(timecode, &Settings::timecodeGenerateValue); }
STDMETHODIMP CMorquilTimecode::SetJamSyncValue(unsigned int timecode) { return Send(&Settings::timecodeJamSyncValue, timecode); }
STDMETHODIMP CMorquilTimecode::GetJamSyncValue(unsigned int* timecode) { return Read(timecode, &Settings::timecodeJamSyncValue); }
STDMETHODIMP CMorquilTimecode::SetStartSource(_MorquilAPITimecodeStartSource source) { return SendWord<TimecodeStartSources>(&Settings::timecodeStartSource, source); }
STDMETHODIMP CMorquilTimecode::GetStartSource(_MorquilAPITimecodeStartSource* source) { return Read(source, &Settings::timecodeStartSource); }
STDMETHODIMP CMorquilTimecode::StartTimecode() { return Send(&Settings::timecodeStart, true); }
// clang-format on

/// Other features share this block; changes to their values are not reported here. The reset and the last height belong
/// to no feature.
bool CMorquilTimecode::MergeSettings(Settings& copy, const Settings& incoming) {
    return MergeShared(copy, incoming, &Settings::timecodeMode, &Settings::timecodeInputLine,
                       &Settings::timecodeOutputLine, &Settings::timecodeDropFrameMode, &Settings::timecodeSource,
                       &Settings::timecodeLossMode, &Settings::timecodeGenerateValue, &Settings::timecodeJamSyncValue,
                       &Settings::timecodeStartSource, &Settings::timecodeStart);
}

bool CMorquilTimecode::MergeAvailability(Availability& copy, const Availability& incoming) {
    return MergeShared(copy, incoming, &Availability::timecodeModes, &Availability::timecodeDropFrameModes,
                       &Availability::timecodeSources, &Availability::timecodeLossModes,
                       &Availability::timecodeStartSources, &Availability::timecodeLineRange);
}
