#include "Integration/ModelDownloader/RunningDownloader.h"

#include "Foundation/Json/Json.h"
#include "Foundation/WriteAll.h"
#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Support/BuildPaths.h"

#include <fstream>
#include <stdexcept>

#include <poll.h>
#include <unistd.h>

namespace murmel::test {

namespace {

constexpr int longestSilence = 10'000;  // ms

}  // namespace

RunningDownloader::RunningDownloader(const Setting& setting) {
  const auto manifest = setting.store.string() + ".manifest";
  std::ofstream list(manifest);
  for (const auto& file : setting.files) {
    list << file.identifier << ' ' << file.sha256 << ' '
         << (file.bytes < 0 ? std::string("-") : std::to_string(file.bytes)) << ' ' << file.folder << ' '
         << file.file << '\n';
  }
  list.close();
  auto launched = LinuxProcessLauncher().launch(
      {.executable = buildFolder() + "/tests/mrm-test-model-downloader",
       .arguments = {"--manifest", manifest, "--store", setting.store.string(), "--development-host",
                     setting.address, "--development-certificates", setting.certificate,
                     "--development-time-scale", setting.timeScale},
       .environment = {},
       .sandbox = {.readable = {manifest, setting.certificate},
                   .writable = {setting.store},
                   .network = ProcessSandbox::Network::internet}});
  if (!launched) throw std::runtime_error(launched.error());
  process_ = std::move(*launched);
}

void RunningDownloader::send(const std::string& line) {
  (void)writeAll(process_->input(), line + "\n");  // one that has gone shows in what it says
}

void RunningDownloader::download(const std::vector<std::string>& identifiers, const std::string& importance) {
  send(jsonText(Json{{"mrm_downloader_protocol", 1},
                     {"command", "download"},
                     {"identifiers", identifiers},
                     {"importance", importance}}));
}

void RunningDownloader::cancel(const std::string& identifier, bool discards) {
  send(jsonText(Json{{"mrm_downloader_protocol", 1},
                     {"command", "cancel"},
                     {"identifiers", Json::array({identifier})},
                     {"discard", discards}}));
}

std::optional<DownloaderEvent> RunningDownloader::next() {
  while (true) {
    if (const auto line = lines_.next()) {
      const auto object = parsedJson(line->text);
      const auto at = [&object](const char* key) { return object[key].text(); };
      return DownloaderEvent{.event = at("event").value(),
                             .identifier = at("identifier").value_or(""),
                             .reason = at("reason").or_else([&] { return at("state"); }).value_or(""),
                             .message = at("message").value_or(""),
                             .received = object["received"].integer().value_or(-1)};
    }
    pollfd readable{process_->output(), POLLIN, 0};
    if (::poll(&readable, 1, longestSilence) <= 0) return std::nullopt;
    char bytes[64 * 1024];
    const auto count = ::read(process_->output(), bytes, sizeof bytes);
    if (count <= 0) {
      hasEnded_ = true;
      return std::nullopt;
    }
    lines_.append({bytes, static_cast<std::size_t>(count)});
  }
}

std::optional<DownloaderEvent> RunningDownloader::waitFor(const std::string& event,
                                                          const std::string& identifier) {
  while (auto read = next()) {
    if (read->event == event && (identifier.empty() || read->identifier == identifier)) return read;
  }
  return std::nullopt;
}

std::vector<DownloaderEvent> RunningDownloader::untilIdle() {
  std::vector<DownloaderEvent> events;
  while (auto read = next()) {
    if (read->event == "progress" || read->event == "ready") continue;
    events.push_back(*read);
    if (read->event == "idle") break;
  }
  return events;
}

void RunningDownloader::kill() {
  process_->terminate(std::chrono::milliseconds::zero());
}

void RunningDownloader::close() {
  process_->closeInput();
  while (next()) {
  }
  process_->terminate(std::chrono::seconds(5));
}

}  // namespace murmel::test
