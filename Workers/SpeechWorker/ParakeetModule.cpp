#include "Workers/SpeechWorker/ParakeetModule.h"

#include <algorithm>
#include <string_view>

#include <dlfcn.h>
#include <sched.h>

namespace murmel::worker {

namespace {

constexpr std::string_view modelPrefix = "ggml-parakeet-";
constexpr std::string_view modelSuffix = ".bin";

bool canRunModule() {
#if defined(__x86_64__)
  __builtin_cpu_init();
  return __builtin_cpu_supports("x86-64-v3") != 0;
#else
  return true;
#endif
}

/// All processors but one, which stays for the application: the library's threads spin while they wait for
/// each other, and one that is not scheduled holds up all the others.
int threadCount() {
  cpu_set_t allowed;
  CPU_ZERO(&allowed);
  if (::sched_getaffinity(0, sizeof allowed, &allowed) != 0) return 1;
  return std::max(1, CPU_COUNT(&allowed) - 1);
}

}  // namespace

std::optional<std::filesystem::path> ParakeetModule::modelFileIn(
    const std::filesystem::path& modelDirectory) {
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(modelDirectory, error)) {
    const auto name = entry.path().filename().string();
    if (name.starts_with(modelPrefix) && name.ends_with(modelSuffix)) return entry.path();
  }
  return std::nullopt;
}

std::expected<ParakeetModule, std::string> ParakeetModule::open() {
  if (!canRunModule()) return std::unexpected("this processor cannot run the speech model");
  std::error_code error;
  const auto folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  void* const module = ::dlopen((folder / fileName).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) return std::unexpected("speech engine is missing from the app");
  const auto entry = reinterpret_cast<Load>(::dlsym(module, "mrmLoadParakeet"));
  if (entry == nullptr) return std::unexpected("speech engine is missing from the app");
  return ParakeetModule(entry, threadCount());
}

LoadedEngine ParakeetModule::load(const std::filesystem::path& modelFile) const {
  return load_(modelFile, threads_);
}

}  // namespace murmel::worker
