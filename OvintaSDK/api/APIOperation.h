#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OvintaSDK/api/APIClient.h"
#include "OvintaSDK/api/ErrorContext.h"
#include "OvintaSDK/api/HTTPStatusCode.h"
#include "OvintaSDK/api/OvintaError.h"
#include "OvintaSDK/model/wire/RecordCoding.h"
#include "platform/JSON.h"
#include "platform/OperationQueue.h"
#include "platform/URLSession.h"

namespace ovinta {

/// What tells one endpoint of the service from another.
struct Endpoint {
  APIPath path;
  std::string_view method = "GET";
  /// The customer's token, where the endpoint needs one; a view of what the operation holds.
  std::optional<std::string_view> token = {};
  std::optional<std::vector<platform::URLQueryItem>> queryItems = {};
  /// The one status that means success.
  HTTPStatusCode success = HTTPStatusCode::ok;
};

/// The frame of every call to the service: builds the request, starts it, and judges the answer.
/// The result is reported at most once, on the callback thread of the URL session (in `main` itself
/// when no request can be built): a success that the session completes without data, which no
/// session does that keeps to its contract, reports nothing. Nothing is retried. Must be held by a
/// shared pointer.
class APIOperation : public platform::Operation,
                     public ErrorContext,
                     public std::enable_shared_from_this<APIOperation> {
 public:
  /// Starts the request and returns; the operation then lives on until the answer is there.
  void main() final;

 protected:
  explicit APIOperation(APIClient api) : api_(std::move(api)) {}

  Context& context() const { return api_.context(); }
  const Dates& dates() const { return context().dates(); }

  /// The body that carries a record: {"data": record}. Throws `platform::CodingError`.
  template <class Record>
  std::string encodeBody(const Record& record) const {
    platform::JSONWriter writer;
    writer.beginObject();
    writer.writtenKey(platform::WrittenKey("data"));
    wire::encode(writer, record, dates());
    writer.endObject();
    return writer.take();
  }

  virtual Endpoint endpoint() const = 0;
  /// The JSON text to send; absent for none. Throws `platform::CodingError`.
  virtual std::optional<std::string> body() const { return std::nullopt; }

  /// Whether there is anybody to report to; if not, the answer is dropped.
  virtual bool hasCallback() const = 0;
  /// Takes the body of a success answer.
  virtual void succeed(std::string data) = 0;
  virtual void fail(ErrorPtr error) = 0;
  /// Takes an answer of another status than the one for success.
  virtual void refuse(const std::optional<platform::HTTPResponse>& response,
                      const std::optional<std::string>& data);

 private:
  void complete(HTTPStatusCode success, std::optional<std::string> data,
                const std::optional<platform::HTTPResponse>& response,
                const std::optional<platform::TransportError>& error);

  const APIClient api_;
};

}  // namespace ovinta
