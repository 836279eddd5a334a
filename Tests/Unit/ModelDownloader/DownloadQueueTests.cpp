#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"
#include "Workers/ModelDownloader/DownloadQueue.h"

#include <list>

namespace murmel::downloader {
namespace {

using Importance = MRMModelDownloadImportance;
using std::chrono::seconds;

/// Moves no bytes; shows what was asked for.
class FakeTransport final : public Transport {
 public:
  struct Running {
    std::string url;
    double priority;
    bool paused = false;
    TransferObserver* observer;
  };
  Identifier start(const TransferRequest& request, TransferObserver& observer) override {
    running.emplace(++last, Running{request.url, request.priority, false, &observer});
    return last;
  }
  void stop(Identifier transfer) override { EXPECT_EQ(running.erase(transfer), 1u); }
  void pause(Identifier transfer, bool paused) override { running.at(transfer).paused = paused; }
  void prioritise(Identifier transfer, double priority) override { running.at(transfer).priority = priority; }

  /// The file's name of every transfer, paused ones in brackets.
  [[nodiscard]] Strings names() const {
    Strings result;
    for (const auto& [identifier, transfer] : running) {
      auto name = transfer.url.substr(transfer.url.rfind('/') + 1);
      name = name.substr(0, name.find('?'));
      result.push_back(transfer.paused ? "[" + name + "]" : name);
    }
    return result;
  }
  /// Ends the transfer of that file as the network would.
  void end(const std::string& name, const std::optional<MRMTransferError>& error) {
    for (auto entry = running.begin(); entry != running.end(); ++entry) {
      if (entry->second.url.find("/" + name + "?") == std::string::npos) continue;
      auto* observer = entry->second.observer;
      running.erase(entry);
      observer->onEnd(error);
      return;
    }
    FAIL() << name << " does not run";
  }

  std::map<Identifier, Running> running;
  Identifier last = 0;
};

class Queue : public testing::Test {
 protected:
  static std::vector<ApprovedModelDownload> listWith(std::list<std::string>& digests) {
    std::vector<ApprovedModelDownload> list;
    for (const auto* name : {"a", "b", "c", "d", "e", "f", "g", "h"}) {
      list.push_back({.identifier = name,
                      .repository = "r",
                      .revision = "v",
                      .file = name,
                      .sha256 = digests.emplace_back(64, *name),
                      .relativePath = std::nullopt,
                      .byteCount = 1000,
                      .folder = "Model"});
    }
    return list;
  }

  TemporaryFolder folder;
  std::list<std::string> digests;
  std::vector<ApprovedModelDownload> manifest = listWith(digests);
  std::expected<StoreFolder, FileError> store = StoreFolder::open(folder.path());
  FakeTransport transport;
  std::vector<Report> reports;
  DownloadQueue queue{
      {manifest, [](const ApprovedModelDownload& asset) { return asset.url("https://host/"); }, {}},
      *store,
      transport,
      [this](const Report& report) { reports.push_back(report); }};
  Instant now{};
};

TEST_F(Queue, UsesSixConnectionsAndGivesThemToWhatIsRequired) {
  queue.download({"a", "b", "c", "d", "e", "f", "g"}, Importance::optional);
  queue.advance(now);
  EXPECT_EQ(transport.names(), (Strings{"a", "b", "c", "d", "e", "f"}));
  queue.download({"h"}, Importance::required);
  queue.advance(now);
  EXPECT_EQ(transport.names(), (Strings{"a", "b", "c", "d", "e", "h"}));
  for (const auto& [identifier, transfer] : transport.running)
    EXPECT_EQ(transfer.priority, transfer.url.find("/h?") == std::string::npos ? 0.25 : 0.75);
  // The place that becomes free goes to the one that had to make room.
  queue.cancel({"h"}, false);
  queue.advance(now);
  EXPECT_EQ(transport.names(), (Strings{"a", "b", "c", "d", "e", "f"}));
  EXPECT_EQ(transport.running.begin()->second.priority, 0.5);
}

TEST_F(Queue, PausesOptionalTransfersAndStartsNoneWhileSomebodyDictates) {
  queue.download({"a"}, Importance::optional);
  queue.advance(now);
  queue.setRuntimeActive(true);
  queue.download({"b"}, Importance::optional);
  queue.download({"c"}, Importance::required);
  queue.advance(now);
  EXPECT_EQ(transport.names(), (Strings{"[a]", "c"}));
  // A pause is no silence.
  queue.advance(now += seconds(3600));
  EXPECT_TRUE(contains(transport.names(), {"[a]"}));
  queue.setRuntimeActive(false);
  queue.advance(now);
  EXPECT_TRUE(contains(transport.names(), {"a", "b"}));
}

TEST_F(Queue, ADownloadThatBecomesRequiredIsNotPausedAnyMore) {
  queue.setRuntimeActive(true);
  queue.download({"a"}, Importance::optional);
  queue.advance(now);
  EXPECT_EQ(transport.names(), Strings{});
  queue.download({"a"}, Importance::required);
  queue.advance(now);
  EXPECT_EQ(transport.names(), Strings{"a"});
}

TEST_F(Queue, TriesAgainWhenTheDelayIsOverAndNotBefore) {
  queue.download({"a"}, Importance::required);
  queue.advance(now);
  transport.end("a", MRMTransferError{std::string(urlErrorDomain), urlErrorTimedOut, {}});
  EXPECT_EQ(queue.advance(now), seconds(1));
  EXPECT_EQ(transport.names(), Strings{});
  const auto* progress = std::get_if<ProgressReport>(&reports.back());
  ASSERT_NE(progress, nullptr);
  EXPECT_EQ(progress->state, "retrying");
  EXPECT_EQ(progress->cause, "The model host did not answer in time.");
  queue.advance(now += seconds(1));
  EXPECT_EQ(transport.names(), Strings{"a"});
}

TEST_F(Queue, StopsATransferThatIsSilentForTooLong) {
  queue.download({"a"}, Importance::required);
  queue.advance(now);
  queue.advance(now += seconds(599));
  EXPECT_EQ(transport.names(), Strings{"a"});
  queue.advance(now += seconds(1));
  EXPECT_EQ(transport.names(), Strings{});
  EXPECT_FALSE(queue.isIdle());
}

}  // namespace
}  // namespace murmel::downloader
