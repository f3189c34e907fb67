#pragma once

#include <locale.h>

namespace packing {

/// Sets a UTF-8 locale of the C library for this thread, as long as the object exists.
class Utf8Locale {
public:
  Utf8Locale() : own_(::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr)), before_(::uselocale(own_)) {}
  ~Utf8Locale() {
    ::uselocale(before_);
    if (own_ != nullptr) ::freelocale(own_);
  }
  Utf8Locale(const Utf8Locale&) = delete;
  Utf8Locale& operator=(const Utf8Locale&) = delete;

private:
  ::locale_t own_;
  ::locale_t before_;
};

}  // namespace packing
