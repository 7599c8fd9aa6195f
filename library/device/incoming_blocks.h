// How a received block reaches the mirror. All of this runs on the connection thread.
#pragma once

#include <string>
#include <type_traits>

#include "device/device.h"

/// Every feature that mirrors the device, handed out or not.
template <class Visit>
void CMorquilDevice::ForEachFeature(Visit visit) {
    features_.ForEach(visit);
    hiddenFeatures_.ForEach(visit);
}

template <class Description>
void CMorquilDevice::OnBlock(const Morquil::ChangeSetOf<Description>& set) {
    if constexpr (Morquil::factsOf<Description>.role == Morquil::BlockRole::Settings) {
        ApplySettings<Description>(set);
    } else {
        ApplyAvailability<Description>(set);
    }
}

/// Merges the block into the features that keep it and notifies their observers, unless it is only the echo of a
/// setter.
template <class Set>
void CMorquilDevice::ApplySettings(const Set& set) {
    const std::string text = ComparableText<Set>(set);
    const bool notify = !IsSentText(text);
    ForEachFeature([&]<class FeatureClass>(FeatureClass& feature) {
        if constexpr (std::is_same_v<typename FeatureClass::SettingsBlock, Set>) {
            // An observer may disconnect; the remaining features then keep their cleared mirrors.
            if (IsListening()) {
                feature.ApplyChangeSet(set, notify);
            }
        }
    });
    CheckInitialState();
    DropSentThrough(text);
    ReportSettings<Set>(text, notify ? morquilReportElsewhere : morquilReportEcho);
}

template <class Description>
void CMorquilDevice::ApplyAvailability(const Morquil::ChangeSetOf<Description>& set) {
    ForEachFeature([&]<class FeatureClass>(FeatureClass& feature) {
        if constexpr (std::is_same_v<typename FeatureClass::AvailabilityBlock, Description>) {
            if (IsListening()) {
                feature.ApplyAvailabilityChangeSet(set);
            }
        }
    });
    CheckInitialState();
    ForEachFeature([&]<class FeatureClass>(FeatureClass& feature) {
        if constexpr (std::is_same_v<typename FeatureClass::AvailabilityBlock, Description>) {
            Report(feature.PropertySet(), morquilReportAvailability, morquilReportElsewhere);
        }
    });
}

/// The text of a received block, if anything is waiting to be compared with it.
template <class Description>
std::string CMorquilDevice::ComparableText(const Morquil::ChangeSetOf<Description>& set) {
    return AwaitsEcho() || MessageReceipts().IsActive() ? Morquil::BlockText<Description>(set) : std::string();
}

/// The block has been merged and property observers have been notified: notifies those who follow reports.
template <class Description>
void CMorquilDevice::ReportSettings(const std::string& text, _MorquilReportOrigin origin) {
    ForEachFeature([&]<class FeatureClass>(FeatureClass& feature) {
        if constexpr (std::is_same_v<typename FeatureClass::SettingsBlock, Description>) {
            Report(feature.PropertySet(), morquilReportSettings, origin);
        }
    });
    SettleReceipts<Description>(text);
}

template <class Description>
void CMorquilDevice::SettleReceipts(const std::string& text) {
    if (IsListening()) {
        MessageReceipts().OnReport(Morquil::factsOf<Description>.slot - 1, text);
        MessageReceipts().NotifyDue();
    }
}
