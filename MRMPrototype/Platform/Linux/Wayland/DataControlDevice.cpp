#include "Platform/Linux/Wayland/DataControlDevice.h"

#include <algorithm>
#include <utility>

namespace murmel {

namespace {

/// The first version that tells of what is selected.
constexpr std::uint32_t versionWithPrimary = 2;

}  // namespace

std::unique_ptr<DataControlDevice> DataControlDevice::open(TransferLoop& loop, const Clock& clock,
                                                           SelectionObserver clipboard,
                                                           SelectionObserver primary,
                                                           ClipboardKeeper* keeper) {
  auto& connection = loop.connection();
  std::unique_ptr<DataControlDevice> device(new DataControlDevice());
  device->manager_ = {connection.bind<zwlr_data_control_manager_v1>(zwlr_data_control_manager_v1_interface,
                                                                    versionWithPrimary),
                      &zwlr_data_control_manager_v1_destroy};
  if (!device->manager_ || connection.seat() == nullptr) return nullptr;
  device->device_ = {zwlr_data_control_manager_v1_get_data_device(device->manager_.get(), connection.seat()),
                     &zwlr_data_control_device_v1_destroy};
  device->clipboard_.emplace(loop, device->manager_.get(), device->device_.get(),
                             DataControlSelection::Kind::clipboard, clock, std::move(clipboard), keeper);
  if (connection.versionOf(zwlr_data_control_manager_v1_interface) >= versionWithPrimary) {
    device->primary_.emplace(loop, device->manager_.get(), device->device_.get(),
                             DataControlSelection::Kind::primary, clock, std::move(primary));
  }
  static constexpr zwlr_data_control_device_v1_listener listener{
      .data_offer =
          [](void* self, zwlr_data_control_device_v1* /*device*/, zwlr_data_control_offer_v1* offer) {
            static_cast<DataControlDevice*>(self)->introduced(offer);
          },
      .selection =
          [](void* self, zwlr_data_control_device_v1* /*device*/, zwlr_data_control_offer_v1* offer) {
            auto& me = *static_cast<DataControlDevice*>(self);
            me.clipboard_->selected(me.take(offer));
          },
      // The seat has gone: nothing more comes.
      .finished = [](void* /*self*/, zwlr_data_control_device_v1* /*device*/) {},
      .primary_selection =
          [](void* self, zwlr_data_control_device_v1* /*device*/, zwlr_data_control_offer_v1* offer) {
            auto& me = *static_cast<DataControlDevice*>(self);
            auto taken = me.take(offer);
            if (me.primary_) me.primary_->selected(std::move(taken));
          },
  };
  zwlr_data_control_device_v1_add_listener(device->device_.get(), &listener, device.get());
  if (!connection.roundTrip()) return nullptr;
  device->clipboard_->begin();
  if (device->primary_) device->primary_->begin();
  return device;
}

void DataControlDevice::introduced(zwlr_data_control_offer_v1* offer) {
  auto known = std::make_unique<Offer>();
  known->object = {offer, &zwlr_data_control_offer_v1_destroy};
  static constexpr zwlr_data_control_offer_v1_listener listener{
      .offer = [](void* self, zwlr_data_control_offer_v1* /*offer*/, const char* type) {
        static_cast<Offer*>(self)->types.emplace_back(type);
      }};
  zwlr_data_control_offer_v1_add_listener(offer, &listener, known.get());
  introduced_.push_back(std::move(known));
}

std::unique_ptr<DataControlSelection::Offer> DataControlDevice::take(zwlr_data_control_offer_v1* offer) {
  const auto found =
      std::ranges::find_if(introduced_, [offer](const auto& known) { return known->object.get() == offer; });
  if (offer == nullptr || found == introduced_.end()) return nullptr;
  auto taken = std::move(*found);
  // Whatever was introduced before it was for nothing.
  introduced_.clear();
  return taken;
}

}  // namespace murmel
