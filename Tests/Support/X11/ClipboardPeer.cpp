#include "Support/X11/ClipboardPeer.h"

#include "Support/X11/XWindows.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <map>
#include <stdexcept>
#include <thread>

#include <poll.h>
#include <unistd.h>

namespace murmel::test {

namespace {

/// The few requests that both sides need.
class Client : public XObserver {
 public:
  explicit Client(const std::string& selectionName) : window(newWindow()), selection(atom(selectionName)) {}

  xcb_window_t newWindow() {
    const auto id = xcb_generate_id(connection());
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection(), 0, id, screen().root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, 0,
                      XCB_CW_EVENT_MASK, &mask);
    return id;
  }
  std::string name(xcb_atom_t which) {
    const auto reply = XObserver::own(
        xcb_get_atom_name_reply(connection(), xcb_get_atom_name(connection(), which), nullptr));
    return {xcb_get_atom_name_name(reply.get()),
            static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
  }
  /// Null when nothing comes for a while.
  std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> wait(int milliseconds) {
    xcb_flush(connection());
    if (auto* event = xcb_poll_for_event(connection())) return XObserver::own(event);
    pollfd descriptor{xcb_get_file_descriptor(connection()), POLLIN, 0};
    ::poll(&descriptor, 1, milliseconds);
    return XObserver::own(xcb_poll_for_event(connection()));
  }

  xcb_window_t window;
  xcb_atom_t selection;
};

}  // namespace

// MARK: the owner

class ClipboardOwner::Thread {
 public:
  Thread(const std::string& selection, ClipboardSnapshot contents, OwnerBehaviour behaviour)
      : client_(selection), contents_(std::move(contents)), behaviour_(std::move(behaviour)) {
    for (const auto& item : contents_.items) {
      for (const auto& value : item.values) values_[client_.atom(value.type)] = &value;
    }
    xcb_set_selection_owner(client_.connection(), client_.window, client_.selection, XCB_CURRENT_TIME);
    // The answer means that the selection is ours.
    XObserver::own(xcb_get_selection_owner_reply(
        client_.connection(), xcb_get_selection_owner(client_.connection(), client_.selection), nullptr));
    thread_ = std::thread([this] { run(); });
  }
  ~Thread() {
    stopping_ = true;
    thread_.join();
  }

  std::atomic<bool> lost = false;
  std::atomic<bool> stuck = false;

 private:
  struct Transfer {
    xcb_window_t requestor;
    xcb_atom_t property;
    const ClipboardSnapshot::Value* value;
    std::size_t sent = 0;
    bool stalls = false;
  };

  void run() {
    while (!stopping_) {
      const auto event = client_.wait(20);
      if (!event) continue;
      switch (event->response_type & 0x7F) {
        case XCB_SELECTION_CLEAR:
          lost = true;
          break;
        case XCB_SELECTION_REQUEST:
          if (behaviour_.answers)
            answer(reinterpret_cast<const xcb_selection_request_event_t&>(*event));
          else
            stuck = true;
          break;
        case XCB_PROPERTY_NOTIFY:
          proceed(reinterpret_cast<const xcb_property_notify_event_t&>(*event));
          break;
        default:
          break;
      }
    }
  }

  void answer(const xcb_selection_request_event_t& request) {
    xcb_selection_notify_event_t notice{};
    notice.response_type = XCB_SELECTION_NOTIFY;
    notice.time = request.time;
    notice.requestor = request.requestor;
    notice.selection = request.selection;
    notice.target = request.target;
    notice.property = put(request) ? request.property : static_cast<xcb_atom_t>(XCB_NONE);
    char wire[32] = {};
    std::memcpy(wire, &notice, sizeof(notice));
    xcb_send_event(client_.connection(), 0, request.requestor, 0, wire);
  }

