#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

/// The comparison of a code page with the C library's `iconv`, or with a table of Python if `iconv` lacks the page.
/// It covers every character of the planes that the page reaches, and every code.
struct IconvComparison {
  /// One kind of difference between the two.
  struct Difference {
    std::string what;
    std::string which;
    bool is_loss;  ///< true: the library refuses what iconv converts, or converts otherwise; false: iconv refuses it
  };

  std::string name;
  std::string description;
  std::size_t written = 0;    ///< characters that the library writes
  std::size_t in_pieces = 0;  ///< of these, come back as letter and accents
  std::size_t otherwise = 0;  ///< of these, come back as another character
  std::vector<Difference> differences;
  std::vector<std::string> faults;
};

/// Compares all encoding names that locales of the C library use, and other common names.
std::vector<IconvComparison> compare_with_iconv();

/// The versions of the compared libraries, as written on the page.
std::string versions();

/// The reasons for differences, read from the page of documentation.
class Reasons {
public:
  explicit Reasons(const std::string& page);
  /// The reason in the row of this difference. If the page was made with other versions, a row with the same name and
  /// kind of difference is enough.
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
