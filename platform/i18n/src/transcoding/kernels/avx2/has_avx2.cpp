#include "transcoding/kernels/avx2/kernels.hpp"

namespace ku::i18n::detail {

bool has_avx2() noexcept {
  return __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("bmi") != 0 &&
         __builtin_cpu_supports("bmi2") != 0 && __builtin_cpu_supports("popcnt") != 0;
}

}  // namespace ku::i18n::detail
