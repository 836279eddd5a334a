#pragma once

#include "Foundation/Crypto/SecretBytes.h"
#include "Platform/Linux/SecretService/GlibPointers.h"
#include "Platform/SecretStore.h"

#include <expected>
#include <functional>
#include <string>

namespace murmel {

/// The calls to the Secret Service, each blocking until it is answered or cancelled. Only `unlock` asks the
/// user. A lost connection is made again by the next call. One thread at a time.
class SecretServiceConnection {
 public:
  SecretServiceConnection();
  ~SecretServiceConnection();
  SecretServiceConnection(const SecretServiceConnection&) = delete;
  SecretServiceConnection& operator=(const SecretServiceConnection&) = delete;

  std::expected<void, SecretStatus> add(const std::string& service, const std::string& account,
                                        const SecretBytes& secret, GCancellable* cancellable);
  std::expected<SecretBytes, SecretStatus> find(const std::string& service, const std::string& account,
                                                GCancellable* cancellable);
  std::expected<void, SecretStatus> remove(const std::string& service, const std::string& account,
                                           GCancellable* cancellable);
  /// Succeeds as soon as the service answers anything.
  std::expected<void, SecretStatus> probe(GCancellable* cancellable);
  std::expected<void, SecretStatus> unlock();

 private:
  struct Items;

  /// Runs `call`, and once more on a new connection when a connection that was made earlier turns out stale.
  template <class T>
  std::expected<T, SecretStatus> withConnection(GCancellable* cancellable,
                                                const std::function<std::expected<T, SecretStatus>()>& call);
  bool connect(GCancellable* cancellable, GlibError& error);
  std::expected<Items, SecretStatus> search(const std::string& service, const std::string& account,
                                            GCancellable* cancellable);
  /// What nothing found means: not there, or not to be seen while the store is locked.
  SecretStatus absence(GCancellable* cancellable);
  std::expected<GlibPointer<SecretCollection>, SecretStatus> defaultCollection(GCancellable* cancellable);

  SecretSchema* schema_;
  GlibPointer<GDBusConnection> bus_;
  GlibPointer<SecretService> service_;
};

}  // namespace murmel
