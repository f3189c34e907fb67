#pragma once

#include <ku/i18n/ZrLocale.hpp>

#include <string>

/// Makes an encoding the local code page for as long as this exists.
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
