#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// What the converters make of one code page, found by trying.
struct CodePageSurvey {
  std::string name;                  ///< of ICU's table, or of the library's own
  std::vector<std::string> aliases;  ///< without converter options; the first one asks for the page
  bool refused = false;

  std::uint64_t kept = 0;               ///< code points that come back from their bytes
  std::uint64_t rejected = 0;           ///< code points that a strict converter refuses
  std::uint64_t in_pieces = 0;          ///< code points that come back as a letter and accents
  std::vector<char32_t> not_read;       ///< are written, but their bytes are read as something else
  std::vector<char32_t> not_rewritten;  ///< are read from bytes that are not written for them
  bool ascii = true;                    ///< the bytes below 80 are ASCII, all of them
  bool states = false;                  ///< some byte sequences stand for no text: shifts, escapes, signatures

  std::uint64_t checks = 0;
  std::vector<std::string> faults;  ///< broken promises: something dropped, or changed without a word

  bool lossless() const { return kept >= 0x110000 - 0x800 && not_read.empty(); }
};

enum class SurveyDepth {
  complete,  ///< every code point; every sequence of two bytes, and longer ones by sample
  thinned    ///< a sixteenth of it, to run under sanitizers
};

/// A name for each code page that the library can be asked for.
std::vector<std::string> code_page_names();

/// All code pages that ICU and the library offer, surveyed by two threads.
std::vector<CodePageSurvey> survey_code_pages(SurveyDepth depth);

/// A table of markdown.
std::string describe(const std::vector<CodePageSurvey>& surveys);
