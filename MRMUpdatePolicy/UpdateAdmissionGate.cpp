#include "MRMUpdatePolicy/UpdateAdmissionGate.h"

namespace murmel {

std::optional<UpdateAdmissionGate::Token> UpdateActivityRegister::begin() {
  if (installing_) return std::nullopt;
  const Token token{next_++};
  active_.insert(token);
  return token;
}

void UpdateActivityRegister::finish(Token token) {
  active_.erase(token);
}

bool UpdateActivityRegister::beginInstallation() {
  if (installing_ || !active_.empty()) return false;
  installing_ = true;
  return true;
}

void UpdateActivityRegister::endInstallation() {
  installing_ = false;
}

}  // namespace murmel
