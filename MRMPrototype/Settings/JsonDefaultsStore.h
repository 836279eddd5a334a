#pragma once

#include "Foundation/Async/Signal.h"
#include "Platform/FileSystem.h"
#include "Settings/DefaultsDocument.h"
#include "Settings/DefaultsStore.h"

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace murmel {

/// Preferences in a file that a person can read.
///
/// Every change reads the file again under a lock, changes its one key and puts the file in place in one
/// step, so two processes do not lose each other's changes. A file that is damaged is renamed, never
/// overwritten, and one that cannot be read is left alone; either is told by a message. A change that could
/// not be written is written together with the next one.
class JsonDefaultsStore final : public DefaultsStore {
 public:
  /// Reads the file. The file system must outlive this.
  JsonDefaultsStore(FileSystem& files, std::filesystem::path file);

  [[nodiscard]] std::optional<DefaultsValue> value(std::string_view key) const override;
  [[nodiscard]] bool contains(std::string_view key) const override;
  void set(std::string_view key, DefaultsValue value) override;
  void remove(std::string_view key) override;

  /// What went wrong with the file so far, each once, for the user and the log: names files, never values.
  [[nodiscard]] const std::vector<std::string>& messages() const { return messages_; }
  /// Emitted with each new message.
  [[nodiscard]] Signal<std::string>& messageAdded() { return messageAdded_; }
  /// Every change so far has reached the file.
  [[nodiscard]] bool isStored() const { return unstored_.empty(); }

 private:
  enum class Read { document, absent, damaged, failed };

  Read readFile();
  void change(std::string_view key, std::optional<DefaultsValue> value);
  bool store();
  void applyUnstored();
  void report(std::string message);

  FileSystem& files_;
  std::filesystem::path file_;
  DefaultsDocument document_;
  std::map<std::string, std::optional<DefaultsValue>, std::less<>> unstored_;
  std::vector<std::string> messages_;
  Signal<std::string> messageAdded_;
};

/// Where the preferences are below the user's configuration folder.
inline std::filesystem::path defaultsFile(const std::filesystem::path& configurationFolder) {
  return configurationFolder / "MRM" / "defaults.json";
}

}  // namespace murmel
