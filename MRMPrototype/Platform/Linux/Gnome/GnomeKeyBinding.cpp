#include "Platform/Linux/Gnome/GnomeKeyBinding.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <vector>

#include <gio/gio.h>

namespace murmel {

namespace {

constexpr const char* listSchema = "org.gnome.settings-daemon.plugins.media-keys";
constexpr const char* listKey = "custom-keybindings";
constexpr const char* bindingSchema = "org.gnome.settings-daemon.plugins.media-keys.custom-keybinding";
constexpr const char* bindingPath =
    "/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/app.murmel/";

struct Unref {
  void operator()(GSettings* settings) const { g_object_unref(settings); }
};
using Settings = std::unique_ptr<GSettings, Unref>;

/// Asking for a schema that is not there ends the program.
bool hasSchema(const char* name) {
  auto* source = g_settings_schema_source_get_default();
  auto* schema = source != nullptr ? g_settings_schema_source_lookup(source, name, TRUE) : nullptr;
  if (schema != nullptr) g_settings_schema_unref(schema);
  return schema != nullptr;
}

/// The user's other bindings stay, in their order.
void changeList(bool contains) {
  const Settings settings(g_settings_new(listSchema));
  const std::unique_ptr<char*, decltype(&g_strfreev)> paths(g_settings_get_strv(settings.get(), listKey),
                                                            &g_strfreev);
  std::vector<std::string> kept;
  for (char** path = paths.get(); *path != nullptr; ++path) {
    if (std::string(*path) != bindingPath) kept.emplace_back(*path);
  }
  if (contains) kept.emplace_back(bindingPath);
  std::vector<const char*> list;
  list.reserve(kept.size() + 1);
  for (const auto& path : kept) list.push_back(path.c_str());
  list.push_back(nullptr);
  g_settings_set_strv(settings.get(), listKey, list.data());
}

}  // namespace

bool GnomeKeyBinding::isSupported() {
  return hasSchema(listSchema) && hasSchema(bindingSchema);
}

GnomeKeyBinding::GnomeKeyBinding(const std::string& accelerator) {
  std::error_code error;
  const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error || !isSupported()) return;
  const std::unique_ptr<char, decltype(&g_free)> quoted(g_shell_quote(executable.c_str()), &g_free);
  const Settings binding(g_settings_new_with_path(bindingSchema, bindingPath));
  g_settings_set_string(binding.get(), "name", "Murmel: start or stop dictating");
  g_settings_set_string(binding.get(), "command", (std::string(quoted.get()) + " toggle").c_str());
  g_settings_set_string(binding.get(), "binding", accelerator.c_str());
  changeList(true);
  g_settings_sync();
  isSet_ = true;
}

GnomeKeyBinding::~GnomeKeyBinding() {
  if (!isSet_) return;
  changeList(false);
  const Settings binding(g_settings_new_with_path(bindingSchema, bindingPath));
  for (const char* key : {"name", "command", "binding"}) g_settings_reset(binding.get(), key);
  g_settings_sync();
}

}  // namespace murmel
