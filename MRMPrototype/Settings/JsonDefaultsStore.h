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

/// Preferences in a file that a person can read and edit.
///
/// Every change reads the file again under a lock, changes its one key and puts the file in place in one
/// step, so two processes do not lose each other's changes. A link stays a link: what it leads to is changed.
/// A file that cannot be understood is left alone while somebody may be editing it, and the last good one
/// ("<name>.good") counts until then; a change renames it, never overwrites it. Whatever is wrong is told by
/// a message. A change that could not be written is written together with the next one.
class JsonDefaultsStore final : public DefaultsStore {
 public:
  /// Reads the file. The file system must outlive this.
  JsonDefaultsStore(FileSystem& files, std::filesystem::path file);

  [[nodiscard]] std::optional<DefaultsValue> value(std::string_view key) const override;
  [[nodiscard]] bool contains(std::string_view key) const override;
  void set(std::string_view key, DefaultsValue value) override;
  void remove(std::string_view key) override;

  /// Reads the file again, because somebody has edited it. Whether anything is another value now.
  bool reload();
  /// The files whose change calls for `reload`: the one given, and where it leads to.
  [[nodiscard]] std::vector<std::filesystem::path> watchedFiles() const;

  /// What went wrong with the file so far, each once, for the user and the log: names files, never values.
  [[nodiscard]] const std::vector<std::string>& messages() const { return messages_; }
  /// Emitted with each new message.
  [[nodiscard]] Signal<std::string>& messageAdded() { return messageAdded_; }
  /// Every change so far has reached the file.
  [[nodiscard]] bool isStored() const { return unstored_.empty(); }

 private:
  enum class Read { document, absent, damaged, failed };

  Read readFile();
  std::optional<DefaultsDocument> lastGood();
  void keepAsGood();
  void reportUnwritable(std::string_view doing, int error);
  void change(std::string_view key, std::optional<DefaultsValue> value);
  bool store();
  void applyUnstored();
  void report(std::string message);

  FileSystem& files_;
  std::filesystem::path given_;
  std::filesystem::path file_;  ///< where `given_` leads to
  DefaultsDocument document_;
  std::string damage_;  ///< what is wrong with the file, where something is
  std::map<std::string, std::optional<DefaultsValue>, std::less<>> unstored_;
  std::vector<std::string> messages_;
  Signal<std::string> messageAdded_;
};

/// Where the preferences are below the user's configuration folder.
inline std::filesystem::path defaultsFile(const std::filesystem::path& configurationFolder) {
  return configurationFolder / "MRM" / "defaults.json";
}

}  // namespace murmel
