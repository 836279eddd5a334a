#pragma once

#include "Platform/KeyboardPoster.h"
#include "Platform/Workspace.h"

#include <functional>
#include <memory>
#include <utility>

namespace murmel {

// A road that may come and go, and another one for as long as it is not there. Main thread.

class EitherWorkspace final : public Workspace {
 public:
  EitherWorkspace(std::function<bool()> hasFirst, std::unique_ptr<Workspace> first,
                  std::unique_ptr<Workspace> second)
      : hasFirst_(std::move(hasFirst)), first_(std::move(first)), second_(std::move(second)) {}

  std::optional<RunningApplication> frontmostApplication() override { return now().frontmostApplication(); }
  [[nodiscard]] Registration onActivation(std::function<void(const RunningApplication&)> handler) override {
    auto one = first_->onActivation(handler);
    auto other = second_->onActivation([this, handler](const RunningApplication& application) {
      if (!hasFirst_()) handler(application);
    });
    return Registration([one = std::move(one), other = std::move(other)]() mutable {});
  }
  [[nodiscard]] bool isTerminated(const RunningApplication& application) override {
    return now().isTerminated(application);
  }
  void activate(const RunningApplication& application) override { now().activate(application); }

 private:
  Workspace& now() { return hasFirst_() ? *first_ : *second_; }

  std::function<bool()> hasFirst_;
  std::unique_ptr<Workspace> first_;
  std::unique_ptr<Workspace> second_;
};

class EitherKeyboard final : public KeyboardPoster {
 public:
  EitherKeyboard(std::unique_ptr<KeyboardPoster> first, std::unique_ptr<KeyboardPoster> second)
      : first_(std::move(first)), second_(std::move(second)) {}

  [[nodiscard]] bool mayPost() override { return first_->mayPost() || second_->mayPost(); }
  [[nodiscard]] bool canPost(PasteChord chord) override { return now().canPost(chord); }
  void maskHeldModifiers() override { now().maskHeldModifiers(); }
  [[nodiscard]] bool isHindered() override { return now().isHindered(); }
  Task<void> awaitReleasedModifiers() override { return now().awaitReleasedModifiers(); }
  PostResult post(PasteChord chord, const RunningApplication& target) override {
    return now().post(chord, target);
  }

 private:
  KeyboardPoster& now() { return first_->mayPost() ? *first_ : *second_; }

  std::unique_ptr<KeyboardPoster> first_;
  std::unique_ptr<KeyboardPoster> second_;
};

}  // namespace murmel
