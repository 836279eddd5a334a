#include "Platform/Linux/X11Keys/X11KeyConnection.h"

#include <string_view>
#include <utility>

#include <xcb/xcbext.h>
#include <xcb/xinput.h>
// The header names a member with a keyword of C++.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
#include <xkbcommon/xkbcommon-x11.h>

namespace murmel {

namespace {

/// From 2.1 on raw events arrive during other clients' grabs too; 2.2 is what every server since 2012 has.
constexpr std::uint16_t inputMajorVersion = 2;
constexpr std::uint16_t inputMinorVersion = 2;

/// What follows is the wheel.
constexpr std::uint32_t lastButton = 3;

/// Every XTest keyboard is called so after its master.
constexpr std::string_view syntheticKeyboardNameEnd = "XTEST keyboard";

template <class Reply>
using ReplyPointer = std::unique_ptr<Reply, FreeDeleter>;

template <class Event>
const Event& as(const xcb_generic_event_t& event) {
  return reinterpret_cast<const Event&>(event);
}

struct ContextDeleter {
  void operator()(xkb_context* context) const { xkb_context_unref(context); }
};

bool selectXkb(xcb_connection_t* connection, std::uint16_t keyboard) {
  constexpr std::uint16_t events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY |
                                   XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
  constexpr std::uint16_t mapParts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS |
                                     XCB_XKB_MAP_PART_MODIFIER_MAP | XCB_XKB_MAP_PART_EXPLICIT_COMPONENTS |
                                     XCB_XKB_MAP_PART_KEY_ACTIONS | XCB_XKB_MAP_PART_VIRTUAL_MODS |
                                     XCB_XKB_MAP_PART_VIRTUAL_MOD_MAP;
  // Locks and groups only: which modifiers are down is known from the keys, more exactly.
  constexpr std::uint16_t stateParts = XCB_XKB_STATE_PART_MODIFIER_LOCK | XCB_XKB_STATE_PART_GROUP_BASE |
                                       XCB_XKB_STATE_PART_GROUP_LATCH | XCB_XKB_STATE_PART_GROUP_LOCK;
  xcb_xkb_select_events_details_t details{};
  details.affectNewKeyboard = XCB_XKB_NKN_DETAIL_KEYCODES;
  details.newKeyboardDetails = XCB_XKB_NKN_DETAIL_KEYCODES;
  details.affectState = stateParts;
  details.stateDetails = stateParts;
  const auto cookie =
      xcb_xkb_select_events_aux_checked(connection, keyboard, events, 0, 0, mapParts, mapParts, &details);
  const ReplyPointer<xcb_generic_error_t> error(xcb_request_check(connection, cookie));
  return error == nullptr;
}

bool selectInput(xcb_connection_t* connection, xcb_window_t root) {
  struct Mask {
    xcb_input_event_mask_t head;
    std::uint32_t bits;
  };
  // All devices would deliver every key twice, once for the device and once for its master.
  const Mask keys{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
                  XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE |
                      XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS};
  const Mask devices{{XCB_INPUT_DEVICE_ALL, 1}, XCB_INPUT_XI_EVENT_MASK_HIERARCHY};
  for (const auto& mask : {keys, devices}) {
    const auto cookie = xcb_input_xi_select_events_checked(connection, root, 1, &mask.head);
    const ReplyPointer<xcb_generic_error_t> error(xcb_request_check(connection, cookie));
    if (error) return false;
  }
  return true;
}

}  // namespace

void X11KeyConnection::Disconnect::operator()(xcb_connection_t* connection) const {
  xcb_disconnect(connection);
}

X11KeyConnection::X11KeyConnection(Connection connection, std::uint32_t root)
    : connection_(std::move(connection)), root_(root) {}

X11KeyConnection::~X11KeyConnection() = default;

std::expected<std::unique_ptr<X11KeyConnection>, std::string> X11KeyConnection::connect(
    const std::string& display) {
  int screenNumber = 0;
  Connection connection(xcb_connect(display.empty() ? nullptr : display.c_str(), &screenNumber));
  if (xcb_connection_has_error(connection.get()) != 0) {
    return std::unexpected("The X server cannot be reached.");
  }
  auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection.get()));
  for (; screens.rem > 1 && screenNumber > 0; --screenNumber) xcb_screen_next(&screens);
  if (screens.rem == 0) return std::unexpected("The X server has no screen.");

  const auto* input = xcb_get_extension_data(connection.get(), &xcb_input_id);
  if (input == nullptr || input->present == 0) {
    return std::unexpected("The X server has no XInput extension, so keys cannot be heard globally.");
  }
  const ReplyPointer<xcb_input_xi_query_version_reply_t> version(xcb_input_xi_query_version_reply(
      connection.get(), xcb_input_xi_query_version(connection.get(), inputMajorVersion, inputMinorVersion),
      nullptr));
  if (!version || std::pair(version->major_version, version->minor_version) <
                      std::pair(inputMajorVersion, inputMinorVersion)) {
    return std::unexpected("The X server's XInput is older than 2.2, so keys cannot be heard globally.");
  }
  std::unique_ptr<X11KeyConnection> result(new X11KeyConnection(std::move(connection), screens.data->root));
  result->inputOpcode_ = input->major_opcode;
  if (xkb_x11_setup_xkb_extension(result->connection_.get(), XKB_X11_MIN_MAJOR_XKB_VERSION,
                                  XKB_X11_MIN_MINOR_XKB_VERSION, XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS,
                                  nullptr, nullptr, &result->xkbEventBase_, nullptr) == 0) {
    return std::unexpected("The X server has no XKB extension, so keys cannot be told apart.");
  }
  return result;
}

