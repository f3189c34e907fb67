#include "Report.hpp"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <stdexcept>

#include <malloc.h>

namespace benchmarks {
namespace {

constexpr int rounds = 7;
constexpr double seconds_each = 0.03;

/// Measures the time of one run of each contestant.
class Times : public benchmark::BenchmarkReporter {
public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const auto& run : runs) seconds.push_back(run.real_accumulated_time / static_cast<double>(run.iterations));
  }

  std::vector<double> seconds;
};

std::vector<Times> run_rounds(const std::vector<Contestant>& contestants) {
  benchmark::ClearRegisteredBenchmarks();
  for (const auto& contestant : contestants)
    benchmark::RegisterBenchmark(contestant.name.c_str(),
                                 [&contestant](benchmark::State& state) {
                                   ::malloc_trim(0);  // all begin with the same heap, regardless of earlier runs
                                   for ([[maybe_unused]] auto _ : state) contestant.run(nullptr);
                                 })
        ->UseRealTime()
        ->MinTime(seconds_each);
  std::vector<Times> times(rounds);
  for (auto& round : times) benchmark::RunSpecifiedBenchmarks(&round, "all");
  return times;
}

void check_equal_results(const std::vector<Contestant>& contestants) {
  std::vector<std::string> results;
  for (const auto& contestant : contestants) {
    contestant.run(&results.emplace_back());
    if (results.back() != results.front() || results.front().empty())
      throw std::runtime_error(contestant.name + " has a different result");
  }
}

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + rounds / 2, values.end());
  return values[rounds / 2];
}

template <class... Values>
std::string format(const char* pattern, Values... values) {
  std::array<char, 100> text{};
  std::snprintf(text.data(), text.size(), pattern, values...);
  return text.data();
}

void print(const std::string& row, const std::string& goal, const std::string& measured, const std::string& range,
           const std::string& verdict) {
  std::printf("| %-55s | %-37s | %8s | %-13s | %-7s |\n", row.c_str(), goal.c_str(), measured.c_str(), range.c_str(),
              verdict.c_str());
  std::fflush(stdout);
}

}  // namespace

Report::Report(const std::string& filter, const std::string& speeds) : filter_(filter), speeds_(speeds) {
  print("what", "goal", "measured", "of 7 rounds", "verdict");
  print("---", "---", "---:", "---", "---");
}

Report::~Report() { std::printf("\n%d of %d goals met.\n", met_, goals_); }

void Report::contest(const std::string& row, const std::function<Contest()>& prepare) {
  if (!wanted(row)) return;
  const auto [bytes, contestants] = prepare();
  check_equal_results(contestants);
  const auto times = run_rounds(contestants);
  for (std::size_t i = 0; i < contestants.size(); ++i) {
    const auto& [name, run, goal] = contestants[i];
    std::vector<double> seconds, ratios;
    for (const auto& round : times) {
      const double ratio = round.seconds.at(0) / round.seconds.at(i);
      ratios.push_back(goal.speed_at_least > 0 ? 1 / ratio : ratio);
      seconds.push_back(round.seconds.at(i));
    }
    speeds_ << row << ';' << name << ';' << bytes << ';' << static_cast<double>(bytes) / median(seconds) / 1e6
            << '\n';
    if (i == 0) continue;

    const double ratio = median(ratios);
    const auto [least, most] = std::minmax_element(ratios.begin(), ratios.end());
    std::string aim = "(time", judgement;
    if (goal.time_at_most > 0) {
      aim = format("time <= %.3g", goal.time_at_most);
      judgement = verdict(ratio <= goal.time_at_most);
    } else if (goal.speed_at_least > 0) {
      aim = format("speed >= %.3g", goal.speed_at_least);
      judgement = verdict(ratio >= goal.speed_at_least);
    }
    print(row, aim + " x " + name + (judgement.empty() ? ")" : ""), format("%.2f", ratio),
          format("%.2f to %.2f", *least, *most), judgement);
  }
}

void Report::measure(const std::string& row, double limit, const std::function<double()>& value) {
  if (!wanted(row)) return;
  const double measured = value();
  print(row, format("<= %.3g", limit), format("%.3g", measured), "", verdict(measured <= limit));
}

std::string Report::verdict(bool met) {
  ++goals_;
  met_ += met ? 1 : 0;
  return met ? "met" : "missed";
}

}  // namespace benchmarks
