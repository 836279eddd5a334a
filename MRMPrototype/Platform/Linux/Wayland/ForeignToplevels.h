#pragma once

#include "Platform/Linux/Wayland/WaylandConnection.h"
#include "Platform/SettledActivations.h"

#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <wlr-foreign-toplevel-management-unstable-v1.h>

namespace murmel {

/// The windows of a compositor that tells of them as to a task bar: by application and state, and not by
/// process. Main thread.
class ForeignToplevels final : public Workspace {
 public:
  static std::expected<std::unique_ptr<ForeignToplevels>, std::string> open(Executor& executor);
  ~ForeignToplevels() override;
  ForeignToplevels(const ForeignToplevels&) = delete;
  ForeignToplevels& operator=(const ForeignToplevels&) = delete;

  std::optional<RunningApplication> frontmostApplication() override;
  [[nodiscard]] Registration onActivation(std::function<void(const RunningApplication&)> handler) override {
    return activations_.subscribe(std::move(handler));
  }
  [[nodiscard]] bool isTerminated(const RunningApplication& application) override;
  void activate(const RunningApplication& application) override;

 private:
  struct Window;

  ForeignToplevels(Executor& executor, std::unique_ptr<WaylandConnection> connection,
                   zwlr_foreign_toplevel_manager_v1* manager);
  void introduced(zwlr_foreign_toplevel_handle_v1* handle);
  void dispatch();
  [[nodiscard]] Window* find(std::uint32_t number);

  std::unique_ptr<WaylandConnection> connection_;
  WaylandObject<zwlr_foreign_toplevel_manager_v1> manager_;
  std::vector<std::unique_ptr<Window>> windows_;
  std::uint32_t lastNumber_ = 0;
  SettledActivations activations_;
  Registration watch_;
};

}  // namespace murmel
