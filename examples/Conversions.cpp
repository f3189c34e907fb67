#include "Conversions.hpp"

#include "Converting.hpp"
#include "UsageError.hpp"
#include "contentLocale.hpp"
#include "extensions.hpp"

#include <ku/i18n/codecvt.hpp>

#include <map>

namespace qarread {
namespace {

namespace di = Korvane::qardatainterfaces;

/// Removes the part before the next colon, and the colon, from `text`, and returns the part.
std::string cutField(std::string& text, const std::string& option) {
  const auto colon = text.find(':');
  if (colon == text.npos || colon == 0) throw UsageError("'" + option + "' is not FROM:TO:EXT,...");
  auto field = text.substr(0, colon);
  text.erase(0, colon + 1);
  return field;
}

void addTranscoding(di::QARFileReaderFactory& factory, const Conversions::Make& make, const std::string& option) {
  auto list = option;
  const auto from = cutField(list, option), to = cutField(list, option);
  const auto extensions = parseExtensions(list);
  try {
    const auto id = std::string(from).append(" to ").append(to);
    factory.addFileTypeHandler(extensions, make(id.c_str(), from, to));
  } catch (const ku::i18n::CvtExceptionBase& error) {
    throw UsageError("'" + option + "': " + error.what());
  }
}

}  // namespace

Conversions::Conversions(CLI::App& app, Directions directions) : app_(app) {
  const auto addList = [&](const char* name, const char* type, const char* text) {
    return app.add_option(name, values_, text)->type_name(type)->allow_extra_args(false);
  };
  if (directions != Directions::fromUtf8)
    toUtf8_ = addList("--lcp-to-utf8", "EXT,...", "Convert these files from the local code page to UTF-8");
  if (directions != Directions::toUtf8)
    fromUtf8_ = addList("--utf8-to-lcp", "EXT,...", "Convert these files from UTF-8 to the local code page");
  transcode_ = addList("--transcode", "FROM:TO:EXT,...", "Convert these files from one encoding to another");
  app.add_option("--locale", locale_, "Locale of the local code page and of messages, such as de_DE.ISO-8859-1")
      ->type_name("NAME");
  app.add_flag("--strict", strict_, "Fail for files that cannot be converted without loss")->disable_flag_override();
}

void Conversions::apply(di::QARFileReaderFactory& factory) const {
  const auto onLoss = strict_ ? Converting::OnLoss::fail : Converting::OnLoss::substitute;
  apply(factory,
        [onLoss](const auto* id, const auto& from, const auto& to) { return new Converting(id, from, to, onLoss); });
}

void Conversions::apply(di::QARFileReaderFactory& factory, const Make& make) const {
  if (locale_) setContentLocale(*locale_);
  if ((toUtf8_ != nullptr && toUtf8_->count() > 0) || (fromUtf8_ != nullptr && fromUtf8_->count() > 0))
    checkLocalCodePage();
  std::map<const CLI::Option*, std::size_t> seen;
  for (const CLI::Option* const next : app_.parse_order()) {  // once for each value
    const auto& option = *next;
    const auto index = seen[&option]++;
    if (&option == transcode_) {
      addTranscoding(factory, make, option.results()[index]);
    } else if (&option == toUtf8_ || &option == fromUtf8_) {
      const auto extensions = parseExtensions(option.results()[index]);
      factory.addFileTypeHandler(
          extensions, &option == toUtf8_ ? make("lcp-to-utf8", "", "UTF-8") : make("utf8-to-lcp", "UTF-8", ""));
    }
  }
}

}  // namespace qarread
