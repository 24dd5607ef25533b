#include <utility>

#include "platform/portable/Portable.h"
#include "platform/portable/delivery/CustomerWatchingSettings.h"
#include "platform/portable/delivery/DeliveringURLSession.h"
#include "platform/portable/delivery/InMemoryOutbox.h"

namespace ovinta::platform::portable {

std::shared_ptr<Outbox> makeInMemoryOutbox() { return std::make_shared<InMemoryOutbox>(); }

void addDelivery(Services& services, DeliveryOptions options, DeliveryParts parts) {
  const auto session = DeliveringURLSession::make(services, std::move(options), std::move(parts));
  session->restore();
  services.urlSession = session;
  services.delivery = session;
  services.settings = std::make_shared<CustomerWatchingSettings>(
      services.settings, [weak = std::weak_ptr(session)] {
        if (const auto living = weak.lock()) living->customerChanged();
      });
}

}  // namespace ovinta::platform::portable
