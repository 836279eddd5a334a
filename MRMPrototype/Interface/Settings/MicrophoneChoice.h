#pragma once

#include "Interface/Common/Controls.h"
#include "Platform/Microphones.h"

#include <functional>
#include <vector>

namespace murmel {

/// The microphones of the desktop to choose from; the one that is chosen becomes everybody's. It knows them
/// once `refresh` has been called.
class MicrophoneChoice final : public ChoiceBox {
 public:
  /// Without a list the choice stays empty. `chosen` is called once another one is in use.
  MicrophoneChoice(Microphones* microphones, std::function<void()> chosen);
  void refresh();

 private:
  void fill(const std::vector<MicrophoneSource>& sources);

  Microphones* microphones_;
  std::vector<MicrophoneSource> sources_;
};

}  // namespace murmel
