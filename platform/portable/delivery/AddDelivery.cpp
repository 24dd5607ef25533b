#include <utility>

#include "platform/portable/Portable.h"
#include "platform/portable/delivery/CustomerWatchingSettings.h"
#include "platform/portable/delivery/DeliveringURLSession.h"

namespace ovinta::platform::portable {

void addDelivery(Services& services, const DeliveryOptions& options, const DeliveryParts& parts) {
  const auto session = DeliveringURLSession::make(services, options, parts);
  session->restore();
  services.urlSession = session;
  services.delivery = session;
  services.settings = std::make_shared<CustomerWatchingSettings>(
      services.settings, [weak = std::weak_ptr(session)] {
        if (const auto living = weak.lock()) living->customerChanged();
      });
}

}  // namespace ovinta::platform::portable