  bool put(const xcb_selection_request_event_t& request) {
    if (request.target == client_.atom("TARGETS")) {
      std::vector<xcb_atom_t> atoms;
      if (behaviour_.listsProtocolTargets) {
        for (const auto* name :
             {"TIMESTAMP", "TARGETS", "MULTIPLE", "SAVE_TARGETS", "GTK_TEXT_BUFFER_CONTENTS"})
          atoms.push_back(client_.atom(name));
      }
      for (const auto& item : contents_.items) {
        for (const auto& value : item.values) atoms.push_back(client_.atom(value.type));
      }
      xcb_change_property(client_.connection(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                          XCB_ATOM_ATOM, 32, static_cast<std::uint32_t>(atoms.size()), atoms.data());
      return true;
    }
    const auto found = values_.find(request.target);
    if (found == values_.end() || behaviour_.refuses.contains(found->second->type)) return false;
    const auto& value = *found->second;
    const bool stalls = behaviour_.stallsAt.contains(value.type);
    if (!behaviour_.sendsInPieces && !stalls) {
      write(request.requestor, request.property, value, value.data);
      return true;
    }
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(client_.connection(), request.requestor, XCB_CW_EVENT_MASK, &mask);
    const auto size = static_cast<std::uint32_t>(value.data.size());
    xcb_change_property(client_.connection(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                        client_.atom("INCR"), 32, 1, &size);
    transfers_.push_back({request.requestor, request.property, &value, 0, stalls});
    if (stalls) stuck = true;
    return true;
  }

  void proceed(const xcb_property_notify_event_t& change) {
    if (change.state != XCB_PROPERTY_DELETE) return;
    for (auto& transfer : transfers_) {
      if (transfer.requestor != change.window || transfer.property != change.atom || transfer.stalls)
        continue;
      const auto piece = transfer.value->data.substr(transfer.sent, 1'000);
      write(transfer.requestor, transfer.property, *transfer.value, piece);
      transfer.sent += piece.size();
    }
  }

  void write(xcb_window_t requestor, xcb_atom_t property, const ClipboardSnapshot::Value& value,
             const std::string& data) {
    const auto unit = static_cast<std::uint8_t>(value.unitBits);
    xcb_change_property(client_.connection(), XCB_PROP_MODE_REPLACE, requestor, property,
                        client_.atom(value.encoding.empty() ? value.type : value.encoding), unit,
                        static_cast<std::uint32_t>(data.size() / (unit / 8U)), data.data());
  }

  Client client_;
  ClipboardSnapshot contents_;
  OwnerBehaviour behaviour_;
  std::map<xcb_atom_t, const ClipboardSnapshot::Value*> values_;
  std::vector<Transfer> transfers_;
  std::atomic<bool> stopping_ = false;
  std::thread thread_;
};

ClipboardOwner::ClipboardOwner(const std::string& selection, ClipboardSnapshot contents,
                               OwnerBehaviour behaviour)
    : thread_(std::make_unique<Thread>(selection, std::move(contents), std::move(behaviour))) {}

ClipboardOwner::~ClipboardOwner() = default;

bool ClipboardOwner::isStuck() const {
  return thread_->stuck;
}

bool ClipboardOwner::hasLost() const {
  return thread_->lost;
}

// MARK: the reader

class ClipboardReader::Connection {
 public:
  explicit Connection(const std::string& selection) : client(selection) {}

  struct Reading {
    xcb_atom_t property = 0;
    std::string type;
    bool answered = false;
    bool incremental = false;
    bool done = false;
    std::optional<ClipboardSnapshot::Value> value;
  };

  std::vector<std::optional<ClipboardSnapshot::Value>> read(const std::vector<std::string>& types,
                                                            xcb_timestamp_t time) {
    const auto window = client.newWindow();
    std::vector<Reading> readings(types.size());
    for (std::size_t index = 0; index < types.size(); ++index) {
      readings[index].type = types[index];
      readings[index].property = client.atom("PEER_" + std::to_string(index));
      xcb_convert_selection(client.connection(), window, client.selection, client.atom(types[index]),
                            readings[index].property, time);
    }
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (std::ranges::any_of(readings, [](const auto& reading) { return !reading.done; }) &&
           std::chrono::steady_clock::now() < limit) {
      const auto event = client.wait(50);
      if (event) handle(*event, window, readings);
    }
    std::vector<std::optional<ClipboardSnapshot::Value>> values;
    for (auto& reading : readings) {
      if (!reading.done) throw std::runtime_error("the clipboard did not answer");
      values.push_back(std::move(reading.value));
    }
    xcb_destroy_window(client.connection(), window);
    return values;
  }

  Client client;

 private:
  void handle(const xcb_generic_event_t& event, xcb_window_t window, std::vector<Reading>& readings) {
    const auto kind = event.response_type & 0x7F;
    if (kind == XCB_SELECTION_NOTIFY) {
      const auto& notice = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
      for (auto& reading : readings) {
        if (reading.answered || client.atom(reading.type) != notice.target) continue;
        reading.answered = true;
        if (notice.property == XCB_NONE) {
          reading.done = true;
        } else {
          take(window, reading);
        }
        break;
      }
    } else if (kind == XCB_PROPERTY_NOTIFY) {
      const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
      for (auto& reading : readings) {
        const bool isPiece = reading.incremental && !reading.done && change.window == window &&
                             change.atom == reading.property && change.state == XCB_PROPERTY_NEW_VALUE;
        if (isPiece) take(window, reading);
      }
    }
  }

  void take(xcb_window_t window, Reading& reading) {
    const auto reply = XObserver::own(xcb_get_property_reply(
        client.connection(),
        xcb_get_property(client.connection(), 1, window, reading.property, 0, 0, 100'000'000), nullptr));
    if (!reply || reply->type == XCB_NONE) {
      // Qt says that it has answered SAVE_TARGETS, and has written nothing.
      reading.done = !reading.incremental;
      return;
    }
    if (!reading.incremental && reply->type == client.atom("INCR")) {
      reading.incremental = true;
      return;
    }
    const std::string data(static_cast<const char*>(xcb_get_property_value(reply.get())),
                           static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
    if (!reading.value) {
      const auto encoding = client.name(reply->type);
      reading.value =
          ClipboardSnapshot::Value{reading.type, "", encoding == reading.type ? "" : encoding, reply->format};
    }
    reading.value->data += data;
    reading.done = !reading.incremental || data.empty();
  }
};

ClipboardReader::ClipboardReader(std::string selection)
    : connection_(std::make_unique<Connection>(selection)) {}

ClipboardReader::~ClipboardReader() = default;

std::optional<ClipboardSnapshot::Value> ClipboardReader::read(const std::string& type) {
  return connection_->read({type}, XCB_CURRENT_TIME).front();
}

std::optional<ClipboardSnapshot::Value> ClipboardReader::readAsOf(const std::string& type,
                                                                  std::uint32_t time) {
  return connection_->read({type}, time).front();
}

std::uint32_t ClipboardReader::now() {
  auto& client = connection_->client;
  xcb_change_property(client.connection(), XCB_PROP_MODE_APPEND, client.window, client.atom("PEER_TIME"),
                      XCB_ATOM_INTEGER, 32, 0, nullptr);
  while (true) {
    const auto event = client.wait(50);
    if (!event || (event->response_type & 0x7F) != XCB_PROPERTY_NOTIFY) continue;
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
    if (change.window == client.window) return change.time;
  }
}

std::vector<std::optional<ClipboardSnapshot::Value>> ClipboardReader::readTogether(
    const std::vector<std::string>& types) {
  return connection_->read(types, XCB_CURRENT_TIME);
}

void ClipboardReader::beginAndDie(const std::string& type) {
  auto& client = connection_->client;
  xcb_convert_selection(client.connection(), client.window, client.selection, client.atom(type),
                        client.atom("PEER_DYING"), XCB_CURRENT_TIME);
  while (true) {
    const auto event = client.wait(50);
    if (event && (event->response_type & 0x7F) == XCB_SELECTION_NOTIFY) break;
  }
  xcb_delete_property(client.connection(), client.window, client.atom("PEER_DYING"));
  client.settle();
  connection_.reset();
}

DesktopClient ClipboardReader::client() const {
  const auto& client = connection_->client;
  return {::getpid(), client.window & ~xcb_get_setup(client.connection())->resource_id_mask};
}

std::vector<std::string> ClipboardReader::types() {
  const auto targets = read("TARGETS");
  std::vector<std::string> names;
  if (!targets) return names;
  for (std::size_t offset = 0; offset + 4 <= targets->data.size(); offset += 4) {
    xcb_atom_t atom = 0;
    std::memcpy(&atom, targets->data.data() + offset, sizeof(atom));
    names.push_back(connection_->client.name(atom));
  }
  return names;
}

}  // namespace murmel::test
