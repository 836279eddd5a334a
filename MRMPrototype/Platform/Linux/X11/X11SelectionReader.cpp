#include "Platform/Linux/X11/X11SelectionReader.h"

#include "Platform/Linux/X11/X11SelectionTypes.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace murmel {

namespace {

xcb_window_t ownerOf(X11Connection& connection, xcb_atom_t selection) {
  const auto reply = x11Reply(connection.get(), xcb_get_selection_owner_reply,
                              xcb_get_selection_owner(connection.get(), selection));
  return reply ? reply->owner : static_cast<xcb_window_t>(XCB_NONE);
}

}  // namespace

void X11SelectionReader::begin(Instant deadline) {
  // A window of its own for every read: what a stalled owner still sends later goes nowhere.
  requestor_ = connection_.createHiddenWindow(XCB_EVENT_MASK_PROPERTY_CHANGE);
  conversions_ = 0;
  bytesLeft_ = mostBytes;
  deadline_ = deadline;
}

void X11SelectionReader::end() {
  xcb_destroy_window(connection_.get(), requestor_);
  requestor_ = XCB_NONE;
  awaited_ = XCB_NONE;
}

Duration X11SelectionReader::bounded(Duration stall) const {
  return std::min<Duration>(stall, deadline_ - loop_.now());
}

void X11SelectionReader::notified(const xcb_selection_notify_event_t& event) {
  const bool isAwaited = event.property == awaited_ || event.property == XCB_NONE;
  if (requestor_ != XCB_NONE && event.requestor == requestor_ && isAwaited) answer_ = event.property;
}

void X11SelectionReader::propertyChanged(const xcb_property_notify_event_t& event) {
  if (event.window == requestor_ && event.atom == awaited_ && event.state == XCB_PROPERTY_NEW_VALUE)
    newPiece_ = true;
}

ClipboardCapture X11SelectionReader::capture(X11Selection& selection) {
  const auto deadline = loop_.now() + patience;
  ClipboardCapture captured;
  // Contents that change while they are read would be a mixture: then from the beginning, while there is
  // time.
  do {
    const auto count = selection.changeCount();
    if (selection.isOurs()) return {*selection.contents(), true};
    captured = captureOnce(selection, deadline);
    if (selection.changeCount() == count) return captured;
    captured.complete = false;
  } while (loop_.now() < deadline);
  return captured;
}

ClipboardCapture X11SelectionReader::captureOnce(X11Selection& selection, Instant deadline) {
  ClipboardCapture captured;
  if (ownerOf(connection_, selection.atom()) == XCB_NONE) return captured;
  begin(deadline);
  const auto types = offeredTypes(selection);
  captured.complete = types.has_value();

  std::vector<ClipboardSnapshot::Value> values(types ? types->size() : 0);
  std::vector<std::size_t> order(values.size());
  for (std::size_t index = 0; index < order.size(); ++index) order[index] = index;
  std::ranges::stable_sort(order, {},
                           [&](std::size_t index) { return X11SelectionTypes::urgency((*types)[index]); });
  for (const auto index : order) {
    auto property = convert(selection, (*types)[index], stallPatience);
    if (property.outcome == Outcome::delivered) values[index] = std::move(property.value);
    if (property.outcome == Outcome::stalled) captured.complete = false;
  }
  end();

  std::erase_if(values, [](const auto& value) { return value.type.empty(); });
  if (!values.empty()) captured.contents.items.push_back({std::move(values)});
  return captured;
}

std::optional<std::string> X11SelectionReader::data(X11Selection& selection, const std::string& type) {
  selection.changeCount();
  if (selection.isOurs()) {
    const auto* value = selection.contents()->find(type);
    return value == nullptr ? std::nullopt : std::optional(value->data);
  }
  if (ownerOf(connection_, selection.atom()) == XCB_NONE) return std::nullopt;
  begin(loop_.now() + patience);
  auto property = convert(selection, type, patience);
  end();
  if (property.outcome != Outcome::delivered) return std::nullopt;
  return std::move(property.value.data);
}

std::optional<std::vector<std::string>> X11SelectionReader::offeredTypes(X11Selection& selection) {
  // The first answer of an owner that is busy may take its time; without it there is nothing at all.
  const auto targets = convert(selection, "TARGETS", patience);
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
    if (X11SelectionTypes::isKept(name) && std::ranges::find(types, name) == types.end())
      types.push_back(name);
  }
  return types;
}

X11SelectionReader::Property X11SelectionReader::convert(X11Selection& selection, const std::string& type,
                                                         Duration stall) {
  Property property;
  if (bounded(stall) <= Duration{}) return property;
  // A property of its own for every conversion: a late answer to one is not taken for that to another.
  awaited_ = connection_.atom("MURMEL_RECEIVED_" + std::to_string(conversions_++));
  answer_.reset();
  xcb_convert_selection(connection_.get(), requestor_, selection.atom(), connection_.atom(type), awaited_,
                        selection.serverTime());
  const auto count = selection.knownChangeCount();
  const auto isAnsweredOrGone = [&] { return answer_.has_value() || selection.knownChangeCount() != count; };
  if (!loop_.pumpUntil(isAnsweredOrGone, bounded(stall)) || !answer_) return property;
  if (*answer_ == XCB_NONE) {
    property.outcome = Outcome::refused;
    return property;
  }
  property = receive(awaited_, stall);
  property.value.type = type;
  if (property.value.encoding == type) property.value.encoding.clear();
  return property;
}

X11SelectionReader::Property X11SelectionReader::receive(xcb_atom_t property, Duration stall) {
  Property received;
  newPiece_ = false;
  const auto most = static_cast<std::uint32_t>(bytesLeft_ / 4);
  const auto reply = x11Reply(
      connection_.get(), xcb_get_property_reply,
      xcb_get_property(connection_.get(), 1, requestor_, property, XCB_GET_PROPERTY_TYPE_ANY, 0, most));
  if (!reply || reply->type == XCB_NONE || reply->bytes_after != 0) return received;
  auto& value = received.value;
  if (reply->type == connection_.atom("INCR")) {
    if (receivePieces(property, stall, value)) received.outcome = Outcome::delivered;
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

bool X11SelectionReader::receivePieces(xcb_atom_t property, Duration stall, ClipboardSnapshot::Value& value) {
  while (loop_.pumpUntil([this] { return newPiece_; }, bounded(stall))) {
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
