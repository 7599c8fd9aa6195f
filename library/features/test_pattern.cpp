#include "features/test_pattern.h"

using namespace Morquil;
using Settings = TestPatternChangeSet;
using Availability = TestPatternAvailabilityChangeSet;

CMorquilTestPattern::CMorquilTestPattern(IUnknown& owner, IMessageQueue& queue)
    : Feature(owner, queue, IID_IMorquilTestPattern, morquilTestPatternPropertySetId) {}

// clang-format off
STDMETHODIMP CMorquilTestPattern::SetOutput(_MorquilAPITestPattern pattern) { return SendWord<TestPatterns>(&Settings::output, pattern); }
STDMETHODIMP CMorquilTestPattern::GetOutput(_MorquilAPITestPattern* pattern) { return Read(pattern, &Settings::output); }
STDMETHODIMP CMorquilTestPattern::SetNoSignal(_MorquilAPITestPattern pattern) { return SendWord<TestPatterns>(&Settings::noSignal, pattern); }
STDMETHODIMP CMorquilTestPattern::GetNoSignal(_MorquilAPITestPattern* pattern) { return Read(pattern, &Settings::noSignal); }
STDMETHODIMP CMorquilTestPattern::SetTone(_MorquilAPITestTone tone) { return SendWord<TestTones>(&Settings::testTone, tone); }
STDMETHODIMP CMorquilTestPattern::GetTone(_MorquilAPITestTone* tone) { return Read(tone, &Settings::testTone); }
STDMETHODIMP CMorquilTestPattern::SetMotion(LONG enabled) { return SendYesNo(&Settings::motion, enabled); }
STDMETHODIMP CMorquilTestPattern::SetHorizMotion(int rate) { return Send(&Settings::horizontalRate, rate); }
STDMETHODIMP CMorquilTestPattern::SetVertMotion(int rate) { return Send(&Settings::verticalRate, rate); }
STDMETHODIMP CMorquilTestPattern::GetMotion(LONG* enabled) { return Read(enabled, &Settings::motion); }
STDMETHODIMP CMorquilTestPattern::GetHorizMotion(int* rate) { return Read(rate, &Settings::horizontalRate); }
STDMETHODIMP CMorquilTestPattern::GetVertMotion(int* rate) { return Read(rate, &Settings::verticalRate); }
STDMETHODIMP CMorquilTestPattern::GetMotionRange(int* min, int* max) { return ReadRange(min, max, &Availability::motionRange); }
STDMETHODIMP CMorquilTestPattern::IsTestPatternAvailable(_MorquilAPITestPattern pattern, LONG* isAvailable) { return QueryList(&Availability::availableTestPatterns, pattern, isAvailable); }
STDMETHODIMP CMorquilTestPattern::IsTestToneAvailable(_MorquilAPITestTone tone, LONG* isAvailable) { return QueryList(&Availability::availableTestTones, tone, isAvailable); }
STDMETHODIMP CMorquilTestPattern::IsMotionAvailable(LONG* isAvailable) { return QueryFlag(&Availability::motion, isAvailable); }
// clang-format on
