#include "locale/process_code.hpp"
#include "converters/Encoding.hpp"

#include <ku/filesystem/NameDecoder.hpp>
#include <ku/filesystem/process_code_traits.hpp>
#include <ku/i18n/codecvt.hpp>
#include <ku/i18n/to_string.hpp>

#include <algorithm>
#include <type_traits>

namespace ku::i18n {
namespace detail {
namespace {

const Encoding& process_encoding() {
  static const Encoding& encoding = Encoding::named(process_code());
  return encoding;
}

// Whether the text needs no converter, since it is ASCII. Most names are.
template <class Text>
bool is_plain(const Text& text) {
  using Unit = typename Text::value_type;
  const auto is_ascii = [](Unit unit) { return std::make_unsigned_t<Unit>(unit) < 0x80; };
  return process_encoding().is_superset_of_ascii() && std::all_of(text.begin(), text.end(), is_ascii);
}

std::string to_process_code(const std::u16string& text, bool tolerant) {
  if (is_plain(text)) return {text.begin(), text.end()};
  return process_encoding().make_converter(tolerant)->encode_whole(text.data(), text.size());
}

}  // namespace
}  // namespace detail

std::string to_string(const std::u16string& text) { return detail::to_process_code(text, true); }

}  // namespace ku::i18n

namespace ku::filesystem {

NameDecoder::NameDecoder() noexcept = default;
NameDecoder::~NameDecoder() = default;

std::optional<std::u16string> NameDecoder::decode(std::string_view bytes) {
  if (i18n::detail::is_plain(bytes)) return std::u16string(bytes.begin(), bytes.end());
  if (!icu_) icu_ = i18n::detail::process_encoding().make_converter(true);
  auto text = icu_->decode_whole(bytes.data(), bytes.size());
  if (icu_->has_substituted()) return std::nullopt;
  return text;
}

namespace detail {

std::string process_code_traits::to_external(const std::u16string& path) {
  auto result = i18n::detail::to_process_code(path, false);
  if (result.find('\0') != std::string::npos) throw i18n::CvtInvalidCharacter();
  return result;
}

std::u16string process_code_traits::to_internal(const std::string& path) {
  if (i18n::detail::is_plain(path)) return {path.begin(), path.end()};
  return i18n::detail::process_encoding().make_converter(false)->decode_whole(path.data(), path.size());
}

std::string make_native_form(const std::u16string& path) { return process_code_traits::to_external(path); }

}  // namespace detail
}  // namespace ku::filesystem
