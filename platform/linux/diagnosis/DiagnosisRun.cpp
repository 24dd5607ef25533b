#include "platform/linux/diagnosis/DiagnosisRun.h"

#include <iterator>
#include <utility>

#include "platform/linux/diagnosis/Checks.h"

namespace ovinta::platform::linuxos {
namespace {

/// All checks, in the order in which their findings are told.
constexpr struct {
  const char* subject;
  void (*begin)(const Surroundings&, Check&);
} kChecks[] = {
    {"system bus", &checkSystemBus},
    {"session bus", &checkSessionBus},
    {"position", &checkPosition},
    {"Bluetooth", &checkBluetooth},
    {"notifications", &checkNotifications},
    {"notification agent", &checkNotifyAgent},
    {"battery", &checkBattery},
    {"data directory", &checkDataDirectory},
};

}  // namespace

DiagnosisRun::DiagnosisRun(Surroundings surroundings, Completion completion)
    : surroundings_(std::move(surroundings)), completion_(std::move(completion)) {}

void DiagnosisRun::begin() {
  surroundings_.mainQueue->asyncAfter(kDiagnosisLimit,
                                      [self = shared_from_this()] { self->finish(); });
  underWay_ = std::size(kChecks);
  for (const auto& [subject, begin] : kChecks) {
    begin(surroundings_, checks_.emplace_back(subject, [this] { noteEnd(); }));
  }
}

void DiagnosisRun::noteEnd() {
  // The end is told later, because what the checks keep may have to return from its handlers first.
  if (--underWay_ > 0) return;
  surroundings_.mainQueue->async([self = shared_from_this()] { self->finish(); });
}

void DiagnosisRun::finish() {
  const auto completion = std::exchange(completion_, nullptr);
  if (!completion) return;
  std::vector<Finding> findings;
  for (Check& check : checks_) {
    auto found = check.findings();
    std::ranges::move(found, std::back_inserter(findings));
  }
  checks_.clear();
  surroundings_ = {};
  completion(findings);
}

}  // namespace ovinta::platform::linuxos
