#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Async/OneShot.h"
#include "Platform/FocusedField.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

struct sd_bus;
struct sd_bus_message;
struct sd_bus_slot;

namespace murmel {

/// Follows the focus on the desktop's accessibility bus, where that runs: applications tell there which of
/// their parts gets the keyboard. It only listens; nothing is started or switched on for it, and no
/// application is searched. What had the focus before the bus was reached is not known. Main thread.
class AccessibleFocusedField final : public FocusedField {
 public:
  /// The executor outlives this.
  explicit AccessibleFocusedField(Executor& executor);
  ~AccessibleFocusedField() override;
  AccessibleFocusedField(const AccessibleFocusedField&) = delete;
  AccessibleFocusedField& operator=(const AccessibleFocusedField&) = delete;

  Task<bool> hidesText(RunningApplication application) override;

  /// Reaches the bus if that has not been done; false where there is none. Cheap when connected. Call it when
  /// the focus should be followed from now on; `hidesText` does so by itself.
  bool connect();
  /// Whether any application has told of its focus yet.
  [[nodiscard]] bool knowsFocus() const { return focused_.has_value(); }

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
  struct Focus {
    std::string application;  ///< its name on the bus, which is never given twice
    std::string object;
  };

  static int focusChanged(sd_bus_message* message, void* self, void* error);
  void process();
  void disconnect();
  Message newCall(const std::string& destination, const std::string& object, const char* interface,
                  const char* member);
  Task<std::optional<std::uint32_t>> ask(Message call);

  Executor& executor_;
  std::unique_ptr<sd_bus, BusDeleter> bus_;
  std::unique_ptr<sd_bus_slot, SlotDeleter> focusChanges_;
  std::optional<Focus> focused_;
  Registration watch_;
};

}  // namespace murmel
