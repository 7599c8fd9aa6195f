#pragma once

#include <string_view>

namespace Morquil {

/// Takes a decimal number without a sign from the front of `text`, with all the characters that a stream in the classic
/// locale collects for one: digits with at most one point and one exponent with or without a sign.
/// `value` becomes the double nearest to it, of two the even one; 0 where it is too small for any.
/// Returns: false where there is no number, its exponent mark has no digits or it is too large for any double; `value`
/// is left alone then.
bool TakeDecimal(std::string_view& text, double& value);

}  // namespace Morquil
