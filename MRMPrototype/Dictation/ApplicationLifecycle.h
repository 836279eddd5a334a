#pragma once

namespace murmel {

/// What quitting, and starting the application once more, mean at each moment of its life. A value: it calls
/// nothing and waits for nothing.
class ApplicationLifecycle {
 public:
  enum class Phase {
    starting,  ///< services are being made; nothing has been spoken yet
    running,
    draining,  ///< the last dictation is being finished; none can start any more
    ended,
  };
  enum class Action {
    none,
    show,   ///< bring a window to the front
    drain,  ///< finish what is under way, then report `drained`
    hurry,  ///< stop waiting: what there is of the words goes where the user can get it
    end,    ///< leave the event loop
  };

  [[nodiscard]] Phase phase() const { return phase_; }
  [[nodiscard]] bool isEnding() const { return phase_ == Phase::draining || phase_ == Phase::ended; }

  void launched() {
    if (phase_ == Phase::starting) phase_ = Phase::running;
  }

  /// By command, menu or signal, or because the session ends. Whoever asks a second time does not want to
  /// wait; a third time leaves at once.
  [[nodiscard]] Action quitRequested() {
    switch (phase_) {
      case Phase::starting:
        return end();
      case Phase::running:
        phase_ = Phase::draining;
        return Action::drain;
      case Phase::draining:
        return hurried_ ? end() : hurry();
      case Phase::ended:
        break;
    }
    return Action::none;
  }

  /// The time that a drain may take is over.
  [[nodiscard]] Action drainTimedOut() {
    return phase_ == Phase::draining && !hurried_ ? hurry() : Action::none;
  }

  [[nodiscard]] Action drained() { return phase_ == Phase::draining ? end() : Action::none; }

  /// While it starts its windows are about to come; while it ends there is nothing to show any more.
  [[nodiscard]] Action startedAgain() const { return phase_ == Phase::running ? Action::show : Action::none; }

 private:
  Action hurry() {
    hurried_ = true;
    return Action::hurry;
  }
  Action end() {
    phase_ = Phase::ended;
    return Action::end;
  }

  Phase phase_ = Phase::starting;
  bool hurried_ = false;
};

}  // namespace murmel
