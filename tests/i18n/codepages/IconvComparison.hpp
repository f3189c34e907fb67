#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

/// A code page, compared with the C library's `iconv`, or with a table of Python's where that has none: every
/// character of the planes that the page reaches, and every code.
struct IconvComparison {
  /// Something that the two do not have in common.
  struct Difference {
    std::string what;
    std::string which;
    bool is_loss;  ///< the library does not do what iconv does; otherwise it does more
  };

  std::string name;
  std::string description;
  std::size_t written = 0;    ///< characters that the library writes
  std::size_t in_pieces = 0;  ///< of these, come back as letter and accents
  std::size_t otherwise = 0;  ///< of these, come back as another character
  std::vector<Difference> differences;
  std::vector<std::string> faults;
};

/// All the names that a locale of the C library uses for its encoding, and those that people meet most.
std::vector<IconvComparison> compare_with_iconv();

/// What the comparison is made with, as the page tells it.
std::string versions();

/// The reasons that a page of documentation gives for differences.
class Reasons {
public:
  explicit Reasons(const std::string& page);
  /// Of a row up to the reason. Where other versions are compared, the reason of a row that begins like it.
  std::string find(const IconvComparison& comparison, const IconvComparison::Difference& difference) const;
  bool is_made_with_these_versions() const { return is_exact_; }

private:
  bool is_exact_;
  std::map<std::string, std::string> by_row_, by_start_;
};

/// Tables of markdown. A difference without a reason adds to `faults`.
std::string describe_pages(const std::vector<IconvComparison>& comparisons);
std::string describe_differences(const std::vector<IconvComparison>& comparisons, const Reasons& reasons,
                                 std::vector<std::string>& faults);
