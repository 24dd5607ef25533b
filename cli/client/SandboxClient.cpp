#include "cli/client/SandboxClient.h"

#include <httplib.h>

#include <stdexcept>
#include <utility>

#include "platform/JSON.h"

namespace ovinta::cli {
namespace {

using platform::Dictionary;
using platform::Value;

/// Longer than anybody listens: a stream is mostly silent.
constexpr std::chrono::hours kListeningTime{24 * 365};

/// Splits a stream of server-sent events into lines and hands on each event.
class EventReader {
 public:
  explicit EventReader(const SandboxClient::Event& onEvent) : onEvent_(onEvent) {}

  void receive(std::string_view text) {
    buffer_ += text;
    for (std::size_t end = buffer_.find('\n'); end != std::string::npos; end = buffer_.find('\n')) {
      takeLine(std::string_view(buffer_).substr(0, end));
      buffer_.erase(0, end + 1);
    }
  }

 private:
  void takeLine(std::string_view line) {
    constexpr std::string_view kName = "event: ", kData = "data: ";
    if (line.starts_with(kName)) name_ = line.substr(kName.size());
    if (!line.starts_with(kData)) return;
    const auto data = platform::parseJSON(line.substr(kData.size()));
    if (const auto* fields = data ? data->as<Dictionary>() : nullptr) onEvent_(name_, *fields);
  }

  const SandboxClient::Event& onEvent_;
  std::string name_;
  std::string buffer_;
};

/// What the sandbox says against a request, e.g. "State is final".
std::string complaintIn(const std::string& body) {
  const auto answer = platform::parseJSON(body);
  const auto* fields = answer ? answer->as<Dictionary>() : nullptr;
  const auto* errors = fields ? platform::find<Dictionary>(*fields, "errors") : nullptr;
  std::string text;
  for (const auto& [field, messages] : errors ? *errors : Dictionary()) {
    for (const Value& message :
         messages.as<platform::List>() ? *messages.as<platform::List>() : platform::List()) {
      if (const auto* sentence = message.as<std::string>()) text += ": " + *sentence;
    }
  }
  return text;
}

std::string targetOf(const std::string& path) { return "/sandbox/" + path; }

httplib::Result send(httplib::Client& client, const std::string& method, const std::string& target,
                     const std::string& body) {
  constexpr const char* kType = "application/json";
  if (method == "GET") return client.Get(target);
  if (method == "PUT") return client.Put(target, body, kType);
  if (method == "DELETE") return client.Delete(target);
  return client.Post(target, body, kType);
}

}  // namespace

SandboxClient::SandboxClient(std::string baseURL, std::string token,
                             std::chrono::seconds patience) {
  while (baseURL.ends_with('/')) baseURL.pop_back();
  if (!baseURL.starts_with("http://")) {
    throw std::runtime_error("a sandbox is reached by http, not at " + baseURL);
  }
  client_ = std::make_unique<httplib::Client>(baseURL);
  client_->set_connection_timeout(patience);
  client_->set_read_timeout(patience);
  if (!token.empty()) client_->set_default_headers({{"App-Token", std::move(token)}});
}

SandboxClient::~SandboxClient() = default;

Value SandboxClient::ask(const std::string& method, const std::string& path,
                         const std::optional<Value>& record) {
  const std::string body = record ? platform::writeJSON(Dictionary{{"data", *record}}) : "";
  const auto answer = send(*client_, method, targetOf(path), body);
  if (!answer) throw std::runtime_error("the service cannot be reached");
  const auto content = platform::parseJSON(answer->body);
  const auto* fields = content ? content->as<Dictionary>() : nullptr;
  if (answer->status == 200 && fields && fields->contains("data")) return fields->at("data");
  throw std::runtime_error("the service answered " + std::to_string(answer->status) +
                           complaintIn(answer->body));
}

void SandboxClient::follow(const std::string& path, const std::function<void()>& onOpen,
                           const Event& onEvent) {
  if (isStopped_) return;
  client_->set_read_timeout(kListeningTime);
  EventReader reader(onEvent);
  bool isOpen = false;
  client_->Get(
      targetOf(path), [&](const httplib::Response& head) { return head.status == 200; },
      [&](const char* data, std::size_t length) {
        // The service begins at once, so that its listeners know that it hears them.
        if (!std::exchange(isOpen, true)) onOpen();
        reader.receive({data, length});
        return !isStopped_.load();
      });
  if (isStopped_) return;
  if (!isOpen) throw std::runtime_error("the service has no stream " + targetOf(path));
  throw std::runtime_error("the sandbox has ended the stream");
}

void SandboxClient::stop() {
  isStopped_ = true;
  client_->stop();
}

}  // namespace ovinta::cli
