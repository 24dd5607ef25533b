#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "OvintaSDK/api/APIOperation.h"
#include "OvintaSDK/core/LogLine.h"
#include "OvintaSDK/model/wire/RecordCoding.h"
#include "platform/JSON.h"

namespace ovinta {

/// The wire body of a record: {"data": record}. Throws `platform::CodingError`.
template <class Record>
std::string encodeBody(const Record& record) {
  platform::JSONWriter writer;
  writer.beginObject();
  writer.key("data");
  wire::WireForm<Record>::encode(writer, record);
  writer.endObject();
  return writer.take();
}

/// An operation whose success answer is read into a `Result`: an optional or a shared pointer,
/// absent in the callback exactly when the error is present.
template <class Result>
class ResultOperation : public APIOperation {
 public:
  using Callback = std::function<void(Result, ErrorPtr)>;

 protected:
  ResultOperation(std::string apiURL, Callback callback)
      : APIOperation(std::move(apiURL)), callback_(std::move(callback)) {}

  /// Reads the answer. Throws `platform::CodingError`.
  virtual Result decode(const platform::JSONValue& answer) const = 0;
  /// What the log says before the description of an unreadable answer; empty: nothing is logged.
  virtual std::string_view decodingFailureLogLine() const { return {}; }

  bool hasCallback() const final { return callback_ != nullptr; }
  void report(Result result) { callback_(std::move(result), nullptr); }
  void fail(ErrorPtr error) final { callback_(Result{}, std::move(error)); }

  void succeed(const std::string& data) override {
    Result result{};
    try {
      const auto document = platform::JSONDocument::parse(data);
      if (!document) {
        throw platform::CodingError(platform::CodingError::Kind::dataCorrupted,
                                    "The given data was not valid JSON.");
      }
      result = decode(document->root());
    } catch (const platform::CodingError& error) {
      if (const std::string_view line = decodingFailureLogLine(); !line.empty()) {
        logLine(std::string(line) + error.what() + ".");
      }
      return fail(std::make_shared<OvintaErrorInvalidResponse>(*this));
    }
    report(std::move(result));
  }

 private:
  Callback callback_;
};

/// The record under the key "data" of an answer. Throws `platform::CodingError`.
template <class Record>
Record decodeData(const platform::JSONValue& answer) {
  return wire::Slots<wire::Envelope<Record>>(answer)
      .template assemble<wire::Envelope<Record>>()
      .data;
}

}  // namespace ovinta
