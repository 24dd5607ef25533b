#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/Linux.h"

namespace ovinta::platform::linuxos {

/// The name that the agent has on the session's bus; the one that starts it.
inline constexpr const char* kAgentBusName = "org.ovinta.NotifyAgent";

/// An application whose notifications the agent fires while it does not run.
struct RegisteredApplication {
  std::string applicationID;
  /// The file of its `NotificationStore`; tells applications apart.
  std::filesystem::path store;
  /// The source from which the application has its position.
  PositionSource positionSource = PositionSource::automatic;

  /// The name that the application has on the session's bus as long as it runs and has something
  /// pending. All begin with `kAgentBusName` and a dot.
  std::string busName() const;

  friend bool operator==(const RegisteredApplication&, const RegisteredApplication&) = default;
};

/// How the agent finds the applications' stores: a directory of the user (mode 0700) with a file
/// for each application (mode 0600), which only that application changes or takes away; what
/// belongs to a store that is gone is passed over. May be used from any thread.
class AgentRegistry {
 public:
  explicit AgentRegistry(std::filesystem::path directory) : directory_(std::move(directory)) {}

  /// The registry of this user; absent for a user without a home.
  static std::optional<AgentRegistry> ofUser();

  /// Adds the application or what has changed of it. Throws `std::system_error`, or `CodingError`
  /// for a path that is not UTF-8.
  void note(const RegisteredApplication& application) const;
  /// Whether the application was added and not taken out since; true, too, when the system does not
  /// tell.
  bool knows(const RegisteredApplication& application) const;
  /// Takes the application out, if it is there.
  void withdraw(const RegisteredApplication& application) const;

  std::vector<RegisteredApplication> applications() const;

 private:
  std::filesystem::path fileOf(const RegisteredApplication& application) const;

  std::filesystem::path directory_;
};

}  // namespace ovinta::platform::linuxos
