/// \file morquil.hpp
/// The library for C++17 hosts: reference-counted objects, std::string, enum class values, errors as exceptions,
/// observers as lambdas, and a session that reconnects after a loss. Header-only; it adds nothing to the library.
///
/// \code
/// #include <morquil.hpp>
///
/// morquil::Device device = morquil::Connect("192.168.10.60");
/// const auto output = device.OutputConfiguration();
/// const morquil::Outcome outcome = device.Apply([&] { output.SetVideoMode(morquil::VideoMode::Mode1080i50); });
/// std::string what = ToText(outcome);              // "applied", or why not
/// std::string mode(ToText(output.GetVideoMode())); // what the device reports now
/// device["output.video-mode"].Apply("720p50");     // the same by name
/// \endcode
///
/// The rules of the underlying interfaces apply: a setter that returns has queued a change, the device's answer updates
/// the mirror, and a getter never waits. `Apply` waits until the device has confirmed or refused the changes.
#pragma once

#include "morquil/console.hpp"
#include "morquil/device.hpp"
#include "morquil/property.hpp"
#include "morquil/property_changes.hpp"
#include "morquil/session.hpp"
