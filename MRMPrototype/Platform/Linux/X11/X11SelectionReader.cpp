#include "Platform/Linux/X11/X11SelectionReader.h"

#include "Platform/Linux/Clipboard/ClipboardTypes.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace murmel {

X11SelectionReader::X11SelectionReader(std::unique_ptr<X11Connection> connection,
                                       const std::string& selection)
    : loop_(std::move(connection)),
      connection_(loop_.connection()),
      selection_(connection_.atom(selection)),
      window_(connection_.createHiddenWindow(XCB_EVENT_MASK_NO_EVENT)),
      fixesEvent_(xcb_get_extension_data(connection_.get(), &xcb_xfixes_id)->first_event) {
  x11Reply(connection_.get(), xcb_xfixes_query_version_reply,
           xcb_xfixes_query_version(connection_.get(), 5, 0));
  xcb_xfixes_select_selection_input(connection_.get(), window_, selection_,
                                    XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
  loop_.start([this](const xcb_generic_event_t& event) { handle(event); }, [] { return false; });
}

void X11SelectionReader::handle(const xcb_generic_event_t& event) {
  constexpr std::uint8_t sentByAClient = 0x80;
  const auto kind = static_cast<std::uint8_t>(event.response_type & ~sentByAClient);
  if (kind == fixesEvent_ + XCB_XFIXES_SELECTION_NOTIFY) {
    ownerChanged(reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event));
  } else if (kind == XCB_SELECTION_NOTIFY) {
    const auto& answer = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
    const bool isAwaited = answer.property == awaited_ || answer.property == XCB_NONE;
    if (requestor_ != XCB_NONE && answer.requestor == requestor_ && isAwaited) answer_ = answer.property;
  } else if (kind == XCB_PROPERTY_NOTIFY) {
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (time_) time_->propertyChanged(change);
    if (change.window == requestor_ && change.atom == awaited_ && change.state == XCB_PROPERTY_NEW_VALUE)
      newPiece_ = true;
  }
}

void X11SelectionReader::ownerChanged(const xcb_xfixes_selection_notify_event_t& event) {
  if (event.selection != selection_ || lastDelivery_) return;
  // An owner that has lost the selection goes on with what it was asked for before; one that has gone does
  // not.
  const bool lives = event.subtype == XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER;
  lastDelivery_ = loop_.now() + (lives ? lastFormPatience : Duration{});
}

void X11SelectionReader::begin(Duration limit) {
  // A window of its own for every read: what a stalled owner still sends later goes nowhere.
  requestor_ = connection_.createHiddenWindow(XCB_EVENT_MASK_PROPERTY_CHANGE);
  time_.emplace(loop_, requestor_);
  conversions_ = 0;
  bytesLeft_ = mostBytes;
  deadline_ = loop_.now() + limit;
  // Word of earlier changes is in the queue by the time the server answers.
  time_->now();
  lastDelivery_.reset();
}

void X11SelectionReader::end() {
  xcb_destroy_window(connection_.get(), requestor_);
  xcb_flush(connection_.get());
  requestor_ = XCB_NONE;
  time_.reset();
  awaited_ = XCB_NONE;
}

/// Until `condition` holds: as long as the owner may take.
bool X11SelectionReader::await(const std::function<bool()>& condition) {
  const auto patient = std::min(deadline_, loop_.now() + formPatience);
  loop_.pumpUntil([&] { return condition() || lastDelivery_; }, patient - loop_.now());
  if (!condition() && lastDelivery_)
    loop_.pumpUntil(condition, std::min(patient, *lastDelivery_) - loop_.now());
  return condition();
}

xcb_window_t X11SelectionReader::ownerNow() {
  const auto reply = x11Reply(connection_.get(), xcb_get_selection_owner_reply,
                              xcb_get_selection_owner(connection_.get(), selection_));
  return reply ? reply->owner : static_cast<xcb_window_t>(XCB_NONE);
}

ClipboardCapture X11SelectionReader::capture(xcb_window_t owner) {
  ClipboardCapture captured;
  if (owner == XCB_NONE) return captured;
  begin(patience);
  captured.complete = ownerNow() == owner;
  const auto types = captured.complete ? offeredTypes() : std::nullopt;
  captured.complete = types.has_value();

  std::vector<ClipboardSnapshot::Value> values(types ? types->size() : 0);
  std::vector<std::size_t> order(values.size());
  for (std::size_t index = 0; index < order.size(); ++index) order[index] = index;
  std::ranges::stable_sort(order, {},
                           [&](std::size_t index) { return ClipboardTypes::urgency((*types)[index]); });
  for (const auto index : order) {
    auto property = convert((*types)[index]);
    if (property.outcome == Outcome::delivered) values[index] = std::move(property.value);
    if (property.outcome == Outcome::stalled) captured.complete = false;
  }
  end();

  std::erase_if(values, [](const auto& value) { return value.type.empty(); });
  ClipboardSnapshot contents;
  if (!values.empty()) contents.items.push_back({std::move(values)});
  captured.contents = shared(std::move(contents));
  return captured;
}

