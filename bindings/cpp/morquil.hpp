/// \file morquil.hpp
/// The library for C++17 hosts: reference-counted objects, std::string, enum class values, errors as exceptions,
/// observers as lambdas, and a session that reconnects after a loss. Header-only; it adds nothing to the library.
///
/// \code
/// #include <morquil.hpp>
///
/// morquil::Device device = morquil::Connect("192.168.10.60");
/// device.OutputConfiguration().SetVideoMode(morquil::VideoMode::Mode1080i50);   // queued, not done
/// std::string mode(ToText(device.OutputConfiguration().GetVideoMode()));       // what the device has reported
/// \endcode
///
/// The rules of the underlying interfaces apply: a setter that returns has queued a change, the device's answer updates
/// the mirror, and a getter never waits.
#pragma once

#include "morquil/device.hpp"
#include "morquil/session.hpp"
