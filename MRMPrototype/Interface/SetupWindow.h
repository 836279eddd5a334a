#pragma once

#include <QWidget>
#include <functional>
#include <string>
#include <vector>

class QVBoxLayout;

namespace murmel {

/// One thing that dictation needs of the desktop.
struct SetupCheck {
  std::string subject;
  bool works = false;
  std::string detail;  ///< what works, or what to do
};

/// Shows what works on this desktop, and what to do about the rest.
class SetupWindow final : public QWidget {
 public:
  SetupWindow(std::function<std::vector<SetupCheck>()> look, std::function<void()> onDone);

  /// Looks again and comes to the front.
  void present();

 private:
  void refresh();

  std::function<std::vector<SetupCheck>()> look_;
  QVBoxLayout* checks_;
};

}  // namespace murmel
