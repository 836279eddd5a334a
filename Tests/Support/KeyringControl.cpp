#include "Support/KeyringControl.h"

#include "Support/ChildProgram.h"

#include <csignal>
#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <string>

#include <gio/gio.h>
#include <unistd.h>

namespace murmel::keyringControl {

namespace {

constexpr const char* password = "testpw";
constexpr const char* servicePath = "/org/freedesktop/secrets";
constexpr const char* collectionPath = "/org/freedesktop/secrets/collection/login";

GVariant* call(const char* interface, const char* method, GVariant* parameters,
               const char* name = "org.freedesktop.secrets", const char* path = servicePath) {
  GError* error = nullptr;
  // Kept for good: the service forgets the sessions of a connection that is given up, and "unlock" makes two
  // calls.
  GDBusConnection* const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &error);
  if (bus == nullptr) throw std::runtime_error(error->message);
  GVariant* const answer =
      g_dbus_connection_call_sync(bus, name, path, interface, method, parameters, nullptr,
                                  G_DBUS_CALL_FLAGS_NONE, 5'000, nullptr, &error);
  if (answer == nullptr) throw std::runtime_error(error->message);
  return answer;
}

pid_t process() {
  return std::stoi(std::getenv("MURMEL_KEYRING_PID"));
}

}  // namespace

bool isPresent() {
  return std::getenv("MURMEL_KEYRING_PID") != nullptr;
}

void lock() {
  const char* const collections[] = {collectionPath, nullptr};
  g_variant_unref(call("org.freedesktop.Secret.Service", "Lock", g_variant_new("(^ao)", collections)));
}

void unlock() {
  GVariant* const opened = call("org.freedesktop.Secret.Service", "OpenSession",
                                g_variant_new("(sv)", "plain", g_variant_new_string("")));
  const char* session = nullptr;
  g_variant_get(opened, "(v&o)", nullptr, &session);
  GVariant* const secret =
      g_variant_new("(o@ay@ays)", session, g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, nullptr, 0, 1),
                    g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, password, std::string(password).size(), 1),
                    "text/plain");
  g_variant_unref(call("org.gnome.keyring.InternalUnsupportedGuiltRiddenInterface",
                       "UnlockWithMasterPassword", g_variant_new("(o@(oayays))", collectionPath, secret)));
  g_variant_unref(opened);
}

void freeze() {
  ::kill(process(), SIGSTOP);
}

void thaw() {
  ::kill(process(), SIGCONT);
}

void restart() {
  static std::optional<test::ChildProgram> daemon;
  const auto hasOwner = [] {
    constexpr const char* bus = "org.freedesktop.DBus";
    GVariant* const answer = call(bus, "NameHasOwner", g_variant_new("(s)", "org.freedesktop.secrets"), bus,
                                  "/org/freedesktop/DBus");
    gboolean owned = FALSE;
    g_variant_get(answer, "(b)", &owned);
    g_variant_unref(answer);
    return owned != FALSE;
  };
  ::kill(process(), SIGKILL);
  while (hasOwner()) ::usleep(10'000);
  daemon.emplace(std::vector<std::string>{
      "sh", "-c",
      "cd $MURMEL_SESSION_DIRECTORY && exec gnome-keyring-daemon --foreground --unlock "
      "--components=secrets --control-directory=keyring <keyring.pw >keyring.log 2>&1"});
  ::setenv("MURMEL_KEYRING_PID", std::to_string(daemon->identifier()).c_str(), 1);
  while (!hasOwner()) ::usleep(10'000);
}

}  // namespace murmel::keyringControl
