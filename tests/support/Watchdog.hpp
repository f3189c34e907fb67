#pragma once

#include <array>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <string>

#include <unistd.h>

/// Ends the program and prints `what` if the object exists for longer than `seconds`. Only one may exist at a time.
class Watchdog {
public:
  Watchdog(unsigned seconds, const std::string& what) {
    std::snprintf(message.data(), message.size(), "\nblocked for %u seconds: %s\n", seconds, what.c_str());
    std::signal(SIGALRM, [](int) {
      // `!`, since a cast alone does not silence the warning about an unused result.
      static_cast<void>(!::write(STDERR_FILENO, message.data(), std::strlen(message.data())));
      ::_exit(1);
    });
    ::alarm(seconds);
  }
  ~Watchdog() { ::alarm(0); }
  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;

private:
  static inline std::array<char, 300> message{};
};
