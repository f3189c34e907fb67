// zrqar_bench [FILTER [SPEEDS]]: runs the rows that the regular expression FILTER matches, prints them as a table and
// writes the speed of every contestant to the file SPEEDS.

#include "Report.hpp"

#include <exception>
#include <iostream>

int main(int argc, char** argv) {
  try {
    std::cout.rdbuf(nullptr);  // suppresses the notices of the transforms
    benchmarks::Report report(argc > 1 ? argv[1] : "", argc > 2 ? argv[2] : "/dev/null");
    benchmarks::run_reading(report);
    benchmarks::run_converting(report);
    benchmarks::run_catalogue(report);
  } catch (const std::exception& error) {
    std::cerr << "zrqar_bench: " << error.what() << '\n';
    return 1;
  }
}
