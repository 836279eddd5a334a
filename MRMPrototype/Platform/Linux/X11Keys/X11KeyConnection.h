#pragma once

#include "Platform/Linux/X11Keys/KeyEventTranslator.h"
#include "Platform/Linux/X11Keys/KeyLayout.h"

#include <cstdint>
#include <cstdlib>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>

#include <xcb/xcb.h>

namespace murmel {

struct FreeDeleter {
  void operator()(void* memory) const { std::free(memory); }
};
using XcbEvent = std::unique_ptr<xcb_generic_event_t, FreeDeleter>;

/// A connection to the X server that hears every key of the master keyboards, whoever has the focus or a
/// grab, and every change of layout, locks and devices. Main thread.
class X11KeyConnection {
 public:
  enum class Notice {
    none,
    key,      ///< `rawKey` holds it
    button,   ///< a button of the pointer went down
    layout,   ///< another keymap: call `readLayout`
    locks,    ///< `layoutState` holds the new locks and groups
    devices,  ///< a device came, went, or was switched off or on
  };

  /// `display` empty: the environment's. The error is a sentence for the user.
  static std::expected<std::unique_ptr<X11KeyConnection>, std::string> open(const std::string& display);
  /// Whether keys could be heard there: as `open`, without asking for anything.
  static std::expected<void, std::string> check(const std::string& display);

  ~X11KeyConnection();
  X11KeyConnection(const X11KeyConnection&) = delete;
  X11KeyConnection& operator=(const X11KeyConnection&) = delete;

  [[nodiscard]] int descriptor() const;
  [[nodiscard]] bool isBroken() const;

  /// The next event that has arrived; null when there is none.
  [[nodiscard]] XcbEvent poll();
  /// What an event says; the members below hold the rest until the next call.
  Notice interpret(const xcb_generic_event_t& event);
  RawKey rawKey;
  KeyLayout::State layoutState;

  /// The layout that the server uses now. Blocks for a few round trips; events that arrive meanwhile wait
  /// for `poll`. Nothing when the connection is broken.
  std::optional<KeyLayout> readLayout();
  /// Learns anew which devices are XTest's. Blocks for a round trip.
  void readDevices();

  /// Asks for the keys that are down, without waiting.
  void requestPressedKeys();
  /// Waits until the server has dealt with every request so far.
  void awaitServer();
  /// The answer, once: with it `event` null or the first event that is younger than the answer.
  std::optional<PressedKeySet> pressedKeysBefore(const xcb_generic_event_t* event);

 private:
  struct Disconnect {
    void operator()(xcb_connection_t* connection) const;
  };
  using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;

  X11KeyConnection(Connection connection, std::uint32_t root);
  static std::expected<std::unique_ptr<X11KeyConnection>, std::string> connect(const std::string& display);
  bool select();
  Notice interpretKey(const xcb_generic_event_t& event);
  Notice interpretXkb(const xcb_generic_event_t& event);

  Connection connection_;
  std::uint32_t root_;
  std::uint8_t inputOpcode_ = 0;
  std::uint8_t xkbEventBase_ = 0;
  std::int32_t keyboard_ = -1;
  std::unordered_set<std::uint16_t> syntheticDevices_;
  /// The sequence number of the last unanswered request for the pressed keys.
  std::optional<unsigned> pressedKeysRequest_;
};

}  // namespace murmel
