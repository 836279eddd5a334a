// An inference server that does what a test tells it. It takes the arguments of the real one; its model file
// is its script. Lines that begin with "start" are carried out in order before it serves:
//
//   start print-megabytes N, exit N, stall, loading N (so many health checks get 503), unhealthy, no-bind,
//   close-output, leave-child (which keeps the output open for a while)
//
// Lines that begin with "answer" are used one a question, the last one again and again:
//
//   format           what was said, its first letter raised, a full stop behind it
//   say TEXT         TEXT, in which {text} is what was said and {key} the API key, "\n" a line feed
//   body TEXT        a body of TEXT
//   status N         an error
//   silent, drip      never come to an end
//   die
//   hold FILE        "format", once FILE exists; notes "overlap" if somebody else connects meanwhile
//
// It notes what happens in the file NAME.log beside the script.

#include "Foundation/Json/Json.h"
#include "Foundation/WriteAll.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

using murmel::Json;
namespace fs = std::filesystem;

std::string replaced(std::string text, std::string_view what, std::string_view with) {
  for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size()))
    text.replace(at, what.size(), with);
  return text;
}

std::string permissionsOf(const fs::path& path) {
  struct stat status {};
  std::array<char, 8> text{};
  if (::stat(path.c_str(), &status) == 0)
    std::snprintf(text.data(), text.size(), "%o", status.st_mode & 07777);
  return text.data();
}

