#include "Workers/ModelImport/WeightFile.h"

#include <algorithm>
#include <bit>

#include <fcntl.h>
#include <sys/stat.h>

namespace murmel::import {

static_assert(std::endian::native == std::endian::little, "the file's numbers are copied as they are");

namespace {

constexpr std::uint32_t acceptedVersion = 6;
constexpr std::string_view acceptedKind = "WhisperSpec";
constexpr std::uint8_t float16 = 4;
// Far more than any model has: a file that claims more is damaged.
constexpr std::uint32_t mostArrays = 10'000;
constexpr std::uint8_t mostDimensions = 4;
constexpr std::uint32_t largestDimension = 1U << 20U;

}  // namespace

std::uint64_t Weights::count() const {
  std::uint64_t product = 1;
  for (const auto size : shape) product *= size;
  return product;
}

/// Reads the table from its beginning; once something cannot be read, nothing can any more.
class WeightFile::Cursor {
 public:
  explicit Cursor(const WeightFile& file) : file_(file) {}

  template <typename Number>
  Number number() {
    Number value{};
    take({reinterpret_cast<std::uint8_t*>(&value), sizeof value});
    return value;
  }
  /// Without the zero that ends it.
  std::string name() {
    std::string text(number<std::uint16_t>(), '\0');
    take({reinterpret_cast<std::uint8_t*>(text.data()), text.size()});
    if (text.empty() || text.back() != '\0') isGood_ = false;
    if (!text.empty()) text.pop_back();
    return text;
  }
  void skip(std::uint64_t bytes) { position_ += bytes; }
  [[nodiscard]] std::uint64_t position() const { return position_; }
  [[nodiscard]] bool isGood() const { return isGood_; }

 private:
  void take(std::span<std::uint8_t> bytes) {
    isGood_ = isGood_ && file_.read(position_, bytes);
    position_ += bytes.size();
  }
  const WeightFile& file_;
  std::uint64_t position_ = 0;
  bool isGood_ = true;
};

std::expected<WeightFile, std::string> WeightFile::open(const std::vector<std::filesystem::path>& parts) {
  WeightFile opened;
  for (const auto& path : parts) {
    UniqueDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
      return std::unexpected("The file " + path.string() + " cannot be read.");
    const auto begin = opened.parts_.empty() ? 0 : opened.parts_.back().end;
    opened.parts_.push_back({std::move(file), begin, begin + static_cast<std::uint64_t>(status.st_size)});
  }
  if (auto read = opened.readTable(); !read) return std::unexpected(read.error());
  return opened;
}

std::expected<void, std::string> WeightFile::readTable() {
  const auto damaged = std::unexpected<std::string>("The weights are damaged or of another kind.");
  Cursor cursor(*this);
  const bool isWhisper = cursor.number<std::uint32_t>() == acceptedVersion && cursor.name() == acceptedKind;
  cursor.number<std::uint32_t>();  // the kind's revision
  const auto count = cursor.number<std::uint32_t>();
  if (!cursor.isGood() || !isWhisper || count > mostArrays) return damaged;
  for (std::uint32_t i = 0; i < count; ++i) {
    auto name = cursor.name();
    Weights weights;
    const auto rank = cursor.number<std::uint8_t>();
    if (!cursor.isGood() || rank > mostDimensions) return damaged;
    for (int dimension = 0; dimension < rank; ++dimension) {
      weights.shape.push_back(cursor.number<std::uint32_t>());
      if (weights.shape.back() > largestDimension) return damaged;
    }
    const auto type = cursor.number<std::uint8_t>();
    const auto bytes = cursor.number<std::uint32_t>();
    weights.offset = cursor.position();
    cursor.skip(bytes);
    if (!cursor.isGood() || cursor.position() > parts_.back().end) return damaged;
    if (type == float16 && bytes == weights.count() * 2)
      weights_.emplace(std::move(name), std::move(weights));
  }
  return {};
}

const Weights* WeightFile::find(const std::string& name) const {
  const auto found = weights_.find(name);
  return found == weights_.end() ? nullptr : &found->second;
}

bool WeightFile::read(std::uint64_t offset, std::span<std::uint8_t> bytes) const {
  while (!bytes.empty()) {
    const auto part = std::ranges::find_if(
        parts_, [&](const Part& candidate) { return offset >= candidate.begin && offset < candidate.end; });
    if (part == parts_.end()) return false;
    const auto wanted = std::min<std::uint64_t>(bytes.size(), part->end - offset);
    const auto count =
        ::pread(part->file.get(), bytes.data(), wanted, static_cast<off_t>(offset - part->begin));
    if (count <= 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(count));
    offset += static_cast<std::uint64_t>(count);
  }
  return true;
}

}  // namespace murmel::import
