#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <string>

namespace packing {

/// Does `work`, which returns the exit status. What it throws is a line on standard error, and the exit status is 1,
/// or 2 if the command line is wrong. A signal that asks the program to end does so after it has tidied up.
int guard(const char* name, const std::function<int()>& work) noexcept;

/// Runs a program of this folder. The constructor of `Program` declares the command line to a `CLI::App&`; its `run`
/// does what the command line says.
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

/// A line on standard error, from the program `name`.
void say(const std::string& name, const std::string& text);

}  // namespace packing
