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

int runProgram(CLI::App& app, int argc, char** argv, const std::function<void()>& work) {
  const auto fail = [&](const std::exception& error, int status) {
    say(app.get_name(), qarread::withReason(error));
    return status;
  };
  try {
    app.parse(argc, argv);
    catchSignals();
    work();
    return 0;
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  } catch (const qarread::UsageError& error) {
    return fail(error, 2);
  } catch (const std::invalid_argument& error) {
    return fail(error, 2);
  } catch (const Interrupted& error) {
    std::signal(error.signal(), SIG_DFL);
    std::raise(error.signal());
    return 1;
  } catch (const std::exception& error) {
    return fail(error, 1);
  }
}

void say(const std::string& name, const std::string& text) {
  std::cerr << name + ": " + qarread::printable(text) + '\n';
}

}  // namespace packing
