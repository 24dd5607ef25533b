#include "cli/client/UnreadableAnswers.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>
#include <utility>

#include "OvintaSDK/OvintaSDK.h"
#include "OvintaSDK/core/Guarded.h"
#include "platform/JSON.h"

namespace ovinta::cli {
namespace {

using platform::CodingError;
using platform::Dictionary;
using Fault = std::optional<CodingError>;

Guarded<std::optional<std::string>>& lastFault() {
  static Guarded<std::optional<std::string>> fault;
  return fault;
}

template <class Record>
Fault faultIn(const std::string& text) {
  const auto record = readRecord<Record>(text);
  return record ? std::nullopt : Fault(record.error());
}

/// The record under "data" of an answer, or what the answer has instead.
std::optional<platform::Value> dataOf(const std::string& text) {
  const auto answer = platform::parseJSON(text);
  const auto* fields = answer ? answer->as<Dictionary>() : nullptr;
  const auto data = fields ? fields->find("data") : Dictionary::const_iterator();
  return fields && data != fields->end() ? std::optional(data->second) : std::nullopt;
}

template <class Record>
Fault faultInData(const std::string& text) {
  const auto data = dataOf(text);
  // What an answer has to be is the same for all of them.
  Fault fault = data ? faultIn<Record>(platform::writeJSON(*data)) : faultIn<OrderResponse>(text);
  if (data && fault) fault->prependKey("data");
  return fault;
}

Fault faultInPages(const Dictionary& answer) {
  const auto* pages = platform::find<Dictionary>(answer, "pages");
  for (const char* key : {"current", "count"}) {
    if (pages && platform::find<std::int64_t>(*pages, key)) continue;
    CodingError fault(CodingError::Kind::keyNotFound, "Expected a whole number.");
    fault.prependKey(key);
    fault.prependKey("pages");
    return fault;
  }
  return std::nullopt;
}

Fault faultInSites(const std::string& text) {
  const auto data = dataOf(text);
  const auto* sites = data ? data->as<platform::List>() : nullptr;
  if (!sites) return faultIn<OrdersResponse>(text);
  for (std::size_t i = 0; i < sites->size(); ++i) {
    if (Fault fault = faultIn<Site>(platform::writeJSON((*sites)[i]))) {
      fault->prependIndex(i);
      fault->prependKey("data");
      return fault;
    }
  }
  return faultInPages(*platform::parseJSON(text)->as<Dictionary>());
}

Fault faultInConfiguration(const std::string& text) {
  const auto answer = platform::parseJSON(text);
  if (!answer) return faultIn<OrderResponse>(text);
  if (answer->as<Dictionary>() || answer->as<platform::List>()) return std::nullopt;
  return CodingError(CodingError::Kind::dataCorrupted, "The given data is a bare value.");
}

struct Reader {
  std::string_view method;
  std::string_view path;
  Fault (*fault)(const std::string& text);
};

/// Who reads what the service answers, the first whose method and beginning of the path fit; an
/// empty method stands for all.
constexpr auto kReaders = std::to_array<Reader>({
    {"GET", "m/v1/app", faultInConfiguration},
    {"", "m/v1/customer", faultInData<Customer>},
    {"GET", "m/v1/sites", faultInSites},
    {"GET", "m/v1/orders/", faultIn<OrderResponse>},
    {"GET", "m/v1/orders", faultIn<OrdersResponse>},
    {"", "m/v1/orders", faultIn<OrderResponse>},
});

Fault faultIn(std::string_view method, std::string_view url, const std::string& text) {
  const std::size_t start = url.find("m/v1/");
  if (start == std::string_view::npos) return std::nullopt;
  const auto reader = std::ranges::find_if(kReaders, [&](const Reader& candidate) {
    return url.substr(start).starts_with(candidate.path) &&
           (candidate.method.empty() || candidate.method == method);
  });
  return reader == kReaders.end() ? std::nullopt : reader->fault(text);
}

class NotingSession : public platform::URLSession {
 public:
  explicit NotingSession(std::shared_ptr<platform::URLSession> base) : base_(std::move(base)) {}

  void startDataTask(platform::URLRequest request, Completion completion) override {
    const std::string method = request.method, url = request.url.text;
    base_->startDataTask(std::move(request), [method, url, completion = std::move(completion)](
                                                 auto data, auto response, auto error) {
      const bool isAnswer = data && !error && response && response->statusCode / 100 == 2;
      const Fault fault = isAnswer ? faultIn(method, url, *data) : std::nullopt;
      if (fault) lastFault().set(fault->what());
      completion(std::move(data), std::move(response), std::move(error));
    });
  }

 private:
  const std::shared_ptr<platform::URLSession> base_;
};

}  // namespace

std::shared_ptr<platform::URLSession> notingUnreadable(std::shared_ptr<platform::URLSession> base) {
  return std::make_shared<NotingSession>(std::move(base));
}

std::optional<std::string> lastUnreadableAnswer() { return lastFault().get(); }

}  // namespace ovinta::cli
