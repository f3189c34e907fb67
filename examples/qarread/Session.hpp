#pragma once

#include "../Conversions.hpp"
#include "../Output.hpp"
#include "Notices.hpp"
#include "Options.hpp"
#include "Presentation.hpp"
#include "Progress.hpp"
#include "Source.hpp"

#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include <memory>
#include <optional>
#include <string>

namespace qarread {

/// One run over the paths of the command line.
class Session {
public:
  /// Throws `UsageError`. `options` must outlive the session.
  Session(const Options& options, const Conversions& conversions);

  /// Reads all paths. Returns whether every path succeeded and --check found no losses. Throws `OutputError`, and
  /// `std::system_error` if the file of names cannot be read.
  bool run();

private:
  void readArgument(const std::string& path);
  void read(const Found& found);
  Source open(const Found& found);
  void deliver(Source& source, const std::string& path, Record& record);
  Korvane::qardatainterfaces::QARTransform* makeTransform(const char* id, const std::string& from,
                                                          const std::string& to, bool isStrict);
  void tell(const std::string& path, const std::string& text);
  /// Reports a path for which no reader was requested.
  void failWithRecord(const std::string& path, const std::string& text);
  void fail(const std::string& path, const std::string& text);

  const Options& options_;
  Output output_;
  Notices notices_;
  Progress progress_;
  std::optional<Findings> findings_;
  std::size_t transformWidth_ = 0;
  Korvane::qardatainterfaces::QARFileReaderFactory factory_;
  std::unique_ptr<Presentation> presentation_;
  std::unique_ptr<unsigned char[]> buffer_;
  bool succeeded_ = true;
  bool converted_ = false;  // whether any path was
};

/// Writes a line to standard error.
void say(const std::string& text);

}  // namespace qarread
