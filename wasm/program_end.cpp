// Where the C++ library ends a program, for what cannot happen: a text longer than memory, a routine that is not there.
// Its own words about that would need a terminal.
#include <__config>
#include <cstdlib>

_LIBCPP_BEGIN_NAMESPACE_STD
void __libcpp_verbose_abort(const char* /*format*/, ...) { __builtin_trap(); }  // NOLINT: the library's name
_LIBCPP_END_NAMESPACE_STD

extern "C" void __cxa_pure_virtual() { __builtin_trap(); }  // NOLINT: the compiler's name
extern "C" void abort() { __builtin_trap(); }
