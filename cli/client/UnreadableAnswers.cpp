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

/// Who reads what the service answers; an empty method stands for all, and a path with a slash at
/// its end for all below it.
constexpr auto kReaders = std::to_array<Reader>({
    {"GET", "m/v1/app", faultInConfiguration},
    {"", "m/v1/customer", faultInData<Customer>},
    {"POST", "m/v1/customer/sign_in", faultInData<Customer>},
    {"POST", "m/v1/customer/sign_up", faultInData<Customer>},
    // The request for a token is answered with no record.
    {"PATCH", "m/v1/customer/password", faultInData<Customer>},
    {"GET", "m/v1/sites", faultInSites},
    {"GET", "m/v1/orders", faultIn<OrdersResponse>},
    {"POST", "m/v1/orders", faultIn<OrderResponse>},
    {"", "m/v1/orders/", faultIn<OrderResponse>},
});

bool reads(const Reader& reader, std::string_view method, std::string_view path) {
  const bool isPath =
      reader.path.ends_with('/') ? path.starts_with(reader.path) : path == reader.path;
  return isPath && (reader.method.empty() || reader.method == method);
}

/// Null where nothing is read of the answer.
const Reader* readerOf(std::string_view method, std::string_view url) {
  const std::string_view place = url.substr(0, url.find_first_of("?#"));
  const std::size_t start = place.find("m/v1/");
  if (start == std::string_view::npos) return nullptr;
  const auto reader = std::ranges::find_if(kReaders, [&](const Reader& candidate) {
    return reads(candidate, method, place.substr(start));
  });
  return reader == kReaders.end() ? nullptr : &*reader;
}

/// Notes what is wrong with an answer, or that nothing is.
void note(const Reader& reader, const std::string& text) {
  const Fault fault = reader.fault(text);
  lastFault().set(fault ? std::optional<std::string>(fault->what()) : std::nullopt);
}

class NotingSession : public platform::URLSession {
 public:
  explicit NotingSession(std::shared_ptr<platform::URLSession> base) : base_(std::move(base)) {}

  void startDataTask(platform::URLRequest request, Completion completion) override {
    const std::string method = request.method, url = request.url.text;
    base_->startDataTask(std::move(request), [method, url, completion = std::move(completion)](
                                                 auto data, auto response, auto error) {
      const bool isAnswer = data && !error && response && response->statusCode / 100 == 2;
      const Reader* const reader = isAnswer ? readerOf(method, url) : nullptr;
      if (reader) note(*reader, *data);
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
