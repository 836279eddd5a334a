#include "Platform/Linux/Portal/PortalToken.h"

#include <algorithm>
#include <utility>

namespace murmel {

namespace {

constexpr const char* account = "remote-desktop";

SecretBytes bytesOf(const std::string& token) {
  SecretBytes secret(token.size());
  std::ranges::copy(token, secret.reveal().begin());
  return secret;
}

}  // namespace

PortalToken::PortalToken(Executor& executor, SecretStore& secrets, std::string service)
    : executor_(executor),
      secrets_(secrets),
      service_(std::move(service)),
      queue_(executor, "murmel-portal") {}

PortalToken::~PortalToken() = default;

void PortalToken::read(std::function<void(std::optional<std::string>)> done) {
  queue_.enqueue([this, done = std::move(done), alive = std::weak_ptr(alive_)]() mutable {
    const auto found = secrets_.find(service_, account);
    std::optional<std::string> token;
    if (found) token.emplace(found->reveal().begin(), found->reveal().end());
    executor_.post([token = std::move(token), done = std::move(done), alive = std::move(alive)]() mutable {
      if (!alive.expired()) done(std::move(token));
    });
  });
}

void PortalToken::keep(const std::string& token) {
  queue_.enqueue([this, secret = bytesOf(token)] {
    // A key ring keeps the first of two under one name. What it does not keep, the portal asks for again.
    if (secrets_.find(service_, account)) (void)secrets_.remove(service_, account);
    (void)secrets_.add(service_, account, secret);
  });
}

void PortalToken::forget() {
  // A token that stays is refused by the portal, and forgotten again.
  queue_.enqueue([this] { (void)secrets_.remove(service_, account); });
}

}  // namespace murmel
