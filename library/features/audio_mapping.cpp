#include "features/audio_mapping.h"

using namespace Morquil;
using Settings = AudioChangeSet;
using Availability = AudioAvailabilityChangeSet;

CMorquilAudioMapping::CMorquilAudioMapping(IUnknown& owner, IMessageQueue& queue)
    : Feature(owner, queue, IID_IMorquilAudioMapping, morquilAudioMappingPropertySetId) {}

// clang-format off
STDMETHODIMP CMorquilAudioMapping::SetAudioGain(int gain) { return SendAllElements(&Settings::audioInLevel, gain); }
STDMETHODIMP CMorquilAudioMapping::GetAudioGain(int* gain) { return ReadElement(gain, &Settings::audioInLevel, 0); }
STDMETHODIMP CMorquilAudioMapping::GetAudioGainRange(int* min, int* max) { return ReadRange(min, max, &Availability::audioLevelRange); }
STDMETHODIMP CMorquilAudioMapping::SetAudioDelay(int delay) { return SendAllElements(&Settings::audioUserDelay, delay); }
STDMETHODIMP CMorquilAudioMapping::GetAudioDelay(int* delay) { return ReadElement(delay, &Settings::audioUserDelay, 0); }
STDMETHODIMP CMorquilAudioMapping::GetAudioDelayRange(int* min, int* max) { return ReadRange(min, max, &Availability::analogDelayRange); }
STDMETHODIMP CMorquilAudioMapping::SetAESAnalogOutputSelect(LONG select) { return SendYesNo(&Settings::aesOutputSelect, select); }
STDMETHODIMP CMorquilAudioMapping::GetAESAnalogOutputSelect(LONG* select) { return Read(select, &Settings::aesOutputSelect); }
STDMETHODIMP CMorquilAudioMapping::IsAudioSelectionAvailable(_MorquilAPIAudioSelect select, LONG* isAvailable) { return QueryList(&Availability::audioSelections, select, isAvailable); }
STDMETHODIMP CMorquilAudioMapping::SetAudioMap(unsigned int outputChannel, _MorquilAPIAudioSelect inputChannel) { return SendElement(&Settings::audioOut, outputChannel, inputChannel); }
STDMETHODIMP CMorquilAudioMapping::GetAudioMap(unsigned int outputChannel, _MorquilAPIAudioSelect* inputChannel) { return ReadElement(inputChannel, &Settings::audioOut, outputChannel); }
STDMETHODIMP CMorquilAudioMapping::SetAudioInMap(unsigned int inputPair, _MorquilAPIAudioInSourceSelect inputSource) { return SendElement(&Settings::audioInPair, inputPair, inputSource); }
STDMETHODIMP CMorquilAudioMapping::GetAudioInMap(unsigned int inputPair, _MorquilAPIAudioInSourceSelect* inputSource) { return ReadElement(inputSource, &Settings::audioInPair, inputPair); }
STDMETHODIMP CMorquilAudioMapping::SetAudioMeterChan(_MorquilAPIAudioMeterChannels channels) { return Send(&Settings::audioMeterChannels, channels); }
STDMETHODIMP CMorquilAudioMapping::GetAudioMeterChan(_MorquilAPIAudioMeterChannels* channels) { return Read(channels, &Settings::audioMeterChannels); }
STDMETHODIMP CMorquilAudioMapping::SetAnalogInRefLevel(int level) { return Send(&Settings::analogInputRefLevel, level); }
STDMETHODIMP CMorquilAudioMapping::GetAnalogInRefLevel(int* level) { return Read(level, &Settings::analogInputRefLevel); }
STDMETHODIMP CMorquilAudioMapping::GetAnaInRefLevelRange(int* min, int* max) { return ReadRange(min, max, &Availability::analogInputRefLevelRange); }
STDMETHODIMP CMorquilAudioMapping::ResetValues(unsigned int values) { return Send(&Settings::resetValues, values); }
// clang-format on