std::expected<void, std::string> X11KeyConnection::check(const std::string& display) {
  auto connected = connect(display);
  if (!connected) return std::unexpected(std::move(connected).error());
  return {};
}

std::expected<std::unique_ptr<X11KeyConnection>, std::string> X11KeyConnection::open(
    const std::string& display) {
  auto connected = connect(display);
  if (connected && !(*connected)->select()) {
    return std::unexpected("The X server does not let this application hear keys.");
  }
  return connected;
}

bool X11KeyConnection::select() {
  keyboard_ = xkb_x11_get_core_keyboard_device_id(connection_.get());
  if (keyboard_ < 0) return false;
  if (!selectXkb(connection_.get(), static_cast<std::uint16_t>(keyboard_))) return false;
  if (!selectInput(connection_.get(), root_)) return false;
  readDevices();
  return !isBroken();
}

int X11KeyConnection::descriptor() const {
  return xcb_get_file_descriptor(connection_.get());
}

bool X11KeyConnection::isBroken() const {
  return xcb_connection_has_error(connection_.get()) != 0;
}

XcbEvent X11KeyConnection::poll() {
  return XcbEvent(xcb_poll_for_event(connection_.get()));
}

X11KeyConnection::Notice X11KeyConnection::interpret(const xcb_generic_event_t& event) {
  constexpr std::uint8_t sentByClient = 0x80;
  const auto type = static_cast<std::uint8_t>(event.response_type & ~sentByClient);
  if (type == XCB_GE_GENERIC && as<xcb_ge_generic_event_t>(event).extension == inputOpcode_) {
    return interpretKey(event);
  }
  if (type == xkbEventBase_) return interpretXkb(event);
  return Notice::none;
}

X11KeyConnection::Notice X11KeyConnection::interpretKey(const xcb_generic_event_t& event) {
  const auto type = as<xcb_ge_generic_event_t>(event).event_type;
  if (type == XCB_INPUT_HIERARCHY) return Notice::devices;
  if (type == XCB_INPUT_RAW_BUTTON_PRESS)
    return as<xcb_input_raw_button_press_event_t>(event).detail <= lastButton ? Notice::button : Notice::none;
  if (type != XCB_INPUT_RAW_KEY_PRESS && type != XCB_INPUT_RAW_KEY_RELEASE) return Notice::none;
  const auto& key = as<xcb_input_raw_key_press_event_t>(event);
  rawKey = {.keyCode = key.detail,
            .goesDown = type == XCB_INPUT_RAW_KEY_PRESS,
            .time = key.time,
            .source = key.sourceid,
            .isSynthetic = syntheticDevices_.contains(key.sourceid),
            .isRepeat = (key.flags & XCB_INPUT_KEY_EVENT_FLAGS_KEY_REPEAT) != 0};
  return Notice::key;
}

