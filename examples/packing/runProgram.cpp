#include "runProgram.hpp"

#include "../UsageError.hpp"
#include "../printable.hpp"
#include "../reason.hpp"
#include "Interruption.hpp"

#include <csignal>
#include <exception>
#include <iostream>
#include <stdexcept>

namespace packing {

namespace {

int fail(const char* name, const std::exception& error, int status) {
  say(name, qarread::withReason(error));
  return status;
}

}  // namespace

int guard(const char* name, const std::function<int()>& work) noexcept try {
  try {
    catchSignals();
    return work();
  } catch (const qarread::UsageError& error) {
    return fail(name, error, 2);
  } catch (const std::invalid_argument& error) {
    return fail(name, error, 2);
  } catch (const Interrupted& error) {
    std::signal(error.signal(), SIG_DFL);
    std::raise(error.signal());
    return 1;
  } catch (const std::exception& error) {
    return fail(name, error, 1);
  }
} catch (...) {  // there is no memory for the message
  return 1;
}

void say(const std::string& name, const std::string& text) {
  std::cerr << name + ": " + qarread::printable(text) + '\n';
}

}  // namespace packing
