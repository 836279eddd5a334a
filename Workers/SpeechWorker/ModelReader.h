#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>

namespace murmel::worker {

/// Reads a model file for the library, which does not look whether a read succeeded: it would recognise
/// nonsense with what a failing disk did not give. That a file is the right one is the application's concern,
/// which has compared its digest, and the library's, which knows what must be in it.
class ModelReader {
 public:
  explicit ModelReader(const std::filesystem::path& file) : file_(std::fopen(file.c_str(), "rbe")) {}
  ~ModelReader() {
    if (file_ != nullptr) std::fclose(file_);
  }
  ModelReader(const ModelReader&) = delete;
  ModelReader& operator=(const ModelReader&) = delete;

  [[nodiscard]] bool isOpen() const { return file_ != nullptr; }
  /// Whether each read gave what it was to give. Only asking for one more number at the end may be in vain.
  [[nodiscard]] bool sawWholeFile() const { return !isCut_ && std::ferror(file_) == 0; }

  /// For the library's function that takes a loader: whisper_model_loader or parakeet_model_loader.
  template <typename Loader>
  Loader loader() {
    return {.context = this,
            .read = [](void* self, void* output,
                       std::size_t size) { return static_cast<ModelReader*>(self)->read(output, size); },
            .eof = [](void* self) { return std::feof(static_cast<ModelReader*>(self)->file_) != 0; },
            .close = [](void*) {}};
  }

 private:
  std::size_t read(void* output, std::size_t size) {
    const auto count = std::fread(output, 1, size, file_);
    if (count < size && (count > 0 || size != sizeof(std::int32_t))) isCut_ = true;
    std::fill_n(static_cast<char*>(output) + count, size - count, '\0');
    return count;
  }

  std::FILE* file_;
  bool isCut_ = false;
};

}  // namespace murmel::worker