X11KeyConnection::Notice X11KeyConnection::interpretXkb(const xcb_generic_event_t& event) {
  // All xkb events are one event of the core protocol; the second byte tells them apart.
  switch (event.pad0) {
    case XCB_XKB_NEW_KEYBOARD_NOTIFY:
    case XCB_XKB_MAP_NOTIFY:
      return Notice::layout;
    case XCB_XKB_STATE_NOTIFY: {
      const auto& state = as<xcb_xkb_state_notify_event_t>(event);
      layoutState = {.baseModifiers = state.baseMods,
                     .latchedModifiers = state.latchedMods,
                     .lockedModifiers = state.lockedMods,
                     .baseGroup = static_cast<std::uint32_t>(state.baseGroup),
                     .latchedGroup = static_cast<std::uint32_t>(state.latchedGroup),
                     .lockedGroup = state.lockedGroup};
      return Notice::locks;
    }
    default:
      return Notice::none;
  }
}

std::optional<KeyLayout> X11KeyConnection::readLayout() {
  const std::unique_ptr<xkb_context, ContextDeleter> context(
      xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES));
  if (!context) return std::nullopt;
  xkb_context_set_log_fn(context.get(), [](xkb_context*, xkb_log_level, const char*, va_list) {});
  auto* keymap = xkb_x11_keymap_new_from_device(context.get(), connection_.get(), keyboard_,
                                                XKB_KEYMAP_COMPILE_NO_FLAGS);
  if (keymap == nullptr) return std::nullopt;
  auto* state = xkb_x11_state_new_from_device(keymap, connection_.get(), keyboard_);
  if (state == nullptr) {
    xkb_keymap_unref(keymap);
    return std::nullopt;
  }
  return KeyLayout(keymap, state);
}

void X11KeyConnection::readDevices() {
  const ReplyPointer<xcb_input_xi_query_device_reply_t> reply(xcb_input_xi_query_device_reply(
      connection_.get(), xcb_input_xi_query_device(connection_.get(), XCB_INPUT_DEVICE_ALL), nullptr));
  if (!reply) return;
  syntheticDevices_.clear();
  for (auto device = xcb_input_xi_query_device_infos_iterator(reply.get()); device.rem > 0;
       xcb_input_xi_device_info_next(&device)) {
    const std::string_view name(xcb_input_xi_device_info_name(device.data), device.data->name_len);
    if (device.data->type == XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD &&
        name.ends_with(syntheticKeyboardNameEnd)) {
      syntheticDevices_.insert(device.data->deviceid);
    }
  }
}

void X11KeyConnection::requestPressedKeys() {
  if (pressedKeysRequest_) xcb_discard_reply(connection_.get(), *pressedKeysRequest_);
  pressedKeysRequest_ = xcb_query_keymap_unchecked(connection_.get()).sequence;
  xcb_flush(connection_.get());
}

void X11KeyConnection::awaitServer() {
  const ReplyPointer<xcb_get_input_focus_reply_t> reply(
      xcb_get_input_focus_reply(connection_.get(), xcb_get_input_focus(connection_.get()), nullptr));
}

std::optional<PressedKeySet> X11KeyConnection::pressedKeysBefore(const xcb_generic_event_t* event) {
  if (!pressedKeysRequest_) return std::nullopt;
  // An event with the request's own number or a later one was sent after the answer. The difference is
  // signed because the numbers wrap around.
  if (event != nullptr && static_cast<std::int32_t>(event->full_sequence - *pressedKeysRequest_) < 0) {
    return std::nullopt;
  }
  void* answer = nullptr;
  xcb_generic_error_t* error = nullptr;
  if (xcb_poll_for_reply(connection_.get(), *pressedKeysRequest_, &answer, &error) == 0) return std::nullopt;
  pressedKeysRequest_.reset();
  const ReplyPointer<xcb_generic_error_t> ownedError(error);
  const ReplyPointer<xcb_query_keymap_reply_t> reply(static_cast<xcb_query_keymap_reply_t*>(answer));
  if (!reply) return std::nullopt;
  PressedKeySet keys;
  for (std::size_t keyCode = 0; keyCode < keys.size(); ++keyCode) {
    keys.set(keyCode, ((reply->keys[keyCode / 8] >> (keyCode % 8)) & 1U) != 0);
  }
  return keys;
}

}  // namespace murmel
