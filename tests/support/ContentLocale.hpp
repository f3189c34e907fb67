#pragma once

#include <ku/i18n/ZrLocale.hpp>

#include <string>

/// Sets the local code page while this object exists.
class ContentLocale {
public:
  explicit ContentLocale(const std::string& encoding)
      : before_(ku::i18n::ZrLocale::global(ku::i18n::ZrLocale("en_US." + encoding))) {}
  ~ContentLocale() { ku::i18n::ZrLocale::global(before_); }
  ContentLocale(const ContentLocale&) = delete;
  ContentLocale& operator=(const ContentLocale&) = delete;

private:
  ku::i18n::ZrLocale before_;
};
