#pragma once

namespace benchmarks {

class Report;

/// The rows of the table, by what they are about.
void run_reading(Report& report);
void run_converting(Report& report);
void run_catalogue(Report& report);

}  // namespace benchmarks
