#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <string>

namespace packing {

/// Runs a program of this folder: the command line is read as `app` declares it, then `work` does what it says. What
/// that throws is a line on standard error. Returns the exit status: 0, 1 if the work failed, 2 if the command line
/// is wrong. A signal that asks the program to end does so after it has tidied up.
int runProgram(CLI::App& app, int argc, char** argv, const std::function<void()>& work);

/// A line on standard error, from the program `name`.
void say(const std::string& name, const std::string& text);

}  // namespace packing
