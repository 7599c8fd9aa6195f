#include "features/closed_caption.h"

using namespace Morquil;
using Settings = AncillaryDataChangeSet;
using Availability = AncillaryDataAvailabilityChangeSet;

CMorquilClosedCaption::CMorquilClosedCaption(IUnknown& owner, IMessageQueue& queue)
    : Feature(owner, queue, IID_IMorquilClosedCaption, morquilClosedCaptionPropertySetId) {}

// clang-format off
STDMETHODIMP CMorquilClosedCaption::SetEnabled(LONG enabled) { return SendYesNo(&Settings::ccEnabled, enabled); }
STDMETHODIMP CMorquilClosedCaption::GetEnabled(LONG* enabled) { return Read(enabled, &Settings::ccEnabled); }
STDMETHODIMP CMorquilClosedCaption::SetInputLine(unsigned int line) { return Send(&Settings::ccInputLine, line); }
STDMETHODIMP CMorquilClosedCaption::GetInputLine(unsigned int* line) { return Read(line, &Settings::ccInputLine); }
STDMETHODIMP CMorquilClosedCaption::GetInputLineRange(unsigned int* min, unsigned int* max) { return ReadRange(min, max, &Availability::ccInputLineRange); }
STDMETHODIMP CMorquilClosedCaption::SetOutputLine(unsigned int line) { return Send(&Settings::ccOutputLine, line); }
STDMETHODIMP CMorquilClosedCaption::GetOutputLine(unsigned int* line) { return Read(line, &Settings::ccOutputLine); }
STDMETHODIMP CMorquilClosedCaption::GetOutputLineRange(unsigned int* min, unsigned int* max) { return ReadRange(min, max, &Availability::ccOutputLineRange); }
STDMETHODIMP CMorquilClosedCaption::SetService2Source(_MorquilAPICCService2Source source) { return SendWord<CcService2Sources>(&Settings::ccService2Source, source); }
STDMETHODIMP CMorquilClosedCaption::GetService2Source(_MorquilAPICCService2Source* source) { return Read(source, &Settings::ccService2Source); }
STDMETHODIMP CMorquilClosedCaption::SetService1Language(_MorquilAPICCServiceLanguage language) { return SendWord<CcLanguages>(&Settings::ccService1Language, language); }
STDMETHODIMP CMorquilClosedCaption::GetService1Language(_MorquilAPICCServiceLanguage* language) { return Read(language, &Settings::ccService1Language); }
STDMETHODIMP CMorquilClosedCaption::SetService2Language(_MorquilAPICCServiceLanguage language) { return SendWord<CcLanguages>(&Settings::ccService2Language, language); }
STDMETHODIMP CMorquilClosedCaption::GetService2Language(_MorquilAPICCServiceLanguage* language) { return Read(language, &Settings::ccService2Language); }
STDMETHODIMP CMorquilClosedCaption::ResetValues(unsigned int values) { return Send(&Settings::resetValues, values); }
// clang-format on

/// Other features share this block; changes to their values are not reported here. The reset and the last height belong
/// to no feature.
bool CMorquilClosedCaption::MergeSettings(Settings& copy, const Settings& incoming) {
    return MergeShared(copy, incoming, &Settings::ccEnabled, &Settings::ccInputLine, &Settings::ccOutputLine,
                       &Settings::ccService2Source, &Settings::ccService1Language, &Settings::ccService2Language);
}

bool CMorquilClosedCaption::MergeAvailability(Availability& copy, const Availability& incoming) {
    return MergeShared(copy, incoming, &Availability::ccInputLineRange, &Availability::ccOutputLineRange,
                       &Availability::ccService2Sources, &Availability::ccServiceLanguages);
}
