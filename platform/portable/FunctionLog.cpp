#include <mutex>
#include <utility>

#include "platform/portable/Portable.h"

namespace ovinta::platform::portable {
namespace {

class FunctionLog final : public Log {
 public:
  explicit FunctionLog(std::function<void(std::string_view line)> write)
      : write_(std::move(write)) {}

  void write(std::string_view line) override {
    if (!write_) return;
    const std::lock_guard lock(mutex_);
    write_(line);
  }

 private:
  std::mutex mutex_;
  const std::function<void(std::string_view line)> write_;
};

}  // namespace

std::shared_ptr<Log> makeLog(std::function<void(std::string_view line)> write) {
  return std::make_shared<FunctionLog>(std::move(write));
}

}  // namespace ovinta::platform::portable
