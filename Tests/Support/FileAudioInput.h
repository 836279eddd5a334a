#pragma once

#include "Audio/AudioFileReader.h"
#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Foundation/Async/OneShot.h"
#include "Platform/AudioInput.h"
#include "Platform/MicrophoneAuthorization.h"

#include <expected>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace murmel {

/// A WAV file in the place of the microphone: what is in it is "heard" from the start of each recording on.
///
/// The main thread is its audio thread: fragments of 20 ms are delivered from the executor's timers, so that
/// with a manual executor whole recordings take place in virtual time. After the end of the file it hears
/// nothing more until it is stopped. One fragment is in memory at a time. Must outlive the tasks that it
/// gives.
class FileAudioInput final : public AudioInput {
 public:
  enum class Pace {
    realTime,       ///< by the clock; what a busy main thread missed is made up for
    asFastAsItCan,  ///< other jobs of the main thread run between the fragments
  };
  /// Called on the main thread, once a recording, after the last fragment; with a one-line message for a user
  /// when the file could not be read to its end. A file that cannot be read at all fails the start instead.
  using EndHandler = std::move_only_function<void(std::expected<void, std::string>)>;

  /// The error is one line for a user and names the file (AudioFileReader::open says what is an error). The
  /// executor and the clock must outlive the input.
  static std::expected<std::unique_ptr<FileAudioInput>, std::string> open(Executor& executor, Clock& clock,
                                                                          const std::filesystem::path& path,
                                                                          Pace pace);

  ~FileAudioInput() override;

  void setOnEnd(EndHandler onEnd);
  [[nodiscard]] AudioFormat format() const;
  /// Length of the whole file.
  [[nodiscard]] Duration duration() const;

  Task<std::expected<AudioFormat, AudioInputError>> start(
      FragmentHandler onFragment, std::move_only_function<void()> onConfigurationChange) override;
  void stop() override;

 private:
  struct Recording;

  FileAudioInput(Executor& executor, Clock& clock, AudioFileReader reader, Pace pace);

  class StartGuard;

  void scheduleNext();
  void takeTurn();
  std::expected<void, std::string> deliverDue(Recording& recording);
  std::expected<void, std::string> deliver(Recording& recording, std::uint64_t frames);
  [[nodiscard]] std::uint64_t framesHeard(const Recording& recording) const;

  Executor& executor_;
  Clock& clock_;
  AudioFileReader reader_;
  Pace pace_;
  std::uint64_t sampleRate_;
  std::uint64_t framesPerFragment_;
  std::vector<float> fragment_;
  // Shared with the call that runs it, in which the owner may let go of this input.
  std::shared_ptr<EndHandler> onEnd_;
  std::shared_ptr<Recording> recording_;
};

/// Goes with it: a file that could be opened may be listened to.
class FileAudioAuthorization final : public MicrophoneAuthorization {
 public:
  [[nodiscard]] MicrophonePermissionPhase phase() const override {
    return MicrophonePermissionPhase::authorized;
  }
  Task<bool> requestAccess() override { co_return true; }
};

}  // namespace murmel
