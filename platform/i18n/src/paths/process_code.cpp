#include "paths/process_code.hpp"

#include "converters/Encoding.hpp"

#include <ku/filesystem/process_code_traits.hpp>
#include <ku/i18n/ZrLocale.hpp>
#include <ku/i18n/codecvt.hpp>
#include <ku/i18n/to_string.hpp>

#include <algorithm>
#include <type_traits>

namespace ku::i18n {
namespace detail {
namespace {

// An encoding that nobody knows is treated as the C library treats it: as if the environment named none.
const Encoding& process_code() {
  static const Encoding& code = []() -> const Encoding& {
    try {
      return Encoding::named(ZrLocale("").encoding());
    } catch (const CvtExceptionBase&) {
      return Encoding::named("UTF-8");
    }
  }();
  return code;
}

// Most names are, and for them a converter is not worth its making.
template <class Unit>
bool is_plain(const std::basic_string<Unit>& text) {
  const auto is_ascii = [](Unit unit) { return std::make_unsigned_t<Unit>(unit) < 0x80; };
  return process_code().is_superset_of_ascii() && std::all_of(text.begin(), text.end(), is_ascii);
}

}  // namespace

std::string to_process_code(const std::u16string& text, bool tolerant) {
  if (is_plain(text)) return {text.begin(), text.end()};
  return process_code().make_converter(tolerant)->encode_whole(text.data(), text.size());
}

std::u16string from_process_code(const std::string& text, bool tolerant) {
  if (is_plain(text)) return {text.begin(), text.end()};
  return process_code().make_converter(tolerant)->decode_whole(text.data(), text.size());
}

}  // namespace detail

std::string to_string(const std::u16string& text) { return detail::to_process_code(text, true); }

}  // namespace ku::i18n

namespace ku::filesystem::detail {

std::string process_code_traits::to_external(const std::u16string& path) {
  auto result = i18n::detail::to_process_code(path, false);
  if (result.find('\0') != std::string::npos) throw i18n::CvtInvalidCharacter();
  return result;
}

std::u16string process_code_traits::to_internal(const std::string& path) {
  return i18n::detail::from_process_code(path, false);
}

std::string make_native_form(const std::u16string& path) { return process_code_traits::to_external(path); }

}  // namespace ku::filesystem::detail
