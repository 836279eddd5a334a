#include "Platform/Linux/SecretService/SecretServiceConnection.h"

#include "Platform/Linux/SecretService/QuietSecretService.h"

#include <span>
#include <utility>
#include <vector>

namespace murmel {

namespace {

constexpr const char* schemaName = "app.murmel.LocalStorageKey";
constexpr const char* itemLabel = "Murmel local storage key";
constexpr const char* newCollectionLabel = "Default";
constexpr const char* contentType = "application/octet-stream";

using Attributes = std::unique_ptr<GHashTable, decltype(&g_hash_table_unref)>;

SecretStatus statusOf(const GlibError& error) {
  if (error.matches(SECRET_ERROR, SECRET_ERROR_IS_LOCKED)) return secretStatus::interactionNotAllowed;
  if (error.matches(SECRET_ERROR, SECRET_ERROR_NO_SUCH_OBJECT)) return secretStatus::itemNotFound;
  // It is there, but not in order: KWallet says so without the cipher that sessions need (libqca's OpenSSL
  // plugin).
  if (error.matches(G_DBUS_ERROR, G_DBUS_ERROR_INVALID_ARGS) ||
      error.matches(G_DBUS_ERROR, G_DBUS_ERROR_FAILED))
    return secretStatus::storeFailed;
  // No bus, nobody under the name, nobody who answers.
  if (error.isIn(G_IO_ERROR) || error.isIn(G_DBUS_ERROR)) return secretStatus::serviceUnavailable;
  return secretStatus::storeFailed;
}

std::unexpected<SecretStatus> failed(const GlibError& error) {
  return std::unexpected(statusOf(error));
}

/// The statuses that say nothing about the connection.
bool isAnswer(SecretStatus status) {
  return status == secretStatus::itemNotFound || status == secretStatus::interactionNotAllowed ||
         status == secretStatus::duplicateItem || status == secretStatus::noDefaultCollection;
}

GlibPointer<GDBusConnection> sessionBus(GCancellable* cancellable, GlibError& error) {
  GlibPointer<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable, error.fill()));
  // The library would end the application together with its bus.
  if (bus) g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
  return bus;
}

Attributes attributesOf(SecretSchema* schema, const std::string& service, const std::string& account) {
  return {secret_attributes_build(schema, "service", service.c_str(), "account", account.c_str(), nullptr),
          &g_hash_table_unref};
}

}  // namespace

/// What a search found: at most one item in a store that we alone write.
struct SecretServiceConnection::Items {
  std::vector<GlibPointer<SecretItem>> list;
};

SecretServiceConnection::SecretServiceConnection()
    : schema_(secret_schema_new(schemaName, SECRET_SCHEMA_NONE, "service", SECRET_SCHEMA_ATTRIBUTE_STRING,
                                "account", SECRET_SCHEMA_ATTRIBUTE_STRING, nullptr)) {}

SecretServiceConnection::~SecretServiceConnection() {
  secret_schema_unref(schema_);
}

bool SecretServiceConnection::connect(GCancellable* cancellable, GlibError& error) {
  bus_ = sessionBus(cancellable, error);
  if (!bus_) return false;
  service_.reset(secret_service_open_sync(quietSecretServiceType(), nullptr, SECRET_SERVICE_OPEN_SESSION,
                                          cancellable, error.fill()));
  return service_ != nullptr;
}

template <class T>
std::expected<T, SecretStatus> SecretServiceConnection::withConnection(
    GCancellable* cancellable, const std::function<std::expected<T, SecretStatus>()>& call) {
  while (true) {
    const bool fresh = service_ == nullptr;
    if (fresh) {
      GlibError error;
      if (!connect(cancellable, error)) return failed(error);
    }
    auto result = call();
    if (result || isAnswer(result.error())) return result;
    service_.reset();
    bus_.reset();
    // An earlier connection does not survive a restart of the service.
    if (fresh || g_cancellable_is_cancelled(cancellable)) return result;
  }
}

std::expected<SecretServiceConnection::Items, SecretStatus> SecretServiceConnection::search(
    const std::string& service, const std::string& account, GCancellable* cancellable) {
  const auto attributes = attributesOf(schema_, service, account);
  GlibError error;
  // Without the flag that unlocks: locked items are found and stay locked.
  GList* const found = secret_service_search_sync(service_.get(), schema_, attributes.get(),
                                                  SECRET_SEARCH_ALL, cancellable, error.fill());
  if (error) return failed(error);
  Items items;
  for (const GList* each = found; each != nullptr; each = each->next) {
    items.list.emplace_back(static_cast<SecretItem*>(each->data));
  }
  g_list_free(found);
  return items;
}

std::expected<GlibPointer<SecretCollection>, SecretStatus> SecretServiceConnection::defaultCollection(
    GCancellable* cancellable) {
  GlibError error;
  GlibPointer<SecretCollection> collection(secret_collection_for_alias_sync(
      service_.get(), SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, cancellable, error.fill()));
  if (error) return failed(error);
  // To make one, or to open it, the user would have to choose or to type a password.
  if (!collection) return std::unexpected(secretStatus::noDefaultCollection);
  if (secret_collection_get_locked(collection.get()))
    return std::unexpected(secretStatus::interactionNotAllowed);
  return collection;
}

