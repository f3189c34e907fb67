// Reads files through the library; see `qarread --help`.

#include "../Output.hpp"
#include "../UsageError.hpp"
#include "CommandLine.hpp"
#include "Session.hpp"

#include <csignal>
#include <iostream>
#include <new>

namespace qarread {
namespace {

int answer(const std::string& text) {
  Output output;
  output.write(text);
  output.finish();
  return 0;
}

int run(int argc, char** argv) {
  CommandLine line;
  if (const auto text = line.parse(argc, argv)) return answer(*text);
  return Session(line.options(), line.conversions()).run() ? 0 : 1;
}

}  // namespace
}  // namespace qarread

int main(int argc, char** argv) {
  using namespace qarread;
  const auto atClosedPipe =
      std::signal(SIGPIPE, SIG_IGN);  // an ordinary write error, so that everything is cleaned up
  try {
    return run(argc, argv);
  } catch (const UsageError& error) {
    say(error.what());
    std::cerr << CommandLine::usage;
    return 2;
  } catch (const OutputError& error) {
    if (error.code() == std::errc::broken_pipe) {
      std::signal(SIGPIPE, atClosedPipe);
      std::raise(SIGPIPE);  // ends without a message, as other programs do
    } else {
      say(error.what());
    }
  } catch (const std::bad_alloc&) {
    say("there is not enough memory");
  } catch (const std::exception& error) {
    say(error.what());
  }
  return 1;
}
