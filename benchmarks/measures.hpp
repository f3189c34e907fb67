#pragma once

#include <cstddef>
#include <functional>
#include <vector>

namespace benchmarks {

/// The numbers of the system calls that `task` makes when it runs for the second time in a process of its own.
/// Throws `std::runtime_error` if the task throws, or the system does not let a process be traced.
std::vector<long> system_calls_of(const std::function<void()>& task);

/// By how many bytes the memory in use grows, at most, while `task` runs in this process.
std::size_t peak_memory_of(const std::function<void()>& task);

}  // namespace benchmarks
