#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Foundation/Async/OneShot.h"
#include "Foundation/Async/Task.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

struct sd_bus;
struct sd_bus_message;
struct sd_bus_slot;

namespace murmel {

/// A part of an application's interface, as it tells of it.
struct AccessibleObject {
  std::string application;  ///< its name on the bus, which is never given twice
  std::string path;

  friend bool operator==(const AccessibleObject&, const AccessibleObject&) = default;
};

/// The bus on which applications tell assistive programs of their interfaces, where it runs; nothing is
/// started or switched on for it. Main thread.
class AccessibilityBus {
 public:
  /// Questions are answered within `patience` or not at all. `onFocus` hears of parts that have got the
  /// keyboard (true) or lost it. The executor outlives this.
  AccessibilityBus(Executor& executor, Duration patience,
                   std::function<void(const AccessibleObject&, bool)> onFocus);
  ~AccessibilityBus();
  AccessibilityBus(const AccessibilityBus&) = delete;
  AccessibilityBus& operator=(const AccessibilityBus&) = delete;

  /// Reaches the bus if that has not been done; false where there is none. Cheap when connected.
  bool connect();
  /// Whether assistive technologies are switched on for the session, for which some applications wait.
  [[nodiscard]] bool isForAll() const;
  /// Hears what has arrived.
  void process();
  /// A number that is different after every new connection: what was known of the one before is void.
  [[nodiscard]] int connectionNumber() const { return connectionNumber_; }

  /// Each of these is nothing, or empty, without an answer.
  Task<std::optional<pid_t>> processOf(std::string application);
  Task<std::optional<std::uint32_t>> role(AccessibleObject object);
  /// One bit a state.
  Task<std::optional<std::uint64_t>> states(AccessibleObject object);
  /// Empty where the application answers that it does not tell.
  Task<std::optional<std::vector<AccessibleObject>>> children(AccessibleObject object);
  Task<std::optional<AccessibleObject>> parent(AccessibleObject object);
  /// Where every application hangs.
  static AccessibleObject desktop();

 private:
  struct BusDeleter {
    void operator()(sd_bus* bus) const;
  };
  struct SlotDeleter {
    void operator()(sd_bus_slot* slot) const;
  };
  struct MessageDeleter {
    void operator()(sd_bus_message* message) const;
  };
  using Message = std::unique_ptr<sd_bus_message, MessageDeleter>;

  static int focusChanged(sd_bus_message* message, void* self, void* error);
  void disconnect();
  Message newCall(const AccessibleObject& object, const char* interface, const char* member);
  /// Null without an answer. An answer may say that something is wrong.
  Task<Message> ask(Message call);

  Executor& executor_;
  const Duration patience_;
  std::function<void(const AccessibleObject&, bool)> onFocus_;
  int connectionNumber_ = 0;
  std::unique_ptr<sd_bus, BusDeleter> bus_;
  std::unique_ptr<sd_bus_slot, SlotDeleter> focusChanges_;
  Registration watch_;
};

}  // namespace murmel
