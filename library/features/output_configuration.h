#pragma once

#include "features/feature.h"
#include "protocol/blocks/video_output.h"

/// The output settings and the still store.
class CMorquilOutputConfiguration final
    : public Morquil::Feature<IMorquilOutputConfiguration, Morquil::VideoOutputChangeSet,
                              Morquil::VideoOutputAvailabilityChangeSet> {
public:
    CMorquilOutputConfiguration(IUnknown& owner, Morquil::IMessageQueue& queue);

    STDMETHODIMP SetVideoMode(_MorquilAPIVideoMode mode) override;
    STDMETHODIMP GetVideoMode(_MorquilAPIVideoMode* mode) override;
    STDMETHODIMP SetPixelFormat(_MorquilAPIPixelFormat format) override;
    STDMETHODIMP GetPixelFormat(_MorquilAPIPixelFormat* format) override;
    STDMETHODIMP SetAspectRatio(_MorquilAPIAspectRatio aspectRatio) override;
    STDMETHODIMP GetAspectRatio(_MorquilAPIAspectRatio* aspectRatio) override;
    STDMETHODIMP IsAspectRatioAvailable(_MorquilAPIAspectRatio aspectRatio, LONG* isAvailable) override;
    STDMETHODIMP IsDemuxModeAvailable(_MorquilAPIDemuxMode mode, LONG* isAvailable) override;
    STDMETHODIMP IsPixelFormatAvailable(_MorquilAPIPixelFormat format, LONG* isAvailable) override;
    STDMETHODIMP IsSDIModeAvailable(_MorquilAPISDIMode mode, LONG* isAvailable) override;
    STDMETHODIMP IsQuadSDIOutputAvailable(_MorquilAPIQuadSDIOutput output, LONG* isAvailable) override;
    STDMETHODIMP IsAnalogOutputModeAvailable(_MorquilAPIVideoSource mode, LONG* isAvailable) override;
    STDMETHODIMP IsOutputOptionAvailable(_MorquilAPIOutputOption option, LONG* isAvailable) override;
    STDMETHODIMP GetStillFramePresent(LONG* present) override;
    STDMETHODIMP GetStillFrameLoadComplete(LONG* complete) override;
    STDMETHODIMP GetStillFrameStoreComplete(LONG* complete) override;
    STDMETHODIMP GetStillFramePreviewComplete(LONG* complete) override;
    STDMETHODIMP SetDualLinkEnabled(_MorquilAPIDemuxMode mode) override;
    STDMETHODIMP GetDualLinkEnabled(_MorquilAPIDemuxMode* mode) override;
    STDMETHODIMP SetSDIMode(_MorquilAPISDIMode mode) override;
    STDMETHODIMP GetSDIMode(_MorquilAPISDIMode* mode) override;
    STDMETHODIMP SetQuadSDIOutput(_MorquilAPIQuadSDIOutput output) override;
    STDMETHODIMP GetQuadSDIOutput(_MorquilAPIQuadSDIOutput* output) override;
    STDMETHODIMP SetQuadAncillaryReplication(LONG enabled) override;
    STDMETHODIMP GetQuadAncillaryReplication(LONG* enabled) override;
    STDMETHODIMP SetAnalogOutputMode(_MorquilAPIVideoSource mode) override;
    STDMETHODIMP GetAnalogOutputMode(_MorquilAPIVideoSource* mode) override;
    STDMETHODIMP SetOutputOption(_MorquilAPIOutputOption option) override;
    STDMETHODIMP GetOutputOption(_MorquilAPIOutputOption* option) override;
    STDMETHODIMP SetTransitionSetting(int setting) override;
    STDMETHODIMP GetTransitionSetting(int* setting) override;
    STDMETHODIMP GetTransitionSettingRange(int* min, int* max) override;
    STDMETHODIMP SetStillFrameAction(_MorquilAPIStillFrameAction action) override;
    STDMETHODIMP SetHDMIOutput(_MorquilAPIPixelFormat format) override;
    STDMETHODIMP GetHDMIOutput(_MorquilAPIPixelFormat* format) override;
    STDMETHODIMP IsHDMIOutputAvailable(_MorquilAPIPixelFormat format, LONG* isAvailable) override;
};
