#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>

namespace murmel::worker {

/// Reads a model file for the library, which does not look whether a read succeeded. The application has
/// compared the file's digest before; this is for a file that cannot be read to its end.
class ModelReader {
 public:
  explicit ModelReader(const std::filesystem::path& file) : file_(std::fopen(file.c_str(), "rbe")) {}
  ~ModelReader() {
    if (file_ != nullptr) std::fclose(file_);
  }
  ModelReader(const ModelReader&) = delete;
  ModelReader& operator=(const ModelReader&) = delete;

  [[nodiscard]] bool isOpen() const { return file_ != nullptr; }
  /// Whether nothing was missing. The library finds the end by asking for the three numbers of one more
  /// tensor.
  [[nodiscard]] bool sawWholeFile() const { return !isCut_ && readsPastEnd_ == 3; }

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
    if (count == size) return count;
    if (count > 0 || size != sizeof(std::int32_t)) isCut_ = true;
    ++readsPastEnd_;
    std::fill_n(static_cast<char*>(output) + count, size - count, '\0');
    return count;
  }

  std::FILE* file_;
  int readsPastEnd_ = 0;
  bool isCut_ = false;
};

}  // namespace murmel::worker
