#pragma once

#include "Platform/ClipboardSnapshot.h"
#include "Platform/DesktopClient.h"

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace murmel::test {

/// How an owner serves, or fails to.
struct OwnerBehaviour {
  bool answers = true;                  ///< false: hangs, and answers nothing at all
  bool sendsInPieces = false;           ///< every value by INCR, in pieces of 1,000 bytes
  std::set<std::string> stallsAt = {};  ///< types whose transfer begins and never goes on
  std::set<std::string> refuses = {};   ///< types that are offered and not delivered
  bool listsProtocolTargets = true;     ///< as toolkits do, and a pointer among the data
};

/// Another application that owns a selection. It shares no code with the adapter under test. Runs on a thread
/// and a connection of its own until it is destroyed.
class ClipboardOwner {
 public:
  ClipboardOwner(const std::string& selection, ClipboardSnapshot contents, OwnerBehaviour behaviour = {});
  ~ClipboardOwner();

  /// Whether another application has taken the selection since.
  [[nodiscard]] bool hasLost() const;
  /// Whether somebody waits for something that it does not deliver.
  [[nodiscard]] bool isStuck() const;

 private:
  class Thread;
  std::unique_ptr<Thread> thread_;
};

/// Another application that reads a selection, waiting for each answer, at most five seconds.
class ClipboardReader {
 public:
  explicit ClipboardReader(std::string selection);
  ~ClipboardReader();

  /// Nothing when there is no owner, or it refuses.
  std::optional<ClipboardSnapshot::Value> read(const std::string& type);
  /// Several at once: all are asked for before the first answer is read, to one window.
  std::vector<std::optional<ClipboardSnapshot::Value>> readTogether(const std::vector<std::string>& types);
  /// Asks with the time of a moment ago, as an application does that is late.
  std::optional<ClipboardSnapshot::Value> readAsOf(const std::string& type, std::uint32_t time);
  /// The server's time now.
  std::uint32_t now();
  /// Begins to receive a large value and dies after the first piece.
  void beginAndDie(const std::string& type);
  [[nodiscard]] DesktopClient client() const;
  [[nodiscard]] std::vector<std::string> types();

 private:
  class Connection;
  std::unique_ptr<Connection> connection_;
};

}  // namespace murmel::test
