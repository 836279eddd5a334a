#pragma once

#include "Foundation/Async/Clock.h"

#include <chrono>
#include <optional>

namespace murmel {

/// Whether a desktop that has bound the shortcut tells of it: some never do, and nothing but a press shows
/// that. Pure; time runs only while the user is asked to press.
class ShortcutTrial {
 public:
  enum class Event {
    asked,            ///< the user is asked to press the shortcut
    leftAlone,        ///< and is not any more
    bound,            ///< the desktop says that it watches the shortcut
    heard,            ///< and has told of it
    nothingHappened,  ///< the user says so
    refused,          ///< the desktop does not bind it
    lost,             ///< it does not watch any more
  };
  enum class Verdict { open, heard, silent, refused };

  /// From the request, or from the binding if that comes later, to the verdict.
  static constexpr Duration patience = std::chrono::seconds(20);
  /// For a desktop that may be asking the user before it binds.
  static constexpr Duration bindingPatience = std::chrono::seconds(120);

  explicit ShortcutTrial(Verdict verdict = Verdict::open) : verdict_(verdict) {}

  void take(Event event, Instant now) {
    pass(now);
    if (event == Event::refused) verdict_ = Verdict::refused;
    if (event == Event::heard && verdict_ == Verdict::open) verdict_ = Verdict::heard;
    if (event == Event::nothingHappened && verdict_ == Verdict::open) verdict_ = Verdict::silent;
    const bool isNews = (event == Event::asked && !isAsked_) || (event == Event::bound && !isBound_);
    if (event == Event::bound || event == Event::lost) isBound_ = event == Event::bound;
    if (event == Event::asked || event == Event::leftAlone) isAsked_ = event == Event::asked;
    if (isNews) since_ = now;
  }
  /// Time has come to this.
  void pass(Instant now) {
    if (const auto end = deadline(); end && now >= *end) verdict_ = Verdict::silent;
  }

  [[nodiscard]] Verdict verdict() const { return verdict_; }
  /// When silence will be the verdict, if nothing comes.
  [[nodiscard]] std::optional<Instant> deadline() const {
    if (verdict_ != Verdict::open || !isAsked_) return std::nullopt;
    return since_ + (isBound_ ? patience : bindingPatience);
  }
  [[nodiscard]] bool isAsked() const { return isAsked_; }

 private:
  Verdict verdict_;
  bool isAsked_ = false;
  bool isBound_ = false;
  Instant since_{};
};

}  // namespace murmel
