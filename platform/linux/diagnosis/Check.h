#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/Diagnosis.h"
#include "platform/linux/dbus/Service.h"

namespace ovinta::platform::linuxos {

/// A part of a diagnosis: what it has found, and what it works with. Main thread only. Handlers of
/// what it keeps may refer to it.
class Check {
 public:
  /// `onEnd` is called at the end of the check, which it may not destroy.
  Check(std::string subject, std::function<void()> onEnd);
  Check(const Check&) = delete;
  Check& operator=(const Check&) = delete;

  /// Adds a finding; one without a subject gets that of the check.
  void add(Finding finding);

  /// Sets what is found should nothing more come, in place of what was expected before.
  void expect(std::vector<Finding> ifSilent) { ifSilent_ = std::move(ifSilent); }

  /// Ends the check, to which nothing more is added; to be called once.
  void end();
  void end(Finding last);

  /// All findings, those that were expected included while there is no end.
  std::vector<Finding> findings();

  /// Keeps the object alive as long as the check.
  template <class T>
  T& keep(std::shared_ptr<T> object) {
    kept_.push_back(object);
    return *object;
  }

  /// Calls `next` when the bus can be reached, and ends the check otherwise.
  void seekBus(const std::shared_ptr<dbus::Bus>& bus, std::function<void()> next);

  /// Calls `next` when the bus has the service, or could start it, and otherwise ends the check
  /// with `ifAbsent`.
  void seekService(const std::shared_ptr<dbus::Bus>& bus, std::string name, Finding ifAbsent,
                   std::function<void(dbus::Service&)> next);

 private:
  const std::string subject_;
  const std::function<void()> onEnd_;
  std::vector<Finding> findings_;
  std::vector<Finding> ifSilent_{
      {.detail = "does not answer", .advice = "Start the service anew."}};
  std::vector<std::shared_ptr<void>> kept_;
};

}  // namespace ovinta::platform::linuxos
