#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// The properties of one code page, found by running the converters.
struct CodePageSurvey {
  std::string name;                  ///< name of ICU's table, or of the library's own
  std::vector<std::string> aliases;  ///< without converter options; the first one opens the page
  bool refused = false;

  std::uint64_t kept = 0;               ///< code points that come back from their bytes
  std::uint64_t rejected = 0;           ///< code points that a strict converter refuses
  std::uint64_t in_pieces = 0;          ///< code points that come back as a letter and accents
  std::vector<char32_t> not_read;       ///< code points that are written, but read back as others
  std::vector<char32_t> not_rewritten;  ///< code points that are read, but written as other bytes
  bool ascii = true;                    ///< all bytes below 80 are ASCII
  bool states = false;                  ///< some byte sequences are not text: shifts, escapes, signatures

  std::uint64_t checks = 0;
  std::vector<std::string> faults;  ///< violations of the contract: something dropped, or changed silently
};

enum class SurveyDepth {
  complete,  ///< every code point; every sequence of two bytes, and longer ones by sample
  thinned    ///< a sixteenth of that, for sanitizers
};

/// A name of each code page that the library has.
std::vector<std::string> code_page_names();

/// All code pages that ICU and the library offer, surveyed by two threads.
std::vector<CodePageSurvey> survey_code_pages(SurveyDepth depth);
