// Text between the interface (BSTR, UTF-16) and everything inside (UTF-8). One implementation for every system, so
// that malformed text comes out the same everywhere.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "MorquilAPI.h"

namespace Morquil {

/// The whole of `text`, zero units included, as well-formed UTF-8; an unpaired surrogate becomes U+FFFD. Empty for
/// null.
/// Throws: std::bad_alloc.
std::string Utf8FromBstr(BSTR text);

/// A new BSTR of exactly the length of `text`, never null for lack of characters. Each longest run of bytes that
/// begins a character and does not finish it becomes one U+FFFD, and so does every byte that begins none.
/// Ownership: the caller frees with SysFreeString.
/// Returns:   null when memory is short.
BSTR BstrFromUtf8(std::string_view text) noexcept;

/// `text` as UTF-8 of less than `limit` bytes, cut at its end where it is longer: the text that a device's field of
/// `limit` bytes, the terminating zero included, can hold. A cut never leaves half a character. Empty for null.
/// Throws: std::bad_alloc.
std::string ShortenedUtf8(BSTR text, std::size_t limit);

}  // namespace Morquil
