#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// The comparison of a code page with the C library's `iconv`. It covers every character of the planes that the page
/// reaches, and every code.
struct IconvComparison {
  /// One kind of difference between the two.
  struct Difference {
    std::string what;
    std::string which;
    bool is_loss;  ///< true: the library refuses what iconv converts, or converts otherwise; false: iconv refuses it
  };

  std::string name;
  std::size_t written = 0;    ///< characters that the library writes
  std::size_t in_pieces = 0;  ///< of these, come back as letter and accents
  std::size_t otherwise = 0;  ///< of these, come back as another character
  std::vector<Difference> differences;
  std::vector<std::string> faults;
};

/// Compares the pages of pages.txt that iconv has.
std::vector<IconvComparison> compare_with_iconv();
