#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace benchmarks {

/// The numbers of the system calls that `task` makes when it runs for the second time in a new process.
/// Throws `std::runtime_error` if the task throws, or if processes cannot be traced.
std::vector<long> system_calls_of(const std::function<void()>& task);

/// The peak growth of memory in use while `task` runs in this process, in bytes.
std::size_t peak_memory_of(const std::function<void()>& task);

/// The processor time of a program in seconds, from start to end; its output is discarded. The first argument is its
/// name, which is searched for in PATH. Throws `std::runtime_error` if it fails.
double processor_time_of(const std::vector<std::string>& arguments);

}  // namespace benchmarks