std::optional<std::string> X11SelectionReader::data(const std::string& type) {
  if (ownerNow() == XCB_NONE) return std::nullopt;
  begin(dataPatience);
  auto property = convert(type);
  end();
  if (property.outcome != Outcome::delivered) return std::nullopt;
  return std::move(property.value.data);
}

std::optional<std::vector<std::string>> X11SelectionReader::offeredTypes() {
  const auto targets = convert("TARGETS");
  if (targets.outcome == Outcome::stalled) return std::nullopt;
  std::vector<std::string> types;
  if (targets.outcome == Outcome::refused || targets.value.unitBits != 32) {
    // Very old owners offer text without a list of what they offer.
    return std::vector<std::string>{"UTF8_STRING", "STRING"};
  }
  const auto& data = targets.value.data;
  for (std::size_t offset = 0; offset + sizeof(xcb_atom_t) <= data.size(); offset += sizeof(xcb_atom_t)) {
    xcb_atom_t atom = XCB_NONE;
    std::memcpy(&atom, data.data() + offset, sizeof(atom));
    const auto& name = connection_.atomName(atom);
    if (ClipboardTypes::isKept(name) && std::ranges::find(types, name) == types.end()) types.push_back(name);
  }
  return types;
}

X11SelectionReader::Property X11SelectionReader::convert(const std::string& type) {
  Property property;
  // Whoever has the selection by now would answer for other contents.
  if (lastDelivery_ || loop_.now() >= deadline_) return property;
  // A property of its own for every conversion: a late answer to one is not taken for that to another.
  awaited_ = connection_.atom("MURMEL_RECEIVED_" + std::to_string(conversions_++));
  answer_.reset();
  const auto time = time_->now();
  if (lastDelivery_) return property;
  xcb_convert_selection(connection_.get(), requestor_, selection_, connection_.atom(type), awaited_, time);
  if (!await([this] { return answer_.has_value(); })) return property;
  if (*answer_ == XCB_NONE) {
    // After the selection was taken it may be the new owner that refuses.
    if (!lastDelivery_) property.outcome = Outcome::refused;
    return property;
  }
  property = receive(awaited_);
  property.value.type = type;
  if (property.value.encoding == type) property.value.encoding.clear();
  return property;
}

X11SelectionReader::Property X11SelectionReader::receive(xcb_atom_t property) {
  Property received;
  newPiece_ = false;
  const auto most = static_cast<std::uint32_t>(bytesLeft_ / 4);
  const auto reply = x11Reply(
      connection_.get(), xcb_get_property_reply,
      xcb_get_property(connection_.get(), 1, requestor_, property, XCB_GET_PROPERTY_TYPE_ANY, 0, most));
  if (!reply || reply->type == XCB_NONE || reply->bytes_after != 0) return received;
  auto& value = received.value;
  if (reply->type == connection_.atom("INCR")) {
    if (receivePieces(property, value)) received.outcome = Outcome::delivered;
    return received;
  }
  value.encoding = connection_.atomName(reply->type);
  value.unitBits = reply->format;
  value.data.assign(static_cast<const char*>(xcb_get_property_value(reply.get())),
                    static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
  bytesLeft_ -= std::min(bytesLeft_, value.data.size());
  received.outcome = Outcome::delivered;
  return received;
}

bool X11SelectionReader::receivePieces(xcb_atom_t property, ClipboardSnapshot::Value& value) {
  while (await([this] { return newPiece_; })) {
    newPiece_ = false;
    const auto most = static_cast<std::uint32_t>(bytesLeft_ / 4);
    const auto reply = x11Reply(
        connection_.get(), xcb_get_property_reply,
        xcb_get_property(connection_.get(), 1, requestor_, property, XCB_GET_PROPERTY_TYPE_ANY, 0, most));
    if (!reply || reply->bytes_after != 0) return false;
    if (reply->type == XCB_NONE) continue;
    value.encoding = connection_.atomName(reply->type);
    value.unitBits = reply->format;
    const auto size = static_cast<std::size_t>(xcb_get_property_value_length(reply.get()));
    if (size == 0) return true;
    value.data.append(static_cast<const char*>(xcb_get_property_value(reply.get())), size);
    bytesLeft_ -= std::min(bytesLeft_, size);
  }
  return false;
}

}  // namespace murmel
