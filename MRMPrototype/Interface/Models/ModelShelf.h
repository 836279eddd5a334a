#pragma once

#include "Foundation/Async/Signal.h"
#include "Refinement/SmartLocalModel.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace murmel {

/// A model as the list of models shows it.
struct ModelShelfRow {
  enum class State {
    absent,
    waiting,
    downloading,
    paused,
    verifying,
    unverified,
    installed,
    damaged,
    failed
  };

  std::string name{};  ///< by which the shelf knows it
  std::string title{};
  std::string purpose{};  ///< what it is good for, in a sentence
  std::string licence{};
  bool isSpeech = false;                ///< else it corrects text
  bool isPackaged = false;              ///< came with the application: nothing is to be done about it
  bool isInUse = false;                 ///< a dictation would use it now
  bool canBeChosen = false;             ///< one of several that the user chooses from
  std::optional<std::uint64_t> size{};  ///< bytes to download, where it is known
  std::uint64_t onDisk = 0;             ///< bytes
  State state = State::absent;
  std::uint64_t received = 0;              ///< bytes, while downloading
  std::optional<double> bytesPerSecond{};  ///< of the last seconds
  std::optional<std::int64_t> remainingSeconds{};
  std::string unusable{};  ///< why this computer cannot run it; empty when it can
  std::string problem{};   ///< of `failed`: one sentence

  friend bool operator==(const ModelShelfRow&, const ModelShelfRow&) = default;
};

/// The models on this machine and those that can be had, for the windows. Main thread; nothing blocks, what
/// takes time shows in the rows.
class ModelShelf {
 public:
  virtual ~ModelShelf() = default;

  [[nodiscard]] virtual std::vector<ModelShelfRow> rows() const = 0;
  [[nodiscard]] virtual Signal<>& changed() = 0;
  [[nodiscard]] virtual bool isInstalled(SmartLocalModel model) const = 0;
  /// Why nothing can be downloaded here; empty when something can.
  [[nodiscard]] virtual std::string downloadsUnavailable() const = 0;

  virtual void download(const std::string& name) = 0;
  /// What has arrived is kept for the next time.
  virtual void pause(const std::string& name) = 0;
  virtual void verify(const std::string& name) = 0;
  virtual void remove(const std::string& name) = 0;
  /// From the next dictation on.
  virtual void choose(const std::string& name) = 0;
};

}  // namespace murmel
