#pragma once

#include <cstdint>
#include <optional>
#include <set>

namespace murmel {

/// Keeps dictations and the installation of an update apart. Main thread.
class UpdateAdmissionGate {
 public:
  /// Names one admitted activity.
  enum class Token : std::uint64_t {};

  virtual ~UpdateAdmissionGate() = default;
  /// Admits an activity; nothing while an update is being installed.
  virtual std::optional<Token> begin() = 0;
  /// Ends an admitted activity. Each token is given back once.
  virtual void finish(Token token) = 0;
};

/// The gate of a running application.
class UpdateActivityRegister final : public UpdateAdmissionGate {
 public:
  std::optional<Token> begin() override;
  void finish(Token token) override;

  /// True when no activity is under way: from then on `begin` refuses, until `endInstallation`.
  [[nodiscard]] bool beginInstallation();
  void endInstallation();

 private:
  std::uint64_t next_ = 1;
  std::set<Token> active_;
  bool installing_ = false;
};

}  // namespace murmel
