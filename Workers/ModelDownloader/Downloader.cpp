#include "Workers/ModelDownloader/Downloader.h"

#include "Foundation/Text/LineSplitter.h"
#include "Foundation/WriteAll.h"
#include "Workers/ModelDownloader/Command.h"
#include "Workers/ModelDownloader/CurlTransport.h"
#include "Workers/ModelDownloader/DownloadQueue.h"

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace murmel::downloader {

namespace {

/// Writes reports, and remembers when nobody reads them any more.
class ReportWriter {
 public:
  explicit ReportWriter(int descriptor) : descriptor_(descriptor) {}

  void write(const Report& report) { isBroken_ = isBroken_ || !writeAll(descriptor_, lineFor(report)); }
  [[nodiscard]] bool isBroken() const { return isBroken_; }

 private:
  int descriptor_;
  bool isBroken_ = false;
};

/// Carries out what has arrived. `didSomething` tells whether a command was taken.
class CommandReader {
 public:
  CommandReader(int descriptor, DownloadQueue& queue, ReportWriter& reports)
      : descriptor_(descriptor), queue_(queue), reports_(reports) {
    ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) | O_NONBLOCK);
  }

  /// False when no more commands can come.
  bool read() {
    std::array<char, 16 * 1'024> bytes{};
    while (true) {
      const auto count = ::read(descriptor_, bytes.data(), bytes.size());
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) return errno == EAGAIN;
      if (count == 0) return false;
      lines_.append({bytes.data(), static_cast<std::size_t>(count)});
      while (const auto line = lines_.next()) carryOut(*line);
    }
  }

  [[nodiscard]] bool tookCommand() { return std::exchange(tookCommand_, false); }

 private:
  void carryOut(const LineSplitter::Line& line) {
    if (line.tooLong) return reports_.write(RefusedReport{"line_too_long", std::nullopt});
    const auto command = parseCommand(line.text);
    if (!command) return reports_.write(RefusedReport{command.error(), std::nullopt});
    tookCommand_ = true;
    if (const auto* download = std::get_if<DownloadCommand>(&*command))
      queue_.download(download->identifiers, download->importance);
    if (const auto* cancel = std::get_if<CancelCommand>(&*command))
      queue_.cancel(cancel->identifiers, cancel->discards);
    if (const auto* runtime = std::get_if<RuntimeCommand>(&*command))
      queue_.setRuntimeActive(runtime->active);
  }

  int descriptor_;
  DownloadQueue& queue_;
  ReportWriter& reports_;
  LineSplitter lines_{longestCommand};
  bool tookCommand_ = false;
};

}  // namespace

int runDownloader(const Options& options, std::span<const ApprovedModelDownload> manifest, int input,
                  int output) {
  // Told by the return values of the writes instead.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  ReportWriter reports(output);
  const auto store = StoreFolder::open(options.store);
  if (!store) {
    reports.write(FatalReport{store.error().message});
    return 1;
  }
  const SystemClock clock;
  CurlTransport transport(options.certificates);
  TransferLimits limits;
  limits.scale = options.timeScale;
  DownloadQueue queue(
      {manifest, [&](const ApprovedModelDownload& asset) { return asset.url(options.host); }, limits}, *store,
      transport, [&](const Report& report) { reports.write(report); });
  CommandReader commands(input, queue, reports);
  reports.write(ReadyReport{});

  bool wasBusy = false;
  while (commands.read() && !reports.isBroken()) {
    const auto wait = queue.advance(clock.now());
    const bool hadCommand = commands.tookCommand();
    if (queue.isIdle() && (wasBusy || hadCommand)) {
      store->tidy();
      reports.write(IdleReport{});
    }
    wasBusy = !queue.isIdle();
    transport.run(wait, input);
  }
  store->tidy();
  return 0;
}

}  // namespace murmel::downloader
