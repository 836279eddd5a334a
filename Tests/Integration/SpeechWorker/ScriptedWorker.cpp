// A speech worker that does what a test tells it. It is started as the real one is and finds its script in
// the folder that stands for the model: "script.2" for its second start, else "script". One command a line:
//
//   ready                  says that it is ready
//   print TEXT             writes TEXT and a line feed; "\n" in TEXT is a line feed too
//   dribble TEXT           the same, one byte at a time
//   read                   takes one request
//   answer                 answers the last request with what it was asked
//   serve                  reads and answers until the input ends
//   flood, flood-lines     writes without end, without or with line feeds
//   write-megabytes N      writes N MiB of one line, then its line feed
//   close-output, close-input, ignore-term, stall
//   exit N, die            ends with a status, or by a signal
//
// What it was asked: "id=1 rate=16000 language=ru bytes=3200".

#include "Foundation/Crypto/Base64.h"
#include "Foundation/Json/Json.h"
#include "Foundation/WriteAll.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include <unistd.h>

namespace {

using murmel::Json;

void put(std::string_view text) {
  if (!murmel::writeAll(STDOUT_FILENO, text)) std::_Exit(EXIT_SUCCESS);
}

std::string unescaped(std::string text) {
  for (auto found = text.find("\\n"); found != std::string::npos; found = text.find("\\n"))
    text.replace(found, 2, "\n");
  return text;
}

class Worker {
 public:
  void run(const std::string& command, const std::string& rest) {
    if (command == "ready") put("{\"mrm_worker_protocol\":1,\"event\":\"ready\"}\n");
    if (command == "print") put(unescaped(rest) + '\n');
    if (command == "dribble") dribble(unescaped(rest) + '\n');
    if (command == "read") read();
    if (command == "answer") answer();
    if (command == "serve") {
      while (read()) answer();
      std::_Exit(EXIT_SUCCESS);
    }
    if (command == "flood") flood(std::string(64 * 1024, 'x'));
    if (command == "flood-lines") flood("noise\n{}\n[1]\n");
    if (command == "write-megabytes") writeLine(std::stoul(rest) << 20);
    if (command == "close-output") ::close(STDOUT_FILENO);
    if (command == "close-input") ::close(STDIN_FILENO);
    if (command == "ignore-term") std::signal(SIGTERM, SIG_IGN);
    if (command == "stall") stall();
    if (command == "exit") std::_Exit(std::stoi(rest));
    if (command == "die") std::abort();
  }

 private:
  static void dribble(const std::string& text) {
    for (const char byte : text) put({&byte, 1});
  }

  [[noreturn]] static void flood(const std::string& chunk) {
    while (true) put(chunk);
  }

  static void writeLine(std::size_t size) {
    put(std::string(size, 'x'));
    put("\n");
  }

  [[noreturn]] static void stall() {
    while (true) ::pause();
  }

  bool read() {
    std::string line;
    if (!std::getline(std::cin, line)) return false;
    const auto request = murmel::parsedJson(line);
    const auto audio = murmel::base64::decoded(request["pcm_s16le_base64"].view().value());
    id_ = request["id"].integer().value();
    asked_ = "id=" + std::to_string(id_) + " rate=" + murmel::jsonText(request["sample_rate"]) +
             " language=" + request["language"].text().value_or("none") +
             " bytes=" + (audio ? std::to_string(audio->size()) : "undecodable");
    return true;
  }

  void answer() const {
    const Json reply = {{"mrm_worker_protocol", 1}, {"event", "result"}, {"id", id_}, {"text", asked_}};
    put(murmel::jsonText(reply) + '\n');
  }

  std::int64_t id_ = 0;
  std::string asked_;
};

/// How often a worker was started with this folder, this time included.
std::uintmax_t countStart(const std::filesystem::path& folder) {
  const auto file = folder / "starts";
  std::ofstream(file, std::ios::app) << '.';
  return std::filesystem::file_size(file);
}

}  // namespace

int main(int argumentCount, char** arguments) {
  const std::vector<std::string> given(arguments + 1, arguments + argumentCount);
  if (given.size() != 4 || given[0] != "--model-dir" || given[2] != "--precision" || given[3] != "int8")
    return EXIT_FAILURE;
  std::signal(SIGPIPE, SIG_IGN);
  const std::filesystem::path folder = given[1];
  auto script = folder / ("script." + std::to_string(countStart(folder)));
  if (!std::filesystem::exists(script)) script = folder / "script";
  std::ifstream lines(script);
  Worker worker;
  for (std::string line; std::getline(lines, line);) {
    const auto space = line.find(' ');
    worker.run(line.substr(0, space), space == std::string::npos ? "" : line.substr(space + 1));
  }
}
