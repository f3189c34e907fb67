#include "peers.hpp"

#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>

#include <cstring>
#include <stdexcept>

#include <iconv.h>

namespace benchmarks {
namespace {

void check(UErrorCode status) {
  if (U_FAILURE(status)) throw std::runtime_error(u_errorName(status));
}

void U_CALLCONV decode_other(const void* substituted, UConverterToUnicodeArgs* arguments, const char* bytes,
                             std::int32_t length, UConverterCallbackReason reason, UErrorCode* status) {
  if (reason > UCNV_IRREGULAR) return;
  *static_cast<bool*>(const_cast<void*>(substituted)) = true;
  UCNV_TO_U_CALLBACK_SUBSTITUTE(nullptr, arguments, bytes, length, reason, status);
}

void U_CALLCONV encode_other(const void* substituted, UConverterFromUnicodeArgs* arguments, const char16_t*,
                             std::int32_t, UChar32, UConverterCallbackReason reason, UErrorCode* status) {
  if (reason > UCNV_IRREGULAR) return;
  *static_cast<bool*>(const_cast<void*>(substituted)) = true;
  *status = U_ZERO_ERROR;
  ucnv_cbFromUWriteSub(arguments, 0, status);  // ICU's stock callback drops invisible characters
}

/// A converter that substitutes like the library and records whether it did.
class Converter {
public:
  explicit Converter(const std::string& encoding) {
    UErrorCode status = U_ZERO_ERROR;
    handle_ = ucnv_open(encoding.c_str(), &status);
    check(status);
    ucnv_setToUCallBack(handle_, decode_other, &substituted_, nullptr, nullptr, &status);
    ucnv_setFromUCallBack(handle_, encode_other, &substituted_, nullptr, nullptr, &status);
    if (encoding != "UTF-8" && encoding != "GB18030") ucnv_setSubstString(handle_, u"?", 1, &status);
  }
  ~Converter() { ucnv_close(handle_); }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  UConverter* get() const noexcept { return handle_; }
  std::size_t most_bytes(std::size_t units) const noexcept {
    return (units + 10) * static_cast<std::size_t>(ucnv_getMaxCharSize(handle_));
  }

private:
  UConverter* handle_ = nullptr;
  bool substituted_ = false;
};

Bytes fresh(std::size_t capacity) { return {std::unique_ptr<char[]>(new char[capacity]), 0}; }

/// The C library's Shift_JIS has a yen sign where ASCII has a backslash; its CP932 agrees with ICU.
const char* name_for_iconv(const std::string& encoding) {
  return encoding == "Shift_JIS" ? "CP932" : encoding.c_str();
}

}  // namespace

Bytes tight_icu(const std::string& from, const std::string& to, std::string_view in) {
  const std::unique_ptr<char16_t[]> units(new char16_t[in.size()]);
  auto* units_end = units.get();
  const char* source = in.data();
  UErrorCode status = U_ZERO_ERROR;
  const Converter decoder(from);
  ucnv_toUnicode(decoder.get(), &units_end, units.get() + in.size(), &source, source + in.size(), nullptr, true,
                 &status);
  const Converter encoder(to);
  const auto capacity = encoder.most_bytes(static_cast<std::size_t>(units_end - units.get()));
  auto out = fresh(capacity);
  char* end = out.data.get();
  const char16_t* unit = units.get();
  ucnv_fromUnicode(encoder.get(), &end, end + capacity, &unit, units_end, nullptr, true, &status);
  check(status);
  out.size = static_cast<std::size_t>(end - out.data.get());
  return out;
}

Bytes convert_ex(const std::string& from, const std::string& to, std::string_view in) {
  const Converter decoder(from);
  const Converter encoder(to);
  const auto capacity = encoder.most_bytes(in.size());
  auto out = fresh(capacity);
  char* end = out.data.get();
  const char* source = in.data();
  UErrorCode status = U_ZERO_ERROR;
  ucnv_convertEx(encoder.get(), decoder.get(), &end, end + capacity, &source, source + in.size(), nullptr, nullptr,
                 nullptr, nullptr, true, true, &status);
  check(status);
  out.size = static_cast<std::size_t>(end - out.data.get());
  return out;
}

Bytes iconv(const std::string& from, const std::string& to, std::string_view in) {
  const iconv_t converter = ::iconv_open(name_for_iconv(to), name_for_iconv(from));
  if (converter == reinterpret_cast<iconv_t>(-1)) throw std::runtime_error("iconv does not know the encoding");
  std::size_t room = 4 * in.size();  // no character has more than four bytes
  std::size_t left = in.size();
  auto out = fresh(room);
  char* source = const_cast<char*>(in.data());
  char* end = out.data.get();
  const auto result = ::iconv(converter, &source, &left, &end, &room);
  ::iconv_close(converter);
  if (result == static_cast<std::size_t>(-1)) throw std::runtime_error("iconv stopped");
  out.size = static_cast<std::size_t>(end - out.data.get());
  return out;
}

Bytes copy(std::string_view in) {
  auto out = fresh(in.size());
  std::memcpy(out.data.get(), in.data(), in.size());
  out.size = in.size();
  return out;
}

}  // namespace benchmarks
