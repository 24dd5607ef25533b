#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "platform/OperationQueue.h"

namespace ovinta::test {

class FunctionOperation : public platform::Operation {
 public:
  explicit FunctionOperation(std::function<void()> function) : function_(std::move(function)) {}
  void main() override { function_(); }

 private:
  std::function<void()> function_;
};

inline std::shared_ptr<platform::Operation> operation(std::function<void()> function) {
  return std::make_shared<FunctionOperation>(std::move(function));
}

}  // namespace ovinta::test
