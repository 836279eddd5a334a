#pragma once

#include <functional>
#include <string>
#include <vector>

namespace murmel {

/// One that the sound server offers.
struct MicrophoneSource {
  std::string name;   ///< by which the server knows it
  std::string title;  ///< by which people know it
  bool isDefault = false;

  friend bool operator==(const MicrophoneSource&, const MicrophoneSource&) = default;
};

/// The microphones of the desktop, of which all programs use the default one. Main thread; the answers come
/// from the event loop, never from inside a call.
class Microphones {
 public:
  virtual ~Microphones() = default;
  /// What the speakers play is no microphone. An empty list where there is no server.
  virtual void list(std::function<void(std::vector<MicrophoneSource>)> answer) = 0;
  /// Makes one the default, for this desktop as a whole.
  virtual void choose(const std::string& name, std::function<void(bool done)> answer) = 0;
};

}  // namespace murmel
