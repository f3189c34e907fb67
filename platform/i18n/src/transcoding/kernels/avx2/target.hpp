#pragma once

// What stands between these two is compiled for processors for which `has_avx2`, whatever the rest of the library is
// compiled for.
// Includes stay outside: an inline function of theirs must not be compiled like that, since the linker may take this
// copy for the whole library.
#ifdef __clang__
#define KU_AVX2_BEGIN \
  _Pragma("clang attribute push(__attribute__((target(\"avx2,bmi,bmi2,popcnt\"))), apply_to = function)")
#define KU_AVX2_END _Pragma("clang attribute pop")
#else
#define KU_AVX2_BEGIN _Pragma("GCC push_options") _Pragma("GCC target(\"avx2,bmi,bmi2,popcnt\")")
#define KU_AVX2_END _Pragma("GCC pop_options")
#endif
