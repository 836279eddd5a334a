#pragma once

#include <libsecret/secret.h>

namespace murmel {

/// The type of a SecretService that answers "locked" wherever the library would ask the user.
GType quietSecretServiceType();

/// Lets the prompts of such a service happen for a while. For what is done to a collection that is unlocked:
/// some services answer even then with a prompt object that completes by itself.
class FollowPrompts {
 public:
  explicit FollowPrompts(SecretService* service);
  ~FollowPrompts();
  FollowPrompts(const FollowPrompts&) = delete;
  FollowPrompts& operator=(const FollowPrompts&) = delete;

 private:
  SecretService* service_;
};

}  // namespace murmel
