#include "Platform/Linux/X11/X11Connection.h"

#include <cstring>

#include <xcb/res.h>

namespace murmel {

namespace {

constexpr std::uint32_t longestProperty = 16 * 1024;  // in units of four bytes

}  // namespace

std::expected<std::unique_ptr<X11Connection>, std::string> X11Connection::open(const std::string& display) {
  int screenNumber = 0;
  auto* connection = xcb_connect(display.empty() ? nullptr : display.c_str(), &screenNumber);
  if (xcb_connection_has_error(connection) != 0) {
    xcb_disconnect(connection);
    return std::unexpected(std::string("The X server cannot be reached."));
  }
  auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (; screenNumber > 0 && screens.rem > 1; --screenNumber) xcb_screen_next(&screens);
  return std::unique_ptr<X11Connection>(new X11Connection(connection, screens.data));
}

X11Connection::X11Connection(xcb_connection_t* connection, xcb_screen_t* screen)
    : connection_(connection), screen_(screen) {
  const auto* extension = xcb_get_extension_data(connection_, &xcb_res_id);
  // QueryClientIds came with version 1.2 of the extension, in 2011.
  if (extension == nullptr || extension->present == 0) return;
  const auto version =
      x11Reply(connection_, xcb_res_query_version_reply, xcb_res_query_version(connection_, 1, 2));
  hasResourceExtension_ =
      version && (version->server_major > 1 || (version->server_major == 1 && version->server_minor >= 2));
}

X11Connection::~X11Connection() {
  xcb_disconnect(connection_);
}

xcb_atom_t X11Connection::atom(std::string_view name) {
  if (const auto known = atoms_.find(name); known != atoms_.end()) return known->second;
  const auto cookie = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const auto reply = x11Reply(connection_, xcb_intern_atom_reply, cookie);
  if (!reply) return XCB_ATOM_NONE;
  atoms_.emplace(name, reply->atom);
  names_.emplace(reply->atom, name);
  return reply->atom;
}

const std::string& X11Connection::atomName(xcb_atom_t atom) {
  if (const auto known = names_.find(atom); known != names_.end()) return known->second;
  static const std::string none;
  if (atom == XCB_ATOM_NONE) return none;
  const auto reply = x11Reply(connection_, xcb_get_atom_name_reply, xcb_get_atom_name(connection_, atom));
  if (!reply) return none;
  std::string name(xcb_get_atom_name_name(reply.get()),
                   static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get())));
  atoms_.emplace(name, atom);
  return names_.emplace(atom, std::move(name)).first->second;
}

xcb_window_t X11Connection::createHiddenWindow(std::uint32_t eventMask) {
  const auto window = xcb_generate_id(connection_);
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, root(), -1, -1, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &eventMask);
  return window;
}

DesktopClient X11Connection::clientOf(std::uint32_t resource) {
  DesktopClient client;
  if (resource == 0) return client;
  // The upper bits of an identifier are those of the connection that made it.
  client.connection = resource & ~xcb_get_setup(connection_)->resource_id_mask;
  if (!hasResourceExtension_) return client;
  const xcb_res_client_id_spec_t wanted{resource, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
  const auto reply = x11Reply(connection_, xcb_res_query_client_ids_reply,
                              xcb_res_query_client_ids(connection_, 1, &wanted));
  if (!reply) return client;
  for (auto ids = xcb_res_query_client_ids_ids_iterator(reply.get()); ids.rem > 0;
       xcb_res_client_id_value_next(&ids)) {
    const bool isProcess = (ids.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0;
    if (isProcess && xcb_res_client_id_value_value_length(ids.data) > 0)
      client.processIdentifier = static_cast<pid_t>(*xcb_res_client_id_value_value(ids.data));
  }
  return client;
}

std::string X11Connection::propertyBytes(xcb_window_t window, std::string_view name) {
  const auto reply = x11Reply(
      connection_, xcb_get_property_reply,
      xcb_get_property(connection_, 0, window, atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty));
  if (!reply || reply->format != 8) return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

std::vector<std::uint32_t> X11Connection::propertyWords(xcb_window_t window, std::string_view name) {
  const auto reply = x11Reply(
      connection_, xcb_get_property_reply,
      xcb_get_property(connection_, 0, window, atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty));
  if (!reply || reply->format != 32) return {};
  std::vector<std::uint32_t> words(static_cast<std::size_t>(xcb_get_property_value_length(reply.get())) /
                                   sizeof(std::uint32_t));
  if (!words.empty())
    std::memcpy(words.data(), xcb_get_property_value(reply.get()), words.size() * sizeof(std::uint32_t));
  return words;
}

}  // namespace murmel
