#pragma once

#include <exception>

namespace packing {

/// A signal asks the program to end.
class Interrupted : public std::exception {
public:
  explicit Interrupted(int signal) noexcept : signal_(signal) {}
  int signal() const noexcept { return signal_; }
  const char* what() const noexcept override { return "interrupted"; }

private:
  int signal_;
};

/// From now on SIGHUP, SIGINT and SIGTERM end the program through `checkInterruption`, so that it can tidy up. A
/// signal that is ignored stays so.
void catchSignals();

/// Throws `Interrupted` once a signal has come. Long loops call it each time round.
void checkInterruption();

}  // namespace packing