/// False when the other side has gone.
bool put(int connection, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = ::send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

bool readable(int descriptor, int milliseconds) {
  pollfd waited{descriptor, POLLIN, 0};
  return ::poll(&waited, 1, milliseconds) > 0;
}

void awaitHangUp(int connection) {
  std::array<char, 256> dropped{};
  while (::recv(connection, dropped.data(), dropped.size(), 0) > 0) {
  }
}

std::string head(int status, const std::string& headers) {
  return "HTTP/1.1 " + std::to_string(status) + " Whatever\r\nServer: stub\r\n" + headers + "\r\n";
}

std::string sized(int status, const std::string& body) {
  return head(status,
              "Content-Type: application/json\r\nContent-Length: " + std::to_string(body.size()) + "\r\n") +
         body;
}

std::string chat(const std::string& content) {
  return murmel::jsonText(
      Json{{"choices", Json::array({Json{{"finish_reason", "stop"},
                                         {"index", 0},
                                         {"message", Json{{"role", "assistant"}, {"content", content}}}}})},
           {"object", "chat.completion"}});
}

class Server {
 public:
  Server(fs::path script, fs::path socket, fs::path key)
      : script_(std::move(script)), socket_(std::move(socket)), keyFile_(std::move(key)) {}

  void run() {
    std::ifstream key(keyFile_, std::ios::binary);
    key_.assign(std::istreambuf_iterator<char>(key), {});
    note("key " + key_);
    note("modes " + permissionsOf(keyFile_) + " " + permissionsOf(keyFile_.parent_path()));
    prepare();
    listen();
    while (true) {
      const int connection = ::accept(listener_, nullptr, nullptr);
      if (connection < 0) continue;
      serve(connection);
      ::close(connection);
    }
  }

 private:
  void note(const std::string& line) const {
    std::ofstream(script_.string() + ".log", std::ios::app) << line << '\n';
  }

  void prepare() {
    std::ifstream lines(script_);
    for (std::string line; std::getline(lines, line);) {
      if (line.starts_with("answer ")) answers_.push_back(line.substr(std::strlen("answer ")));
      if (!line.starts_with("start ")) continue;
      const auto command = line.substr(std::strlen("start "));
      const auto space = command.find(' ');
      const auto number = space == std::string::npos ? 0 : std::stoi(command.substr(space + 1));
      if (command.starts_with("exit")) std::_Exit(number);
      if (command == "stall") stall();
      if (command.starts_with("loading")) loading_ = number;
      if (command == "unhealthy") unhealthy_ = true;
      if (command == "close-output") ::close(STDOUT_FILENO);
      if (command == "leave-child" && ::fork() == 0) {
        constexpr int longerThanTheTest = 20;
        ::alarm(longerThanTheTest);
        stall();
      }
      if (command.starts_with("print-megabytes")) printMegabytes(number);
    }
  }

  [[noreturn]] static void stall() {
    while (true) ::pause();
  }

  static void printMegabytes(int count) {
    const std::string chunk(1 << 20, 'x');
    for (int megabyte = 0; megabyte < count; ++megabyte) {
      if (!murmel::writeAll(STDOUT_FILENO, chunk)) return;
    }
  }

  void listen() {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, socket_.c_str(), sizeof address.sun_path - 1);
    listener_ = ::socket(AF_UNIX, SOCK_STREAM, 0);
    constexpr int backlog = 16;
    if (::bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(listener_, backlog) != 0) {
      note("cannot bind");
      std::_Exit(EXIT_FAILURE);
    }
    note("listening");
  }

  void serve(int connection) {
    std::string request;
    std::array<char, 16'384> chunk{};
    std::size_t needed = std::string::npos;
    while (needed == std::string::npos || request.size() < needed) {
      const auto count = ::recv(connection, chunk.data(), chunk.size(), 0);
      if (count <= 0) return;
      request.append(chunk.data(), static_cast<std::size_t>(count));
      const auto blank = request.find("\r\n\r\n");
      if (needed != std::string::npos || blank == std::string::npos) continue;
      constexpr std::string_view lengthHeader = "\r\nContent-Length: ";
      const auto length = request.find(lengthHeader);
      needed = blank + 4 + (length < blank ? std::stoul(request.substr(length + lengthHeader.size())) : 0);
    }
    if (request.starts_with("GET /health HTTP/1.1\r\n")) return health(connection);
    const bool isKnown = request.find("\r\nAuthorization: Bearer " + key_ + "\r\n") != std::string::npos;
    if (!isKnown && !key_.empty()) {
      note("unauthorized");
      put(connection, sized(401, R"({"error":{"code":401}})"));
      return;
    }
    note("question");
    const auto body = murmel::parsedJson(request.substr(request.find("\r\n\r\n") + 4));
    said_ = body["messages"].element(1)["content"].text().value();
    const auto index = std::min(asked_++, answers_.size() - 1);
    answer(connection, answers_.at(index));
  }

  void health(int connection) {
    if (unhealthy_) return awaitHangUp(connection);
    if (loading_-- > 0) {
      note("loading");
      put(connection, sized(503, R"({"error":{"message":"Loading model"}})"));
      return;
    }
    put(connection, sized(200, R"({"status":"ok"})"));
  }

  [[nodiscard]] std::string formatted() const {
    auto text = said_ + ".";
    if (!text.empty()) text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
    return chat(text);
  }

  void answer(int connection, const std::string& command) {
    const auto space = command.find(' ');
    const auto name = command.substr(0, space);
    const auto rest = space == std::string::npos ? std::string() : command.substr(space + 1);
    if (name == "format") put(connection, sized(200, formatted()));
    if (name == "say") {
      auto text = replaced(replaced(replaced(rest, "{text}", said_), "{key}", key_), "\\n", "\n");
      put(connection, sized(200, chat(text)));
    }
    if (name == "body") put(connection, sized(200, rest));
    if (name == "status") put(connection, sized(std::stoi(rest), formatted()));
    if (name == "silent") awaitHangUp(connection);
    if (name == "drip") {
      put(connection, "HTTP/1.1 200 OK\r\nX-Drip: ");
      while (put(connection, "d") && !readable(connection, 5)) {
      }
    }
    if (name == "die") std::abort();
    if (name == "hold") hold(connection, rest);
  }

  void hold(int connection, const fs::path& gate) {
    note("holding");
    while (!fs::exists(gate)) {
      if (readable(connection, 0)) return note("given up");
      if (readable(listener_, 2)) return note("overlap");
    }
    put(connection, sized(200, formatted()));
  }

  fs::path script_, socket_, keyFile_;
  std::string key_;
  std::vector<std::string> answers_;
  std::size_t asked_ = 0;
  std::string said_;
  int loading_ = 0;
  bool unhealthy_ = false;
  int listener_ = -1;
};

}  // namespace

int main(int argumentCount, char** arguments) {
  const std::vector<std::string> given(arguments + 1, arguments + argumentCount);
  const auto value = [&](std::size_t at, std::string_view name) {
    return at + 1 < given.size() && given[at] == name ? given[at + 1] : std::string();
  };
  const std::vector<std::string> fixed{"--no-webui",
                                       "--jinja",
                                       "--reasoning",
                                       "off",
                                       "--reasoning-format",
                                       "none",
                                       "--reasoning-budget",
                                       "0",
                                       "-c",
                                       "1024",
                                       "-np",
                                       "1",
                                       "--offline",
                                       "--log-disable"};
  constexpr std::size_t fixedAt = 6;
  if (given.size() != fixedAt + fixed.size() ||
      !std::equal(fixed.begin(), fixed.end(), given.begin() + fixedAt))
    return EXIT_FAILURE;
  Server(value(0, "-m"), value(2, "--host"), value(4, "--api-key-file")).run();
}
