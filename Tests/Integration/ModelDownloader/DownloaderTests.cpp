#include "Integration/ModelDownloader/RunningDownloader.h"
#include "MRMDownloadManifest/MRMDownloadManifest.h"
#include "Support/Testing.h"

#include <sys/resource.h>

namespace {

namespace fs = std::filesystem;

/// The host is started once: making its certificate takes longer than a download.
class Downloader : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    host = new ModelHost;
    small = host->add("small", 100'000, 1);
    large = host->add("large", 3'000'000, 2);
    twin = host->add("twin", 100'000, 1, "Other/folder");
    unsized = host->add("unsized", 70'000, 3);
    unsized.bytes = -1;
  }
  static void TearDownTestSuite() { delete host; }

  /// A downloader for a host that does `actions`; `name` of the test keeps the counts apart.
  RunningDownloader start(const std::string& actions) {
    return RunningDownloader({.store = store(),
                              .address = host->address(name(), actions),
                              .certificate = host->certificate(),
                              .files = {small, large, twin, unsized}});
  }
  static std::string name() { return testing::UnitTest::GetInstance()->current_test_info()->name(); }
  [[nodiscard]] fs::path store() const { return folder.path() / "Models"; }
  [[nodiscard]] bool isInstalled(const HostedFile& file) const {
    return contentsOf(store() / file.place()) == host->content(file);
  }
  [[nodiscard]] bool hasTemporaryFiles() const { return fs::exists(store() / ".downloads"); }

  static inline ModelHost* host;
  static inline HostedFile small, large, twin, unsized;
  TemporaryFolder folder;
};

Strings summary(const std::vector<DownloaderEvent>& events) {
  Strings result;
  for (const auto& event : events)
    result.push_back(event.event + (event.identifier.empty() ? "" : " " + event.identifier) +
                     (event.reason.empty() ? "" : " " + event.reason));
  return result;
}

TEST_F(Downloader, EveryMisbehaviourLeavesTheRightFileOrNone) {
  struct Row {
    const char* actions;
    const char* outcome;     ///< reason of the failure; empty when the file arrives
    std::int64_t mostBytes;  ///< that the host may have sent; 0: not checked
  };
  // The file has 100,000 bytes.
  const Row rows[] = {
      {"ok", "", 100'000},
      {"redirect,ok", "", 100'000},
      {"redirect", "redirect_loop", 0},
      {"http", "insecure", 0},
      {"cut@0,ok", "", 100'000},
      {"cut@1,ok", "", 100'000},
      {"cut@16384,ok", "", 100'000},
      {"cut@65536,cut@1,cut@30000,ok", "", 100'000},
      {"cut@99999,ok", "", 100'000},
      {"cut@0", "network", 0},
      {"cut@40000,status@503,ok", "", 100'000},
      {"cut@40000,norange", "", 140'000},
      {"cut@40000,norange@50000,ok", "", 140'000},
      {"cut@40000,newtag", "", 140'000},
      {"cut@40000,shift,ok", "", 0},
      {"cut@40000,bytes,ok", "", 0},
      {"cut@40000,length@100001,ok", "wrong_length", 0},
      {"stall@40000,ok", "", 100'000},
      {"stall@0,ok", "", 100'000},
      {"length@99999", "wrong_length", 0},
      {"length@100001", "wrong_length", 0},
      {"length@0", "wrong_length", 0},
      {"unsized", "", 100'000},
      {"unsized@1", "wrong_length", 0},
      {"bytes", "wrong_content", 0},
      {"status@403", "forbidden", 0},
      {"status@404", "not_found", 0},
      {"status@429,status@429@1,ok", "", 100'000},
      {"status@429", "rate_limited", 0},
      {"status@500,status@502,status@503,status@504,status@408,ok", "", 100'000},
      {"status@500", "server", 0},
      {"status@204", "server", 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.actions);
    fs::remove_all(store());
    auto downloader = start(row.actions);
    downloader.download({"small"});
    const auto events = downloader.untilIdle();
    ASSERT_FALSE(events.empty());
    if (std::string(row.outcome).empty()) {
      EXPECT_EQ(summary(events), (Strings{"installed small", "idle"}));
      EXPECT_TRUE(isInstalled(small));
      EXPECT_FALSE(hasTemporaryFiles());
    } else {
      EXPECT_EQ(summary(events), (Strings{std::string("failed small ") + row.outcome, "idle"}));
      EXPECT_FALSE(fs::exists(store() / small.place()));
    }
    if (row.mostBytes > 0) {
      EXPECT_LE(host->statistics(name(), row.actions, small).bytes, row.mostBytes) << "fetched twice";
    }
  }
}

TEST_F(Downloader, GivesUpAfterFiveRetriesAndKeepsWhatArrived) {
  {
    auto downloader = start("cut@100");
    downloader.download({"small"});
    EXPECT_EQ(summary(downloader.untilIdle()), (Strings{"failed small network", "idle"}));
    EXPECT_EQ(host->statistics(name(), "cut@100", small).requests, 6);
    downloader.close();
  }
  auto again = start("ok");
  again.download({"small"});
  EXPECT_EQ(summary(again.untilIdle()), (Strings{"installed small", "idle"}));
  EXPECT_EQ(host->statistics(name(), "ok", small).bytes, 100'000 - 6 * 100);
}

TEST_F(Downloader, FetchesAContentOnceForSeveralFolders) {
  auto downloader = start("ok");
  downloader.download({"small", "twin"});
  EXPECT_EQ(summary(downloader.untilIdle()), (Strings{"installed small", "installed twin", "idle"}));
  EXPECT_TRUE(isInstalled(small) && isInstalled(twin));

  // Later too: from the place where it is, over a file that is damaged.
  std::ofstream(store() / twin.place(), std::ios::app) << "x";
  downloader.download({"twin"});
  EXPECT_EQ(summary(downloader.untilIdle()), (Strings{"installed twin", "idle"}));
  EXPECT_TRUE(isInstalled(twin));
  EXPECT_EQ(host->statistics(name(), "ok", small).requests + host->statistics(name(), "ok", twin).requests,
            1);
}

TEST_F(Downloader, FetchesAFileOfUnknownSizeAndResumesIt) {
  for (const auto* actions : {"ok", "cut@30000,ok", "unsized", "cut@0,ok"}) {
    SCOPED_TRACE(actions);
    fs::remove_all(store());
    auto downloader = start(actions);
    downloader.download({"unsized"});
    EXPECT_EQ(summary(downloader.untilIdle()), (Strings{"installed unsized", "idle"}));
    EXPECT_TRUE(isInstalled(unsized));
    EXPECT_EQ(host->statistics(name(), actions, unsized).bytes, 70'000);
  }
}

TEST_F(Downloader, RepairsWhatLiesInTheFilesPlace) {
  const auto place = store() / small.place();
  const auto outside = folder.path() / "outside";
  std::ofstream(outside) << "not ours";
  const std::pair<const char*, std::function<void()>> obstacles[] = {
      {"a damaged file", [&] { std::ofstream(place) << "damaged"; }},
      {"a link to a file outside", [&] { fs::create_symlink(outside, place); }},
      {"a dangling link", [&] { fs::create_symlink("nowhere", place); }},
      {"an unreadable file",
       [&] {
         std::ofstream(place) << "x";
         fs::permissions(place, fs::perms::none);
       }},
  };
  for (const auto& [what, put] : obstacles) {
    SCOPED_TRACE(what);
    fs::remove_all(store());
    fs::create_directories(place.parent_path());
    put();
    auto downloader = start("ok");
    downloader.download({"small"});
    EXPECT_EQ(summary(downloader.untilIdle()), (Strings{"installed small", "idle"}));
    EXPECT_TRUE(isInstalled(small) && !fs::is_symlink(place));
  }
  EXPECT_EQ(contentsOf(outside), "not ours");

  fs::remove(place);
  fs::create_directories(place / "sub");
  auto downloader = start("ok");
  downloader.download({"small"});
  const auto events = downloader.untilIdle();
  ASSERT_EQ(summary(events), (Strings{"failed small storage", "idle"}));
  EXPECT_TRUE(contains(events[0].message, "A folder is where the model file belongs"));
}

TEST_F(Downloader, ABodyWithoutEndIsCutOffAndLeavesNothing) {
  auto downloader = start("unsized@30000000");
  downloader.download({"unsized"});
  EXPECT_EQ(summary(downloader.untilIdle()), (Strings{"failed unsized wrong_length", "idle"}));
  EXPECT_LT(host->statistics(name(), "unsized@30000000", unsized).bytes, 30'000'000);
  EXPECT_FALSE(hasTemporaryFiles());
  EXPECT_FALSE(fs::exists(store() / unsized.place()));
}

TEST_F(Downloader, NothingInTheStoreLeadsItOutOrHoldsItUp) {
  const auto outside = folder.path() / "outside";
  const auto part = store() / ".downloads" / (small.sha256 + ".part");
  const auto tag = store() / ".downloads" / (small.sha256 + ".etag");
  const auto foreign = outside / "foreign";
  const std::pair<const char*, std::function<void()>> traps[] = {
      {"the folder of downloads is a link",
       [&] {
         fs::remove(store() / ".downloads");
         fs::create_directory_symlink(outside, store() / ".downloads");
       }},
      {"the part is a link", [&] { fs::create_symlink(foreign, part); }},
      {"the part is a second name", [&] { fs::create_hard_link(foreign, part); }},
      {"the part is a pipe", [&] { ::mkfifo(part.c_str(), 0600); }},
      {"the tag is a link", [&] { fs::create_symlink(foreign, tag); }},
      {"the tag is a second name", [&] { fs::create_hard_link(foreign, tag); }},
      {"the tag is a pipe",
       [&] {
         std::ofstream(part) << host->content(small).substr(0, 10);
         ::mkfifo(tag.c_str(), 0600);
       }},
      {"the place is a pipe",
       [&] {
         fs::create_directories((store() / small.place()).parent_path());
         ::mkfifo((store() / small.place()).c_str(), 0600);
       }},
  };
  for (const auto& [what, set] : traps) {
    SCOPED_TRACE(what);
    fs::remove_all(store());
    fs::remove_all(outside);
    fs::create_directories(outside);
    fs::create_directories(part.parent_path());
    std::ofstream(foreign) << "not ours";
    set();
    auto downloader = start("ok");
    downloader.download({"small"});
    EXPECT_EQ(summary(downloader.untilIdle()), (Strings{"installed small", "idle"}));
    EXPECT_TRUE(isInstalled(small));
    EXPECT_EQ(contentsOf(foreign), "not ours");
    EXPECT_EQ(std::distance(fs::directory_iterator(outside), {}), 1);
  }
  // A model's folder that leads elsewhere is not replaced, and not followed either.
  fs::remove_all(store());
  fs::create_directories(store());
  fs::create_directory_symlink(outside, store() / small.folder);
  auto downloader = start("ok");
  downloader.download({"small"});
  EXPECT_EQ(summary(downloader.untilIdle()), (Strings{"failed small storage", "idle"}));
  EXPECT_EQ(std::distance(fs::directory_iterator(outside), {}), 1);
}

TEST_F(Downloader, RefusesEverythingThatIsNotAnIdentifier) {
  auto downloader = start("ok");
  downloader.download({"../small", "/etc/passwd", "https://localhost/", "", std::string("small\0", 6)});
  EXPECT_EQ(summary(downloader.untilIdle()),
            (Strings{"refused ../small unknown_identifier", "refused /etc/passwd unknown_identifier",
                     "refused https://localhost/ unknown_identifier", "refused unknown_identifier",
                     std::string("refused small\0 unknown_identifier", 33), "idle"}));
  const std::pair<std::string, const char*> lines[] = {
      {std::string(1 << 20, 'a'), "line_too_long"},
      {std::string("\0\xff\xfe\x80 binary", 11), "not_json"},
      {std::string(10'000, '['), "not_json"},
      {"{}", "protocol_version"},
      {R"({"mrm_downloader_protocol":2,"command":"download","identifiers":["small"]})", "protocol_version"},
      {R"({"mrm_downloader_protocol":1,"command":"fetch","identifiers":["small"]})", "unknown_command"},
      {R"({"mrm_downloader_protocol":1,"command":"download","identifiers":"small"})", "malformed"},
      {R"({"mrm_downloader_protocol":1,"command":"download","identifiers":[{"url":"https://localhost"}]})",
       "malformed"},
      {R"({"mrm_downloader_protocol":1,"command":"download","identifiers":["small"],"importance":"urgent"})",
       "malformed"},
  };
  for (const auto& [line, reason] : lines) {
    downloader.send(line);
    const auto answer = downloader.next();
    ASSERT_TRUE(answer) << line.substr(0, 80);
    EXPECT_EQ(answer->event + " " + answer->reason, std::string("refused ") + reason) << line.substr(0, 80);
  }
  downloader.download({"small"});
  EXPECT_EQ(summary(downloader.untilIdle()), (Strings{"installed small", "idle"}));
}

TEST_F(Downloader, CancelsAndContinuesOrForgets) {
  auto downloader = start("slow@20000,ok");
  downloader.download({"large"});
  while (const auto event = downloader.next()) {
    if (event->received > 0) break;
  }
  downloader.cancel("large", /*discards=*/false);
  EXPECT_EQ(summary(downloader.untilIdle()), (Strings{"cancelled large", "idle"}));
  EXPECT_TRUE(hasTemporaryFiles());
  downloader.cancel("large", /*discards=*/true);
  EXPECT_EQ(summary(downloader.untilIdle()), (Strings{"cancelled large", "idle"}));
  EXPECT_FALSE(hasTemporaryFiles());
  EXPECT_FALSE(fs::exists(store() / large.place()));
}

TEST_F(Downloader, PausesOptionalDownloadsWhileSomebodyDictates) {
  auto downloader = start("slow@20000");
  downloader.send(R"({"mrm_downloader_protocol":1,"command":"runtime","active":true})");
  downloader.download({"large"}, "optional");
  downloader.download({"small"}, "required");
  // The required one arrives, the other has not begun.
  ASSERT_TRUE(downloader.waitFor("installed", "small"));
  EXPECT_EQ(host->statistics(name(), "slow@20000", large).requests, 0);
  downloader.send(R"({"mrm_downloader_protocol":1,"command":"runtime","active":false})");
  while (const auto event = downloader.next()) {
    if (event->received > 0) break;
  }
  // In the middle of it: the connection is kept, nothing is fetched twice.
  downloader.send(R"({"mrm_downloader_protocol":1,"command":"runtime","active":true})");
  while (const auto event = downloader.waitFor("progress", "large")) {
    if (event->reason == "suspended") break;
  }
  downloader.send(R"({"mrm_downloader_protocol":1,"command":"runtime","active":false})");
  EXPECT_EQ(summary(downloader.untilIdle()), (Strings{"installed large", "idle"}));
  EXPECT_EQ(host->statistics(name(), "slow@20000", large).bytes, 3'000'000);
  EXPECT_TRUE(isInstalled(large));
}

TEST_F(Downloader, AFullDiskIsSaidAndBreaksNothing) {
  auto downloader = start("ok");
  downloader.waitFor("ready");
  // No file of this process may grow beyond a million bytes: what a full disk looks like from inside.
  const rlimit limit{1'000'000, RLIM_INFINITY};
  ASSERT_EQ(::prlimit(downloader.process().identifier(), RLIMIT_FSIZE, &limit, nullptr), 0);
  downloader.download({"large", "small"});
  const auto events = downloader.untilIdle();
  ASSERT_EQ(events.size(), 3U);
  ASSERT_TRUE(contains(summary(events), {"failed large disk_full", "installed small", "idle"}));
  EXPECT_FALSE(fs::exists(store() / large.place()));
  const rlimit unlimited{RLIM_INFINITY, RLIM_INFINITY};
  ASSERT_EQ(::prlimit(downloader.process().identifier(), RLIMIT_FSIZE, &unlimited, nullptr), 0);
  downloader.download({"large"});
  EXPECT_EQ(summary(downloader.untilIdle()), (Strings{"installed large", "idle"}));
  EXPECT_TRUE(isInstalled(large));
  EXPECT_FALSE(hasTemporaryFiles());
}

TEST_F(Downloader, RefusesWhatCannotFitBeforeAByteIsFetched) {
  const auto huge = [] {
    auto file = small;
    file.identifier = "huge";
    file.bytes = std::int64_t{1} << 60;
    file.sha256[0] = file.sha256[0] == 'a' ? 'b' : 'a';
    return file;
  }();
  RunningDownloader downloader({.store = store(),
                                .address = host->address(name(), "ok"),
                                .certificate = host->certificate(),
                                .files = {huge}});
  downloader.download({"huge"});
  const auto events = downloader.untilIdle();
  ASSERT_EQ(summary(events), (Strings{"failed huge disk_full", "idle"}));
  EXPECT_TRUE(contains(events[0].message, "MB are needed"));
  EXPECT_EQ(host->statistics(name(), "ok", huge).requests, 0);
}

TEST_F(Downloader, TrustsNoCertificateButTheAuthorities) {
  RunningDownloader downloader({.store = store(),
                                .address = host->address(name(), "ok"),
                                .certificate = "/etc/ssl/certs/ca-certificates.crt",
                                .files = {small}});
  downloader.download({"small"});
  EXPECT_EQ(summary(downloader.untilIdle()), (Strings{"failed small insecure", "idle"}));
}

TEST_F(Downloader, OnlyOneWorksInAStore) {
  auto first = start("ok");
  ASSERT_TRUE(first.waitFor("ready"));
  auto second = start("ok");
  const auto answer = second.next();
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->event, "fatal");
  EXPECT_FALSE(second.next());
}

}  // namespace
