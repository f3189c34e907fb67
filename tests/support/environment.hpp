#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <map>
#include <string>

/// Ends a process that a death test started, and prints what failed in it, which GoogleTest does not.
[[noreturn]] inline void end_with_failures() {
  const auto& result = *testing::UnitTest::GetInstance()->current_test_info()->result();
  for (int i = 0; i < result.total_part_count(); ++i) std::cerr << result.GetTestPartResult(i).message() << '\n';
  std::exit(result.Failed() ? 1 : 0);
}

/// Runs `task` in a new process with only these locale variables, since a process reads its environment once.
template <class Task>
void in_environment(const std::map<std::string, std::string>& variables, Task task) {
  const auto clear = [] {
    for (const auto* const name : {"LC_ALL", "LC_CTYPE", "LC_MESSAGES", "LANG", "LANGUAGE", "LOCPATH"})
      ::unsetenv(name);
  };
  clear();
  for (const auto& [name, value] : variables) ::setenv(name.c_str(), value.c_str(), 1);
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto child = [&task] {
    task();
    end_with_failures();
  };
  EXPECT_EXIT(child(), testing::ExitedWithCode(0), "");
  clear();
}
