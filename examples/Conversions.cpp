#include "Conversions.hpp"

#include "Converting.hpp"
#include "UsageError.hpp"
#include "contentLocale.hpp"
#include "extensions.hpp"

#include <ku/i18n/codecvt.hpp>

namespace qarread {
namespace {

namespace di = Korvane::qardatainterfaces;

using OnLoss = di::QARCodePageTransform::OnLoss;

/// The part before the next colon; `text` keeps what is behind it.
std::string cutField(std::string& text, const std::string& option) {
  const auto colon = text.find(':');
  if (colon == text.npos || colon == 0) throw UsageError("'" + option + "' is not FROM:TO:EXT,...");
  auto field = text.substr(0, colon);
  text.erase(0, colon + 1);
  return field;
}

}  // namespace

Conversions::Conversions(CLI::App& app, Direction direction) : direction_(direction) {
  const auto add = [&app](const char* name, auto& value, const char* type, const char* text) {
    app.add_option(name, value, text)->type_name(type)->allow_extra_args(false);
  };
  if (direction == Direction::toUtf8)
    add("--lcp-to-utf8", extensions_, "EXT,...", "Convert these files from the local code page to UTF-8");
  else
    add("--utf8-to-lcp", extensions_, "EXT,...", "Convert these files from UTF-8 to the local code page");
  add("--transcode", transcodings_, "FROM:TO:EXT,...", "Convert these files from one encoding to another");
  add("--locale", locale_, "NAME", "Locale of the local code page and of messages, such as de_DE.ISO-8859-1");
  app.add_flag("--strict", strict_, "Refuse what cannot be converted without loss");
}

void Conversions::apply(di::QARFileReaderFactory& factory) const {
  if (!locale_.empty()) setContentLocale(locale_);
  const auto on_loss = strict_ ? OnLoss::fail : OnLoss::substitute;
  const bool decodes = direction_ == Direction::toUtf8;
  for (const auto& list : extensions_) {
    const auto extensions = parseExtensions(list);  // which may throw
    factory.addFileTypeHandler(extensions, new Converting(decodes ? "lcp-to-utf8" : "utf8-to-lcp",
                                                          decodes ? "" : "UTF-8", decodes ? "UTF-8" : "", on_loss));
  }
  for (const auto& option : transcodings_) {
    auto list = option;
    const auto from = cutField(list, option), to = cutField(list, option);
    const auto extensions = parseExtensions(list);
    try {
      const auto id = std::string(from).append(" to ").append(to);
      factory.addFileTypeHandler(extensions, new Converting(id.c_str(), from, to, on_loss));
    } catch (const ku::i18n::CvtExceptionBase& error) {
      throw UsageError("'" + option + "': " + error.what());
    }
  }
}

}  // namespace qarread
