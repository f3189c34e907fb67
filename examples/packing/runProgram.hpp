#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <string>

namespace packing {

/// Runs `work`, which returns the exit status. If it throws, prints a line to standard error; the exit status is then
/// 1, or 2 for a wrong command line. After a signal to end, the program cleans up and then ends by the signal.
int guard(const char* name, const std::function<int()>& work) noexcept;

/// Runs a program of this folder. The constructor of `Program` declares its options to a `CLI::App&`; its `run` does
/// the work.
template <class Program>
int runProgram(const char* description, const char* name, int argc, char** argv) noexcept {
  return guard(name, [=] {
    CLI::App app(description, name);
    Program program(app);
    try {
      app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
      return app.exit(error) == 0 ? 0 : 2;
    }
    program.run();
    return 0;
  });
}

/// Prints a line to standard error, with the name of the program.
void say(const std::string& name, const std::string& text);

}  // namespace packing
