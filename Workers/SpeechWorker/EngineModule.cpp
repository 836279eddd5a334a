#include "Workers/SpeechWorker/EngineModule.h"

#include <algorithm>
#include <cstdlib>

#include <dlfcn.h>
#include <sched.h>

namespace murmel::worker {

namespace {

/// All processors but one, which stays for the application; of two both, because it mostly sleeps while it
/// waits for the words.
int threadCount() {
  cpu_set_t allowed;
  CPU_ZERO(&allowed);
  if (::sched_getaffinity(0, sizeof allowed, &allowed) != 0) return 1;
  const int processors = CPU_COUNT(&allowed);
  return processors <= 2 ? processors : processors - 1;
}

}  // namespace

FoundModel modelIn(const std::filesystem::path& modelDirectory) {
  for (const auto& engine : speechEngines) {
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(modelDirectory, error)) {
      if (entry.path().filename().string().starts_with(engine.modelFile)) return {&engine, entry.path()};
    }
  }
  return {&speechEngines.back(), modelDirectory};
}

std::expected<EngineModule, std::string> EngineModule::open(const SpeechEngineRow& engine,
                                                            const std::filesystem::path& folder) {
  if (processorLevel() < engine.processorLevel)
    return std::unexpected("this processor cannot run the speech model");
  const auto file = engineModule(folder, engineModuleLevel(folder));
  // Before its library is there, which reads it once: its threads spin shortly for each other, then they
  // sleep.
  ::setenv("GOMP_SPINCOUNT", "3000", 1);  // NOLINT(concurrency-mt-unsafe): there is one thread yet
  void* const module = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) return std::unexpected("speech engine is missing from the app");
  const auto entry = reinterpret_cast<Load>(::dlsym(module, std::string(engine.loader).c_str()));
  if (entry == nullptr) return std::unexpected("speech engine is missing from the app");
  return EngineModule(entry, threadCount());
}

}  // namespace murmel::worker
