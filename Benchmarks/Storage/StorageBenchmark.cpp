// What keeping things costs. With the real key ring where there is one:
//   Tests/Support/private-session --keyring -- build/bench/benchmarks/benchmark_storage

#include "Foundation/Async/SerialQueue.h"
#include "History/HistoryCodec.h"
#include "History/HistoryRepository.h"
#include "Platform/Fake/FakeSecretStore.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Platform/Linux/Files/PosixFileSystem.h"
#include "Platform/Linux/SecretService/SecretServiceStore.h"
#include "Settings/JsonDefaultsStore.h"
#include "Storage/KeychainEncryptionKeyStore.h"
#include "Support/TemporaryFolder.h"

#include <cstdlib>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

using namespace murmel;

namespace {

/// A history, and what it waits for its file with.
struct History {
  explicit History(SecureLocalFile storage) : repository(executor, queue, std::move(storage)) { settle(); }
  void settle() {
    executor.waitUntil([this] { return repository.isSettled(); });
  }
  ManualExecutor executor;
  SerialQueue queue{executor, "history"};
  HistoryRepository repository;
};

/// A dictation of some thirty words.
HistoryEntry entry(int number) {
  HistoryEntry made;
  made.id = Uuid::random();
  made.createdAt = 785'462'400.25 + number;
  made.text = SpokenText(
      "Please move the meeting with the people from the other office to Thursday afternoon, because "
      "the train that I wanted to take is cancelled, and tell them that I am sorry for the trouble.");
  made.providerID = "fluidaudio";
  made.language = "Automatic";
  return made;
}

std::vector<HistoryEntry> entries(std::int64_t count) {
  std::vector<HistoryEntry> list;
  for (int number = 0; number < count; ++number) list.push_back(entry(number));
  return list;
}

std::unique_ptr<SecretStore> makeStore(bool real) {
  if (real) return std::make_unique<SecretServiceStore>();
  return std::make_unique<FakeSecretStore>();
}

struct Keyring {
  explicit Keyring(bool real) : store(makeStore(real)) {}
  std::unique_ptr<SecretStore> store;
  KeychainEncryptionKeyStore keys{*store, "app.murmel.Benchmark"};
};

bool isMissing(benchmark::State& state, bool real) {
  if (!real || std::getenv("MURMEL_KEYRING_PID") != nullptr) return false;
  state.SkipWithError("no key ring in this session");
  return true;
}

}  // namespace

/// From the coordinator's `add` to the return: everything that holds up the main thread.
static void addToHistory(benchmark::State& state) {
  const bool real = state.range(1) != 0;
  if (isMissing(state, real)) return;
  const TemporaryFolder folder;
  PosixFileSystem files;
  Keyring keyring(real);
  auto storage = historyFile(files, keyring.keys, folder.path());
  (void)storage.write(encodeHistory(entries(state.range(0))).reveal());
  History history(std::move(storage));
  int number = 0;
  for (auto _ : state) {
    history.repository.add(entry(++number));
    history.settle();
  }
  if (history.repository.storageStatus() != SecureStorageStatus::available) state.SkipWithError("not stored");
}
BENCHMARK(addToHistory)
    ->ArgNames({"entries", "keyring"})
    ->ArgsProduct({{100, 10'000}, {0, 1}})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

static void openHistory(benchmark::State& state) {
  const bool real = state.range(1) != 0;
  if (isMissing(state, real)) return;
  const TemporaryFolder folder;
  PosixFileSystem files;
  Keyring keyring(real);
  (void)historyFile(files, keyring.keys, folder.path())
      .write(encodeHistory(entries(state.range(0))).reveal());
  for (auto _ : state) {
    const History history(historyFile(files, keyring.keys, folder.path()));
    if (history.repository.entries().size() != static_cast<std::size_t>(state.range(0)))
      state.SkipWithError("not read");
  }
}
BENCHMARK(openHistory)
    ->ArgNames({"entries", "keyring"})
    ->ArgsProduct({{100, 10'000}, {0, 1}})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

static void encodeEntries(benchmark::State& state) {
  const auto list = entries(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(encodeHistory(list).size());
}
BENCHMARK(encodeEntries)->Arg(10'000)->Unit(benchmark::kMillisecond);

static void decodeEntries(benchmark::State& state) {
  const auto bytes = encodeHistory(entries(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(decodeHistory(bytes.reveal())->size());
  state.SetLabel(std::to_string(bytes.size()) + " bytes");
}
BENCHMARK(decodeEntries)->Arg(10'000)->Unit(benchmark::kMillisecond);

static void changeASetting(benchmark::State& state) {
  const TemporaryFolder folder;
  PosixFileSystem files;
  JsonDefaultsStore store(files, defaultsFile(folder.path()));
  for (int key = 0; key < 25; ++key) store.set("settings." + std::to_string(key), true);
  bool on = false;
  for (auto _ : state) store.set("settings.7", on = !on);
}
BENCHMARK(changeASetting)->Unit(benchmark::kMillisecond)->UseRealTime();

BENCHMARK_MAIN();
