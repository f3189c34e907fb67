#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <string>

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
  EXPECT_EXIT((task(), std::exit(testing::Test::HasFailure())), testing::ExitedWithCode(0), "");
  clear();
}
