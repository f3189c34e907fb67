#pragma once

#include <gtest/gtest.h>

#include <string>

#include <fcntl.h>
#include <unistd.h>

/// A pipe that holds a text of up to 1 MiB and ends there.
class Pipe {
public:
  explicit Pipe(const std::string& text) {
    int ends[2] = {-1, -1};
    EXPECT_EQ(::pipe(ends), 0);
    EXPECT_GE(::fcntl(ends[1], F_SETPIPE_SZ, 1 << 20), 0);
    EXPECT_EQ(::write(ends[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
    ::close(ends[1]);
    end_ = ends[0];
  }
  ~Pipe() { ::close(end_); }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  /// For opening the pipe again, which then outlives this object.
  std::string native() const { return "/proc/self/fd/" + std::to_string(end_); }
  std::u16string path() const {
    const auto name = native();
    return {name.begin(), name.end()};
  }

private:
  int end_ = -1;
};
