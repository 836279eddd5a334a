#include "Workers/ModelImport/ModelWriter.h"

#include <system_error>
#include <utility>

namespace murmel::import {

ModelWriter::ModelWriter(std::filesystem::path file)
    : file_(std::move(file)),
      unfinished_(file_.string() + ".unfinished"),
      stream_(unfinished_, std::ios::binary | std::ios::trunc) {}

ModelWriter::~ModelWriter() {
  std::error_code error;
  std::filesystem::remove(unfinished_, error);
}

void ModelWriter::write(std::span<const std::uint8_t> bytes) {
  stream_.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  digest_.update(bytes);
}

void ModelWriter::write(std::string_view text) {
  write({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

void ModelWriter::write(std::int32_t number) {
  write({reinterpret_cast<const std::uint8_t*>(&number), sizeof number});
}

std::expected<void, std::string> ModelWriter::finish(std::string_view sha256) {
  stream_.close();
  if (!stream_) return std::unexpected("The file " + file_.string() + " cannot be written.");
  const auto digest = crypto::hexadecimal(digest_.finish());
  if (!sha256.empty() && digest != sha256)
    return std::unexpected("The model is not the published one: its SHA-256 is " + digest + ".");
  std::error_code error;
  std::filesystem::rename(unfinished_, file_, error);
  if (error) return std::unexpected("The file " + file_.string() + " cannot be written.");
  return {};
}

}  // namespace murmel::import
