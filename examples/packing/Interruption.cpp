#include "Interruption.hpp"

#include <csignal>
#include <initializer_list>

namespace packing {
namespace {

volatile std::sig_atomic_t caught = 0;

void note(int signal) { caught = signal; }

}  // namespace

void catchSignals() {
  for (const int signal : {SIGHUP, SIGINT, SIGTERM})
    if (std::signal(signal, note) == SIG_IGN) std::signal(signal, SIG_IGN);
}

void checkInterruption() {
  if (caught != 0) throw Interrupted(caught);
}

}  // namespace packing
