#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>

#include "Date.h"
#include "EnumNames.h"
#include "Export.h"

namespace ovinta::platform {

/// Why an order event was given up. Has a `name`.
enum class DropReason {
  /// The service has answered that it does not take it.
  refused,
  /// It could not be sent, and to send it again would end the same way.
  failed,
  /// It has waited longer than events may.
  tooOld,
  /// More events waited than may.
  tooMany,
  /// The customer who made it has signed out, or another one is signed in.
  signedOut
};

/// The reasons as the log writes them, in the order of their values.
inline constexpr std::array<std::string_view, 5> kDropReasonNames{"refused", "failed", "too old",
                                                                  "too many", "signed out"};
template <>
struct EnumNames<DropReason> : NamesInOrder<kDropReasonNames> {};

/// What has become of the order events of a process, those included that it found waiting when it
/// began. At each instant made = delivered + waiting + superseded + dropped. A plain value.
struct DeliveryAccount {
  /// Events that the library, or an earlier process, has handed over.
  std::uint64_t made = 0;
  /// Those that the service has accepted.
  std::uint64_t delivered = 0;
  /// Those that wait or are under way.
  std::uint64_t waiting = 0;
  /// Positions that were not sent because a newer one of the same order was there.
  std::uint64_t superseded = 0;
  /// Those that were given up, by `DropReason`.
  std::array<std::uint64_t, kDropReasonNames.size()> dropped{};
  /// Why what waits is in memory alone, a sentence without anything of it; absent while it is kept
  /// where it outlives the process.
  std::optional<std::string> storageFailure = {};

  /// All that were given up, for whatever reason.
  std::uint64_t droppedInAll() const {
    return std::accumulate(dropped.begin(), dropped.end(), std::uint64_t{0});
  }
  /// Whether the account adds up, as it always does.
  bool isBalanced() const { return made == delivered + waiting + superseded + droppedInAll(); }

  friend bool operator==(const DeliveryAccount&, const DeliveryAccount&) = default;
};

/// The account in one line, with the reasons that occur, such as "made 4 = delivered 2 + waiting 1
/// + superseded 0 + dropped 1 (refused 1)". May be called from any thread.
OVINTA_EXPORT std::string summary(const DeliveryAccount& account);

/// An order event that the service has accepted, though not at the first try. A plain value.
struct LateDelivery {
  /// The order, and the kind of event, as the service names it.
  std::int64_t orderID = 0;
  std::string eventType;
  /// The time from when it was made until the service accepted it.
  TimeInterval delay{};
};

/// Is told how delivery goes, so that a screen can say so. All methods are called on the main
/// queue; none must throw.
class DeliveryDelegate {
 public:
  virtual ~DeliveryDelegate() = default;

  /// The first request of an outage could not be sent, and waits for the network.
  virtual void deliveryWaitsForNetwork(const DeliveryAccount& /*account*/) {}
  /// An event has arrived late.
  virtual void deliverySentLate(const LateDelivery& /*delivery*/) {}
  /// Nothing of the outage waits any more.
  virtual void deliveryResumed(const DeliveryAccount& /*account*/) {}
};

/// How requests are delivered that could not be sent. A plain value.
struct DeliveryOptions {
  /// How long an order event waits at most, also across processes.
  TimeInterval eventAgeLimit = std::chrono::hours(24);
  /// How long any other request waits at most before its failure is reported.
  TimeInterval requestAgeLimit = std::chrono::minutes(5);
  /// How many order events wait at most, and how many other requests.
  std::size_t eventLimit = 1000;
  std::size_t requestLimit = 100;
  /// The application's token, as `Ovinta::configure` is given it: the events that an earlier
  /// process has left need one. Without it they wait until the first request of this process has
  /// shown it.
  std::optional<std::string> appToken = {};
  /// Who is told. Default: nobody.
  std::shared_ptr<DeliveryDelegate> delegate = {};
};

/// Delivers requests that could not be sent: docs/delivery.md says what is promised.
class Delivery {
 public:
  virtual ~Delivery() = default;

  /// How things stand. May be called from any thread.
  virtual DeliveryAccount account() const = 0;
};

}  // namespace ovinta::platform
