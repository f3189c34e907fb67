#pragma once

// The code between these two macros is compiled for processors with `has_avx2`, whatever the compiler's options. Keep
// includes outside: the linker keeps one copy of each inline function for the whole library, and it could keep the
// copy that is compiled for AVX2.
#ifdef __clang__
#define KU_AVX2_BEGIN \
  _Pragma("clang attribute push(__attribute__((target(\"avx2,bmi,bmi2,popcnt\"))), apply_to = function)")
#define KU_AVX2_END _Pragma("clang attribute pop")
#else
#define KU_AVX2_BEGIN _Pragma("GCC push_options") _Pragma("GCC target(\"avx2,bmi,bmi2,popcnt\")")
#define KU_AVX2_END _Pragma("GCC pop_options")
#endif
