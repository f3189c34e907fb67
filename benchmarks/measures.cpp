#include "measures.hpp"

#include <csignal>
#include <cstddef>
#include <fstream>
#include <stdexcept>
#include <string>

#include <fcntl.h>
#include <malloc.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

namespace benchmarks {
namespace {

/// Stops for the tracer without a system call.
void mark() { asm volatile("int3" ::: "memory"); }

[[noreturn]] void run_traced(const std::function<void()>& task) {
  if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) ::_exit(1);
  try {
    task();
    mark();
    task();
    mark();
    ::_exit(0);
  } catch (...) {
    ::_exit(1);
  }
}

std::size_t own_status(const std::string& field) {
  std::ifstream status("/proc/self/status");
  std::string word;
  while (status >> word && word != field) continue;
  std::size_t kibibytes = 0;
  if (!(status >> kibibytes)) throw std::runtime_error("/proc/self/status lacks " + field);
  return 1024 * kibibytes;
}

}  // namespace

std::vector<long> system_calls_of(const std::function<void()>& task) {
  const pid_t child = ::fork();
  if (child == 0) run_traced(task);
  std::vector<long> calls;
  int status = 0;
  bool inside = false;
  for (int marks = 0; ::waitpid(child, &status, 0) == child && WIFSTOPPED(status);) {
    constexpr int system_call = SIGTRAP | 0x80;
    const int signal = WSTOPSIG(status);
    if (signal == SIGTRAP && ++marks == 1) ::ptrace(PTRACE_SETOPTIONS, child, 0, PTRACE_O_TRACESYSGOOD);
    if (signal == system_call) {
      inside = !inside;  // stops at the start and at the end of each call
      if (inside) calls.push_back(::ptrace(PTRACE_PEEKUSER, child, offsetof(user, regs.orig_rax), 0));
    }
    const bool foreign = signal != SIGTRAP && signal != system_call;
    ::ptrace(marks == 1 ? PTRACE_SYSCALL : PTRACE_CONT, child, 0, foreign ? signal : 0);
  }
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) throw std::runtime_error("the traced process failed");
  return calls;
}

std::size_t peak_memory_of(const std::function<void()>& task) {
  ::malloc_trim(0);  // free memory in the heap would hide the growth
  std::ofstream("/proc/self/clear_refs") << 5 << std::flush;
  const auto before = own_status("VmRSS:");
  task();
  return own_status("VmHWM:") - before;
}

double processor_time_of(const std::vector<std::string>& arguments) {
  std::vector<char*> words;
  for (const auto& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);
  const pid_t child = ::fork();
  if (child == 0) {
    const int nowhere = ::open("/dev/null", O_WRONLY);
    ::dup2(nowhere, STDOUT_FILENO);
    ::execvp(words[0], words.data());
    ::_exit(127);
  }
  int status = 0;
  rusage used{};
  if (::wait4(child, &status, 0, &used) != child || status != 0)
    throw std::runtime_error(arguments[0] + " does not run");
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(used.ru_utime) + seconds(used.ru_stime);
}

}  // namespace benchmarks
