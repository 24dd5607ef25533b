#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "OvintaSDK/OvintaSDK.h"
#include "cli/client/Activity.h"
#include "cli/client/ClientOptions.h"
#include "cli/client/Output.h"
#include "cli/client/Waiting.h"

namespace ovinta::cli {

/// What an operation has reported when all its work is done.
struct Outcome {
  bool reported = false;
  /// The last result; absent for none.
  std::optional<Result> result = {};
  /// The first error, or null.
  ErrorPtr error = {};
};

/// Reports the end of an operation without a result: the sentence, or the error where there is one.
inline void reportDone(const std::function<void(std::optional<Result>, ErrorPtr)>& report,
                       const ErrorPtr& error, const std::string& sentence) {
  report(error ? std::nullopt : std::optional(done(sentence)), error);
}

/// The library on the real platform, configured for one command. Used on the main thread.
class Client {
 public:
  /// Receives the result, absent for none, and the error, or null; on any thread, any number of
  /// times.
  using Report = std::function<void(std::optional<Result>, ErrorPtr)>;

  /// Throws `std::runtime_error` where nothing can be kept. With a simulated location the device
  /// may be followed, but never moves.
  explicit Client(const ClientOptions& options, bool simulatesLocation = false);

  const Output& output() const { return output_; }

  /// Has `observer` called after each answer of the service, on the network's thread.
  void onAnswer(std::function<void()> observer) { *answered_ = std::move(observer); }

  /// Tells on the terminal how far the operation under way has come. May be called from any thread.
  void showProgress(std::string text);

  /// Runs an operation to its end, that of all work it has started included.
  Outcome await(const std::function<void(Report)>& start);

  /// Prints what an operation has reported. `reasonForSilence` says in words why that may be
  /// nothing.
  ExitCode report(const Outcome& outcome, std::string_view reasonForSilence) const;

  /// Runs an operation to its end and prints what it has reported.
  ExitCode perform(const std::function<void(Report)>& start, std::string_view reasonForSilence) {
    return report(await(start), reasonForSilence);
  }

 private:
  void setWaiting(std::unique_ptr<Waiting> waiting);

  Output output_;
  std::mutex waitingMutex_;
  /// Null while no operation is under way; used under the mutex.
  std::unique_ptr<Waiting> waiting_;
  std::shared_ptr<Activity> activity_ = std::make_shared<Activity>();
  std::shared_ptr<std::function<void()>> answered_ = std::make_shared<std::function<void()>>();
};

}  // namespace ovinta::cli
