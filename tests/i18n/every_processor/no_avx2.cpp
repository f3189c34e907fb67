#include "transcoding/kernels/avx2/kernels.hpp"

bool ku::i18n::detail::has_avx2() noexcept { return false; }
