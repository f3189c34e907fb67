#pragma once

#include <cstddef>
#include <fstream>
#include <functional>
#include <regex>
#include <string>
#include <vector>

namespace benchmarks {

/// The goal of this library relative to a peer; a factor of 0 means no goal.
struct Goal {
  double time_at_most = 0;
  double speed_at_least = 0;
};

/// One way to do the work of a row. `run` appends its output to `result`, which is null while it is timed.
struct Contestant {
  std::string name;
  std::function<void(std::string* result)> run;
  Goal goal = {};
};

struct Contest {
  std::size_t bytes;                    // processed in one run
  std::vector<Contestant> contestants;  // this library, and its peers with the goals against them
};

/// Runs the rows of the table and prints them, in Markdown.
class Report {
public:
  /// Skips rows whose name `filter` does not match, and writes the speed of each contestant to the file `speeds`.
  Report(const std::string& filter, const std::string& speeds);
  /// Prints how many goals were met.
  ~Report();
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;

  /// Checks that all contestants deliver the same result, and then runs them in turns for some rounds. Prints the
  /// median of the rounds' ratios, and their range.
  void contest(const std::string& row, const std::function<Contest()>& prepare);

  /// A row that is not about time: `value()` must be at most `limit`.
  void measure(const std::string& row, double limit, const std::function<double()>& value);

private:
  bool wanted(const std::string& row) const { return std::regex_search(row, filter_); }
  std::string verdict(bool met);

  std::regex filter_;
  std::ofstream speeds_;
  int goals_ = 0;
  int met_ = 0;
};

/// The rows, by subject.
void run_reading(Report& report);
void run_converting(Report& report);
void run_catalogue(Report& report);

}  // namespace benchmarks
