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

/// After this call, SIGHUP, SIGINT and SIGTERM end the program through `checkInterruption`, so that it can clean up.
/// An ignored signal stays ignored.
void catchSignals();

/// Throws `Interrupted` if a signal has arrived. Long loops call it in each iteration.
void checkInterruption();

}  // namespace packing
