#pragma once

#include <functional>
#include <string>
#include <utility>

#include "OvintaSDK/api/APIOperation.h"
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

/// An operation that reports a `Result`: an optional or a shared pointer, absent in the callback
/// when the error is present.
template <class Result>
class ResultOperation : public APIOperation {
 public:
  using Callback = std::function<void(Result, ErrorPtr)>;

 protected:
  ResultOperation(std::string apiURL, Callback callback)
      : APIOperation(std::move(apiURL)), callback_(std::move(callback)) {}

  bool hasCallback() const final { return callback_ != nullptr; }
  void report(Result result) { callback_(std::move(result), nullptr); }
  void fail(ErrorPtr error) final { callback_(Result{}, std::move(error)); }

 private:
  Callback callback_;
};

}  // namespace ovinta
