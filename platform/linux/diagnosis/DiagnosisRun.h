#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <list>
#include <memory>
#include <vector>

#include "platform/linux/diagnosis/Check.h"
#include "platform/linux/diagnosis/Surroundings.h"

namespace ovinta::platform::linuxos {

/// How long a diagnosis may take: less than any single call may, so that the end of the time is
/// always told in the same way.
inline constexpr std::chrono::seconds kDiagnosisLimit{4};

/// Runs all checks at once, until the last one has ended or the time is over. Main thread only.
class DiagnosisRun : public std::enable_shared_from_this<DiagnosisRun> {
 public:
  using Completion = std::function<void(const std::vector<Finding>&)>;

  DiagnosisRun(Surroundings surroundings, Completion completion);

  /// Begins all checks. The run keeps itself alive until its time is over.
  void begin();

 private:
  void noteEnd();
  void finish();

  Surroundings surroundings_;
  Completion completion_;
  std::size_t underWay_ = 0;
  std::list<Check> checks_;
};

}  // namespace ovinta::platform::linuxos
