#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace benchmarks {

/// The numbers of the system calls that `task` makes when it runs for the second time in a process of its own.
/// Throws `std::runtime_error` if the task throws, or the system does not let a process be traced.
std::vector<long> system_calls_of(const std::function<void()>& task);

/// By how many bytes the memory in use grows, at most, while `task` runs in this process.
std::size_t peak_memory_of(const std::function<void()>& task);

/// The seconds of processor time that a program takes, from its start to its end; its output is dropped. The first
/// argument is its name, looked for as the shell does. Throws `std::runtime_error` if it fails.
double processor_time_of(const std::vector<std::string>& arguments);

}  // namespace benchmarks
