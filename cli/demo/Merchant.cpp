#include "cli/demo/Merchant.h"

#include <httplib.h>

#include <chrono>
#include <future>
#include <string_view>

#include "platform/JSON.h"

namespace ovinta::cli {
namespace {

/// How long the service may keep the merchant waiting.
constexpr std::chrono::seconds kMerchantPatience{10};
/// Longer than any demonstration: a stream of pushes is mostly silent.
constexpr std::chrono::hours kListeningTime{24};

/// Splits a stream of server-sent events into lines and hands on the data of each event.
class EventStream {
 public:
  explicit EventStream(Merchant::Push push) : push_(std::move(push)) {}

  void receive(std::string_view text) {
    buffer_ += text;
    for (std::size_t end = buffer_.find('\n'); end != std::string::npos; end = buffer_.find('\n')) {
      takeLine(std::string_view(buffer_).substr(0, end));
      buffer_.erase(0, end + 1);
    }
  }

 private:
  void takeLine(std::string_view line) {
    constexpr std::string_view kField = "data: ";
    if (!line.starts_with(kField)) return;
    const auto payload = platform::parseJSON(line.substr(kField.size()));
    if (const auto* fields = payload ? payload->as<platform::Dictionary>() : nullptr) {
      push_(*fields);
    }
  }

  Merchant::Push push_;
  std::string buffer_;
};

std::unique_ptr<httplib::Client> makeClient(const std::string& baseURL) {
  auto client = std::make_unique<httplib::Client>(baseURL);
  client->set_connection_timeout(kMerchantPatience);
  client->set_read_timeout(kMerchantPatience);
  return client;
}

}  // namespace

Merchant::Merchant(std::string baseURL) : baseURL_(std::move(baseURL)) {
  while (baseURL_.ends_with('/')) baseURL_.pop_back();
}

Merchant::~Merchant() {
  if (!thread_.joinable()) return;
  listener_->stop();
  thread_.join();
}

std::optional<std::string> Merchant::listen(const std::string& pushToken, Push push) {
  listener_ = makeClient(baseURL_);
  listener_->set_read_timeout(kListeningTime);
  auto listening = std::make_shared<std::promise<bool>>();
  auto ready = listening->get_future();
  thread_ = std::thread([this, pushToken, listening, push = std::move(push)] {
    EventStream stream(push);
    bool isFirst = true;
    listener_->Get("/sandbox/pushes/" + pushToken, [&](const char* data, std::size_t length) {
      // The service begins with a comment line, so that its listeners know that it hears them.
      if (std::exchange(isFirst, false)) listening->set_value(true);
      stream.receive({data, length});
      return true;
    });
    if (isFirst) listening->set_value(false);
  });
  const bool isReady = ready.wait_for(kMerchantPatience) == std::future_status::ready && ready.get();
  if (isReady) return std::nullopt;
  return "the service does not hand out pushes";
}

std::optional<std::string> Merchant::moveOrder(std::int64_t orderID, const std::string& state) {
  const auto answer =
      makeClient(baseURL_)->Post("/sandbox/orders/" + std::to_string(orderID) + "/" + state);
  if (!answer) return "the service cannot be reached";
  if (answer->status == 200) return std::nullopt;
  return "the service answered " + std::to_string(answer->status);
}

}  // namespace ovinta::cli
