// What confinement costs the speech worker: its start up to "ready", and the processor time of a recognition,
// beside the same worker without any. usage: benchmark_confinement MODEL_FOLDER ...; a machine that does
// nothing else. Figures to reach: a recognition 1.02 times as long, a start 10 ms longer.

#include "Foundation/Crypto/Base64.h"
#include "Foundation/WriteAll.h"
#include "Platform/Linux/Process/LinuxProcessLauncher.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

namespace {

using namespace murmel;

constexpr int pairs = 15;

struct Figures {
  double start = 0;  ///< ms
  double computing = 0;
};

double milliseconds(const timespec& time) {
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}
double now() {
  timespec time{};
  ::clock_gettime(CLOCK_MONOTONIC, &time);
  return milliseconds(time);
}
double processorTime(pid_t process) {
  clockid_t clock{};
  timespec time{};
  ::clock_getcpuclockid(process, &clock);
  ::clock_gettime(clock, &time);
  return milliseconds(time);
}

void awaitLine(int output) {
  for (char letter = 0; letter != '\n';)
    if (::read(output, &letter, 1) != 1) std::exit((std::fputs("the worker ended\n", stderr), 1));
}

Figures conversation(pid_t process, int input, int output, double begin, const std::string& request) {
  awaitLine(output);
  Figures figures{.start = now() - begin};
  const auto before = processorTime(process);
  writeAll(input, request);
  awaitLine(output);
  figures.computing = processorTime(process) - before;
  return figures;
}

Figures confined(const std::string& model, const std::string& request) {
  static LinuxProcessLauncher launcher;
  const auto begin = now();
  const auto process = launcher.launch(
      {MURMEL_WORKER, {"--model-dir", model, "--precision", "int8"}, {}, {.readable = {model}}});
  if (!process) std::exit((std::fputs(process.error().c_str(), stderr), 1));
  return conversation((*process)->identifier(), (*process)->input(), (*process)->output(), begin, request);
}

Figures open(const std::string& model, const std::string& request) {
  std::array<int, 2> input{};
  std::array<int, 2> output{};
  if (::pipe2(input.data(), O_CLOEXEC) != 0 || ::pipe2(output.data(), O_CLOEXEC) != 0) std::exit(1);
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
  ::posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
  std::string program = MURMEL_OPEN_WORKER;
  std::string worker = MURMEL_WORKER;
  std::string folder = model;
  std::array<char*, 4> arguments{program.data(), worker.data(), folder.data(), nullptr};
  std::array<char*, 1> environment{nullptr};
  pid_t process = -1;
  const auto begin = now();
  if (::posix_spawn(&process, program.c_str(), &actions, nullptr, arguments.data(), environment.data()) != 0)
    std::exit(1);
  ::close(input[0]);
  ::close(output[1]);
  const auto figures = conversation(process, input[1], output[0], begin, request);
  ::close(input[1]);
  ::waitpid(process, nullptr, 0);
  ::close(output[0]);
  ::posix_spawn_file_actions_destroy(&actions);
  return figures;
}

double middle(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

}  // namespace

int main(int count, char** arguments) {
  std::ifstream file("/usr/share/pocketsphinx/test/data/cards/005.wav", std::ios::binary);
  std::vector<std::uint8_t> sound{std::istreambuf_iterator<char>(file), {}};
  constexpr std::ptrdiff_t header = 44;
  if (count < 2 || std::ssize(sound) < header) return 1;
  sound.erase(sound.begin(), sound.begin() + header);
  const auto request = R"({"id":1,"sample_rate":16000,"language":"en","pcm_s16le_base64":")" +
                       base64::encoded(sound) + "\"}\n";
  for (const std::string model : std::vector(arguments + 1, arguments + count)) {
    std::vector<double> starts;
    std::vector<double> ratios;
    std::array<double, 2> fastest{1e9, 1e9};
    confined(model, request);  // so that both find the files in memory
    for (int pair = 0; pair < pairs; ++pair) {
      // Who is first changes, so that neither gains by it.
      const bool first = pair % 2 == 0;
      const auto one = first ? confined(model, request) : open(model, request);
      const auto other = first ? open(model, request) : confined(model, request);
      const auto& held = first ? one : other;
      const auto& free = first ? other : one;
      starts.push_back(held.start - free.start);
      ratios.push_back(held.computing / free.computing);
      fastest = {std::min(fastest[0], held.start), std::min(fastest[1], free.start)};
    }
    std::printf(
        "%s: recognition %.3f times as much, start %.1f ms longer (medians); fastest starts %.1f and %.1f "
        "ms\n",
        model.c_str(), middle(ratios), middle(starts), fastest[0], fastest[1]);
  }
}
