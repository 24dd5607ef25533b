#pragma once

#include <functional>
#include <utility>

#include "OvintaSDK/api/APIOperation.h"

namespace ovinta {

/// An operation that reports a `Result`: an optional or a shared pointer, absent in the callback
/// when the error is present.
template <class Result>
class ResultOperation : public APIOperation {
 public:
  using Callback = std::function<void(Result, ErrorPtr)>;

 protected:
  ResultOperation(APIClient api, Callback callback)
      : APIOperation(std::move(api)), callback_(std::move(callback)) {}

  bool hasCallback() const final { return callback_ != nullptr; }
  void report(Result result) { callback_(std::move(result), nullptr); }
  void fail(ErrorPtr error) final { callback_(Result{}, std::move(error)); }

 private:
  Callback callback_;
};

}  // namespace ovinta
