#include "Conversions.hpp"

#include "../UsageError.hpp"
#include "../extensions.hpp"

#include <ku/i18n/ZrLocale.hpp>
#include <ku/i18n/codecvt.hpp>
#include <qardatainterfaces/LCPToUTF8Transform.hpp>
#include <qardatainterfaces/UTF8ToLCPTransform.hpp>

namespace packing {
namespace {

namespace di = Korvane::qardatainterfaces;

/// A transform of the library that leaves its name in the user data of what it has converted.
template <class Transform>
class Recorded final : public Transform {
public:
  explicit Recorded(const char* id) { this->id_ = id; }

  bool transform(const di::QARByteArray& in, di::QARByteArray& out, di::QARMetaData& meta) override {
    const bool done = Transform::transform(in, out, meta);
    if (done) meta.setUserData(this->id_);
    return done;
  }
};

void setLocale(const std::string& name) {
  ku::i18n::ZrLocale::global(ku::i18n::ZrLocale(name));
  try {
    const ku::i18n::codecvt_string_to_ustring localCodePage("", false);
  } catch (const ku::i18n::CvtExceptionBase&) {
    throw qarread::UsageError("the code page of the locale '" + name + "' is unknown");
  }
}

}  // namespace

Conversions::Conversions(CLI::App& app, Direction direction) : direction_(direction) {
  if (direction == Direction::toUtf8)
    app.add_option("--lcp-to-utf8", extensions_, "Convert these files from the local code page to UTF-8");
  else
    app.add_option("--utf8-to-lcp", extensions_, "Convert these files from UTF-8 to the local code page");
  app.get_options().back()->type_name("EXT,...")->allow_extra_args(false);
  app.add_option("--locale", locale_, "Locale of the local code page and of messages, such as de_DE.ISO-8859-1")
      ->type_name("NAME");
}

void Conversions::apply(di::QARFileReaderFactory& factory) const {
  if (!locale_.empty()) setLocale(locale_);
  for (const auto& list : extensions_) {
    const auto extensions = qarread::parseExtensions(list);
    if (direction_ == Direction::toUtf8)
      factory.addFileTypeHandler(extensions, new Recorded<di::LCPToUTF8Transform>("lcp-to-utf8"));
    else
      factory.addFileTypeHandler(extensions, new Recorded<di::UTF8ToLCPTransform>("utf8-to-lcp"));
  }
}

}  // namespace packing
