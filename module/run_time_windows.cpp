// What the C++ run-time library calls when something has failed, kept short. Its own versions of these functions bring
// along a demangler, a printf and two kinds of strings: an eighth of the file that hosts ship.
#include <cstdlib>
#include <exception>
#include <new>

namespace __gnu_cxx {

/// Ends the process, without the text that the library's own would write first.
void __verbose_terminate_handler() {
    std::abort();
}

}  // namespace __gnu_cxx

// Declared by the library in <bits/functexcept.h>. What it would say about the failure nobody reads: everything that
// catches here asks for lack of memory, or for nothing.
namespace std {

void __throw_bad_alloc() {
    throw bad_alloc();
}
void __throw_bad_array_new_length() {
    throw bad_alloc();
}
/// More than any memory holds.
void __throw_length_error(const char* /*text*/) {
    throw bad_alloc();
}
void __throw_logic_error(const char* /*text*/) {
    throw exception();
}
void __throw_invalid_argument(const char* /*text*/) {
    throw exception();
}
void __throw_out_of_range(const char* /*text*/) {
    throw exception();
}
void __throw_out_of_range_fmt(const char* /*format*/, ...) {
    throw exception();
}

}  // namespace std
