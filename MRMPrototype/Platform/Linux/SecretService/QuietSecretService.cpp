#include "Platform/Linux/SecretService/QuietSecretService.h"

namespace murmel {

namespace {

constexpr const char* refusal = "the key ring would have to ask the user";

constexpr const char* followsKey = "murmel-follows-prompts";

GVariant* promptSync(SecretService* self, SecretPrompt* prompt, GCancellable* cancellable,
                     const GVariantType* type, GError** error) {
  if (g_object_get_data(G_OBJECT(self), followsKey) != nullptr)
    return secret_prompt_perform_sync(prompt, nullptr, cancellable, type, error);
  g_set_error_literal(error, SECRET_ERROR, SECRET_ERROR_IS_LOCKED, refusal);
  return nullptr;
}

/// Also what the library's blocking calls come to.
void promptAsync(SecretService* self, SecretPrompt* prompt, const GVariantType* type,
                 GCancellable* cancellable, GAsyncReadyCallback callback, gpointer userData) {
  if (g_object_get_data(G_OBJECT(self), followsKey) != nullptr) {
    auto* const usual = static_cast<SecretServiceClass*>(g_type_class_peek(SECRET_TYPE_SERVICE));
    usual->prompt_async(self, prompt, type, cancellable, callback, userData);
    return;
  }
  GTask* const task = g_task_new(self, cancellable, callback, userData);
  g_task_return_new_error(task, SECRET_ERROR, SECRET_ERROR_IS_LOCKED, "%s", refusal);
  g_object_unref(task);
}

GVariant* promptFinish(SecretService*, GAsyncResult* result, GError** error) {
  return static_cast<GVariant*>(g_task_propagate_pointer(G_TASK(result), error));
}

void initializeClass(gpointer classPointer, gpointer) {
  auto* const methods = static_cast<SecretServiceClass*>(classPointer);
  methods->prompt_sync = promptSync;
  methods->prompt_async = promptAsync;
  methods->prompt_finish = promptFinish;
}

}  // namespace

GType quietSecretServiceType() {
  static const GType type = [] {
    GTypeQuery parent;
    g_type_query(SECRET_TYPE_SERVICE, &parent);
    return g_type_register_static_simple(SECRET_TYPE_SERVICE, "MurmelQuietSecretService", parent.class_size,
                                         initializeClass, parent.instance_size, nullptr, GTypeFlags{});
  }();
  return type;
}

FollowPrompts::FollowPrompts(SecretService* service) : service_(service) {
  g_object_set_data(G_OBJECT(service_), followsKey, service_);
}

FollowPrompts::~FollowPrompts() {
  g_object_set_data(G_OBJECT(service_), followsKey, nullptr);
}

}  // namespace murmel
