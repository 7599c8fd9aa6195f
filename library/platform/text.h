// Converts text between the interface (BSTR, UTF-16) and the library's inside (UTF-8). All systems share one
// implementation, so that malformed text is converted identically everywhere.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "MorquilAPI.h"

namespace Morquil {

/// The whole of `text`, including zero units, as well-formed UTF-8. An unpaired surrogate becomes U+FFFD. Empty for
/// null.
/// Throws: std::bad_alloc.
std::string Utf8FromBstr(BSTR text);

/// A new BSTR that holds all of `text`; an empty `text` gives an empty BSTR, not null. Each longest run of bytes that
/// begins a character but does not finish it becomes one U+FFFD, and so does every byte that cannot begin a character.
/// Ownership: the caller frees with SysFreeString.
/// Returns:   null when out of memory.
BSTR BstrFromUtf8(std::string_view text) noexcept;

/// `text` as UTF-8 of fewer than `limit` bytes, truncated at its end if it is longer: the text that fits into a
/// device's field of `limit` bytes, including the terminating zero. Truncation never splits a character. Empty for
/// null.
/// Throws: std::bad_alloc.
std::string ShortenedUtf8(BSTR text, std::size_t limit);

}  // namespace Morquil
