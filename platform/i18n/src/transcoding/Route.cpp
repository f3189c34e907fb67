#include "transcoding/Route.hpp"

#include "transcoding/CodePage.hpp"
#include "transcoding/kernels/avx2/kernels.hpp"
#include "transcoding/kernels/kernels.hpp"

#include <utility>

namespace ku::i18n::detail {
namespace {

template <class Kernel>
class KernelRoute final : public Route {
public:
  explicit KernelRoute(Kernel kernel) : kernel_(std::move(kernel)) {}
  ByteCursor convert(ByteCursor cursor) const noexcept override { return kernel_(cursor); }

private:
  Kernel kernel_;
};

template <class Kernel>
std::unique_ptr<const Route> by(Kernel kernel) {
  return std::make_unique<const KernelRoute<Kernel>>(std::move(kernel));
}

/// `wide` goes ahead where the processor has what it needs, and `kernel` takes the rest.
template <class Wide, class Kernel>
std::unique_ptr<const Route> by(Wide wide, Kernel kernel) {
  if (!has_avx2()) return by(std::move(kernel));
  return by([=](ByteCursor c) noexcept { return kernel(wide(c)); });
}

std::unique_ptr<const Route> to_utf8(const Encoding& from) {
  using Form = Encoding::Form;
  switch (from.form()) {
    case Form::utf8: return by(avx2::utf8_to_utf8, utf8_to_utf8);
    case Form::utf16_little_endian:
      return by(avx2::utf16_to_utf8<std::endian::little>, utf16_to_utf8<std::endian::little>);
    case Form::utf16_big_endian: return by(avx2::utf16_to_utf8<std::endian::big>, utf16_to_utf8<std::endian::big>);
    case Form::code_page: break;
    default: return nullptr;
  }
  const auto& root = CodePage::of(from).reading.root();
  const bool keeps_ascii = from.is_superset_of_ascii();
  if (!from.is_single_byte())
    return by([&root, keeps_ascii](ByteCursor c) noexcept { return multi_byte_to_utf8(c, root, keeps_ascii); });
  const auto kernel = [&root, keeps_ascii](ByteCursor c) noexcept {
    return single_byte_to_utf8(c, root, keeps_ascii);
  };
  if (from.is_latin1()) return by(avx2::latin1_to_utf8, kernel);
  return by(kernel);
}

std::unique_ptr<const Route> from_utf8(const Encoding& to) {
  using Form = Encoding::Form;
  switch (to.form()) {
    case Form::utf16_little_endian:
      return by(avx2::utf8_to_utf16<std::endian::little>, utf8_to_utf16<std::endian::little>);
    case Form::utf16_big_endian: return by(avx2::utf8_to_utf16<std::endian::big>, utf8_to_utf16<std::endian::big>);
    case Form::code_page: break;
    default: return nullptr;
  }
  const auto& rows = CodePage::of(to).writing.rows();
  const bool keeps_ascii = to.is_superset_of_ascii();
  const auto kernel = [&rows, keeps_ascii](ByteCursor c) noexcept { return utf8_to_code_page(c, rows, keeps_ascii); };
  if (!to.is_single_byte() || !keeps_ascii) return by(kernel);
  return by([&rows](ByteCursor c) noexcept { return avx2::utf8_to_single_byte(c, rows); }, kernel);
}

}  // namespace

std::unique_ptr<const Route> Route::between(const Encoding& from, const Encoding& to) {
  if (to.form() == Encoding::Form::utf8) return to_utf8(from);
  if (from.form() == Encoding::Form::utf8) return from_utf8(to);
  return nullptr;
}

}  // namespace ku::i18n::detail
