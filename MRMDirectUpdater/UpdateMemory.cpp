#include "MRMDirectUpdater/UpdateMemory.h"

#include "Foundation/Json/Json.h"
#include "Storage/FileAccess.h"

namespace murmel {

namespace {

constexpr std::uint64_t largestMemory = 4'096;
constexpr Duration longestWait = std::chrono::milliseconds(500);

}  // namespace

UpdateMemory UpdateMemory::read(FileSystem& files, const std::filesystem::path& file) {
  UpdateMemory memory;
  const auto bytes = readWholeFile(files, file, largestMemory).value_or(std::nullopt);
  if (!bytes) return memory;
  const auto object =
      parsedJson(std::string_view(reinterpret_cast<const char*>(bytes->data()), bytes->size()));
  memory.lastCheck = object["lastCheck"].integer();
  memory.highestSerial = object["highestSerial"].unsignedInteger().value_or(memory.highestSerial);
  return memory;
}

bool UpdateMemory::write(FileSystem& files, const std::filesystem::path& file) const {
  Json object{{"highestSerial", highestSerial}};
  if (lastCheck) object["lastCheck"] = *lastCheck;
  const auto text = jsonText(object);
  if (!files.makeFolders(file.parent_path())) return false;
  const auto lock = files.lock(lockPath(file), longestWait);
  if (!lock) return false;
  return replaceFile(files, file, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()})
      .has_value();
}

}  // namespace murmel
