#include "Platform/Linux/X11/X11IncrementalSender.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace murmel {

namespace {

/// Which events of the receiver's window we want; the mask is ours alone, the receiver keeps its own.
void listen(X11Connection& connection, xcb_window_t requestor, std::uint32_t mask) {
  xcb_change_window_attributes(connection.get(), requestor, XCB_CW_EVENT_MASK, &mask);
}

}  // namespace

void X11IncrementalSender::begin(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
                                 std::shared_ptr<const ClipboardSnapshot> holder,
                                 const ClipboardSnapshot::Value& value, Instant now,
                                 std::function<void()> onDelivered) {
  // Who asks for the same property again has given up the transfer before.
  std::erase_if(transfers_, [&](const Transfer& transfer) {
    return transfer.requestor == requestor && transfer.property == property;
  });
  listen(connection_, requestor, XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
  const auto size = static_cast<std::uint32_t>(std::min<std::size_t>(value.data.size(), UINT32_MAX));
  xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, requestor, property, connection_.atom("INCR"),
                      32, 1, &size);
  transfers_.push_back(
      {requestor, property, type, std::move(holder), &value, 0, false, now, std::move(onDelivered)});
}

void X11IncrementalSender::propertyChanged(const xcb_property_notify_event_t& event, Instant now) {
  if (event.state != XCB_PROPERTY_DELETE) return;
  const auto found = std::ranges::find_if(transfers_, [&](const Transfer& transfer) {
    return transfer.requestor == event.window && transfer.property == event.atom;
  });
  if (found == transfers_.end()) return;
  auto& transfer = *found;
  transfer.lastProgress = now;
  if (transfer.ended) {
    const auto onDelivered = std::move(transfer.onDelivered);
    end(found);
    if (onDelivered) onDelivered();
    return;
  }
  const auto& data = transfer.value->data;
  const auto piece = std::min(pieceSize, data.size() - transfer.sent);
  const auto unit = static_cast<std::uint8_t>(transfer.value->unitBits);
  xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, transfer.requestor, transfer.property,
                      transfer.type, unit, static_cast<std::uint32_t>(piece / (unit / 8U)),
                      data.data() + transfer.sent);
  transfer.sent += piece;
  // An empty piece says that this was all.
  transfer.ended = piece == 0;
}

void X11IncrementalSender::windowDestroyed(xcb_window_t window) {
  std::erase_if(transfers_, [&](const Transfer& transfer) { return transfer.requestor == window; });
}

bool X11IncrementalSender::dropAbandoned(Instant now) {
  for (auto transfer = transfers_.begin(); transfer != transfers_.end();) {
    const auto current = transfer++;
    if (now - current->lastProgress > patience) end(current);
  }
  return !transfers_.empty();
}

void X11IncrementalSender::end(std::list<Transfer>::iterator transfer) {
  const auto requestor = transfer->requestor;
  transfers_.erase(transfer);
  // Another transfer to the same window still needs its events.
  const bool isLast =
      std::ranges::none_of(transfers_, [&](const Transfer& other) { return other.requestor == requestor; });
  if (isLast) listen(connection_, requestor, XCB_EVENT_MASK_NO_EVENT);
}

}  // namespace murmel