SecretStatus SecretServiceConnection::absence(GCancellable* cancellable) {
  const auto collection = defaultCollection(cancellable);
  return collection ? secretStatus::itemNotFound : collection.error();
}

std::expected<void, SecretStatus> SecretServiceConnection::add(const std::string& service,
                                                               const std::string& account,
                                                               const SecretBytes& secret,
                                                               GCancellable* cancellable) {
  return withConnection<void>(cancellable, [&]() -> std::expected<void, SecretStatus> {
    const auto collection = defaultCollection(cancellable);
    if (!collection) return std::unexpected(collection.error());
    const auto present = search(service, account, cancellable);
    if (!present) return std::unexpected(present.error());
    if (!present->list.empty()) return std::unexpected(secretStatus::duplicateItem);
    const auto attributes = attributesOf(schema_, service, account);
    const auto bytes = secret.reveal();
    const std::unique_ptr<SecretValue, void (*)(SecretValue*)> value(
        secret_value_new(reinterpret_cast<const char*>(bytes.data()), static_cast<gssize>(bytes.size()),
                         contentType),
        [](SecretValue* held) { secret_value_unref(held); });
    GlibError error;
    const FollowPrompts following(service_.get());
    const GlibPointer<SecretItem> item(
        secret_item_create_sync(collection->get(), schema_, attributes.get(), itemLabel, value.get(),
                                SECRET_ITEM_CREATE_NONE, cancellable, error.fill()));
    if (!item) return failed(error);
    return {};
  });
}

std::expected<SecretBytes, SecretStatus> SecretServiceConnection::find(const std::string& service,
                                                                       const std::string& account,
                                                                       GCancellable* cancellable) {
  return withConnection<SecretBytes>(cancellable, [&]() -> std::expected<SecretBytes, SecretStatus> {
    const auto items = search(service, account, cancellable);
    if (!items) return std::unexpected(items.error());
    if (items->list.empty()) return std::unexpected(absence(cancellable));
    auto* const item = items->list.front().get();
    if (secret_item_get_locked(item)) return std::unexpected(secretStatus::interactionNotAllowed);
    GlibError error;
    if (!secret_item_load_secret_sync(item, cancellable, error.fill())) return failed(error);
    const std::unique_ptr<SecretValue, void (*)(SecretValue*)> value(
        secret_item_get_secret(item), [](SecretValue* held) { secret_value_unref(held); });
    if (!value) return std::unexpected(secretStatus::storeFailed);
    gsize size = 0;
    const auto* const data = secret_value_get(value.get(), &size);
    return SecretBytes(std::span(reinterpret_cast<const std::uint8_t*>(data), size));
  });
}

std::expected<void, SecretStatus> SecretServiceConnection::remove(const std::string& service,
                                                                  const std::string& account,
                                                                  GCancellable* cancellable) {
  return withConnection<void>(cancellable, [&]() -> std::expected<void, SecretStatus> {
    const auto items = search(service, account, cancellable);
    if (!items) return std::unexpected(items.error());
    if (items->list.empty()) return std::unexpected(absence(cancellable));
    for (const auto& item : items->list) {
      if (secret_item_get_locked(item.get())) return std::unexpected(secretStatus::interactionNotAllowed);
      GlibError error;
      const FollowPrompts following(service_.get());
      if (!secret_item_delete_sync(item.get(), cancellable, error.fill())) return failed(error);
    }
    return {};
  });
}

std::expected<void, SecretStatus> SecretServiceConnection::probe(GCancellable* cancellable) {
  return withConnection<void>(cancellable, [&]() -> std::expected<void, SecretStatus> {
    const auto collection = defaultCollection(cancellable);
    if (!collection && !isAnswer(collection.error())) return std::unexpected(collection.error());
    return {};
  });
}

std::expected<void, SecretStatus> SecretServiceConnection::unlock() {
  GlibError error;
  const auto bus = sessionBus(nullptr, error);
  if (!bus) return failed(error);
  // A service of the ordinary kind, which may ask.
  const GlibPointer<SecretService> asking(
      secret_service_open_sync(SECRET_TYPE_SERVICE, nullptr, SECRET_SERVICE_NONE, nullptr, error.fill()));
  if (!asking) return failed(error);
  const GlibPointer<SecretCollection> collection(secret_collection_for_alias_sync(
      asking.get(), SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, nullptr, error.fill()));
  if (error) return failed(error);
  if (!collection) {
    // The service asks for the password of the new one.
    const GlibPointer<SecretCollection> made(
        secret_collection_create_sync(asking.get(), newCollectionLabel, SECRET_COLLECTION_DEFAULT,
                                      SECRET_COLLECTION_CREATE_NONE, nullptr, error.fill()));
    if (!made) return std::unexpected(error ? statusOf(error) : secretStatus::userCanceled);
    return {};
  }
  if (!secret_collection_get_locked(collection.get())) return {};
  GList* const objects = g_list_append(nullptr, collection.get());
  GList* unlocked = nullptr;
  const int count = secret_service_unlock_sync(asking.get(), objects, nullptr, &unlocked, error.fill());
  g_list_free_full(unlocked, g_object_unref);
  g_list_free(objects);
  if (error) return failed(error);
  if (count < 1) return std::unexpected(secretStatus::userCanceled);
  return {};
}

}  // namespace murmel
