#pragma once

#include <cstddef>
#include <string>

namespace benchmarks {

constexpr std::size_t KiB = 1024;
constexpr std::size_t MiB = 1024 * KiB;

/// A text of exactly `size` bytes in `encoding`, the same in every run. It has different lines of source code
/// ("ascii") or prose (the other scripts in corpora.cpp, such as "western" and "japanese"), and newlines at the end
/// to reach the size. Throws `std::exception` if there is no such script, or the encoding lacks one of its
/// characters.
std::string corpus(const std::string& script, const std::string& encoding, std::size_t size);

}  // namespace benchmarks
