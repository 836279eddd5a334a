#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace murmel::test {

/// The keys of the user, pressed as another program.
class UsersKeyboard {
 public:
  UsersKeyboard();
  ~UsersKeyboard();
  void press(std::uint8_t keyCode, bool down);
  /// All of them together, the first one down first.
  void strike(std::vector<std::uint8_t> keyCodes);
  /// Every key that is down now.
  std::vector<int> held();

 private:
  struct Connection;
  std::unique_ptr<Connection> connection_;
};

}  // namespace murmel::test
