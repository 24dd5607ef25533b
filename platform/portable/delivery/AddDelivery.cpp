#include <utility>

#include "platform/portable/Portable.h"
#include "platform/portable/delivery/CustomerWatchingSettings.h"
#include "platform/portable/delivery/DeliveringURLSession.h"

namespace ovinta::platform::portable {

namespace {

/// Has queues begin one operation after the other, unless their owner says otherwise: requests are
/// then handed over in the order in which the application has made them.
class InOrderFactory final : public OperationQueueFactory {
 public:
  explicit InOrderFactory(std::shared_ptr<OperationQueueFactory> base) : base_(std::move(base)) {}

  std::shared_ptr<OperationQueue> makeQueue() override {
    auto queue = base_->makeQueue();
    queue->setMaxConcurrentOperationCount(1);
    return queue;
  }

 private:
  const std::shared_ptr<OperationQueueFactory> base_;
};

}  // namespace

void addDelivery(Services& services, const DeliveryOptions& options, const DeliveryParts& parts) {
  const auto session = DeliveringURLSession::make(services, options, parts);
  session->restore();
  services.urlSession = session;
  if (services.operationQueues) {
    services.operationQueues = std::make_shared<InOrderFactory>(services.operationQueues);
  }
  services.delivery = session;
  services.settings = std::make_shared<CustomerWatchingSettings>(
      services.settings, [weak = std::weak_ptr(session)] {
        if (const auto living = weak.lock()) living->customerChanged();
      });
}

}  // namespace ovinta::platform::portable
