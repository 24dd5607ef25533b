#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "OvintaSDK/api/ResultOperation.h"
#include "OvintaSDK/model/wire/RecordCoding.h"
#include "platform/JSON.h"

namespace ovinta {

/// An operation whose result is read from the body of the success answer.
template <class Result>
class DecodingOperation : public ResultOperation<Result> {
 protected:
  using ResultOperation<Result>::ResultOperation;

  /// Reads the answer. Throws `platform::CodingError`.
  virtual Result decode(const platform::JSONValue& answer) const = 0;
  /// What the log says before the description of an unreadable answer; empty: nothing is logged.
  virtual std::string_view decodingFailureLogLine() const { return {}; }

  void succeed(std::string data) final {
    ErrorPtr failure;
    Result result{};
    try {
      const platform::JSONDocument document = wire::consumeDocument(std::move(data));
      result = decode(document.root());
    } catch (const platform::CodingError& error) {
      if (const std::string_view line = decodingFailureLogLine(); !line.empty()) {
        this->context().log(std::string(line) + error.what() + ".");
      }
      failure = std::make_shared<OvintaErrorInvalidResponse>(*this);
    }
    // The callback is called outside of the catch clause, when the exception is gone.
    if (failure) return this->fail(failure);
    this->report(std::move(result));
  }
};

/// An operation whose result is what the service answers under "data".
template <class Response>
class RecordOperation : public DecodingOperation<decltype(Response::data)> {
 protected:
  using DecodingOperation<decltype(Response::data)>::DecodingOperation;

  decltype(Response::data) decode(const platform::JSONValue& answer) const final {
    return wire::decode<Response>(answer, this->dates()).data;
  }
};

}  // namespace ovinta
