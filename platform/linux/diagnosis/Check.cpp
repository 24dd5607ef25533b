#include "platform/linux/diagnosis/Check.h"

#include "platform/linux/dbus/BusDaemon.h"

namespace ovinta::platform::linuxos {

Check::Check(std::string subject, std::function<void()> onEnd)
    : subject_(std::move(subject)), onEnd_(std::move(onEnd)) {}

void Check::add(Finding finding) {
  if (finding.subject.empty()) finding.subject = subject_;
  findings_.push_back(std::move(finding));
}

void Check::end() {
  ifSilent_.clear();
  onEnd_();
}

void Check::end(Finding last) {
  add(std::move(last));
  end();
}

std::vector<Finding> Check::findings() {
  for (Finding& finding : std::exchange(ifSilent_, {})) add(std::move(finding));
  return std::move(findings_);
}

void Check::seekBus(const std::shared_ptr<dbus::Bus>& bus, std::function<void()> next) {
  keep(std::make_shared<dbus::BusDaemon>(bus))
      .reach([this, next = std::move(next)](const std::optional<dbus::Failure>& failure) {
        if (!failure) return next();
        end({.condition = Condition::missing,
             .detail = "its bus cannot be reached",
             .advice = "See to the bus first."});
      });
}

void Check::seekService(const std::shared_ptr<dbus::Bus>& bus, std::string name, Finding ifAbsent,
                        std::function<void(dbus::Service&)> next) {
  auto& service = keep(std::make_shared<dbus::Service>(bus, std::move(name)));
  seekBus(bus, [this, &service, ifAbsent = std::move(ifAbsent), next = std::move(next)] {
    service.find([this, &service, ifAbsent, next](bool isThere) {
      if (isThere) return next(service);
      end(ifAbsent);
    });
  });
}

}  // namespace ovinta::platform::linuxos
