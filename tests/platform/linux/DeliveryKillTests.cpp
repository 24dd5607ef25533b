// A process that ends at each of its writes and sends, and the one that comes after it.
#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <unistd.h>

#include <condition_variable>
#include <map>
#include <mutex>
#include <set>
#include <sstream>

#include "platform/linux/storage/SQLiteOutbox.h"
#include "tests/platform/portable/delivery/DeliveryWorld.h"
#include "tests/support/Command.h"
#include "tests/support/LocalServer.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta::platform::test {
namespace {

using ovinta::test::CommandResult;
using ovinta::test::httpAnswer;
using ovinta::test::LocalServer;
using ovinta::test::ReceivedRequest;
using ovinta::test::ServerConnection;

constexpr int kKilled = 77;
constexpr int kMadeBefore = 8;
constexpr int kMadeAfter = 4;

/// A service that is in trouble with three of four events when it gets them first.
class TroubledService {
 public:
  std::string url() const { return server_.url(""); }

  /// Waits until all that clients which are gone have sent was taken in.
  void settle() {
    // Clients are let in one by one, so that this one comes after them.
    const int client = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(server_.port());
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ASSERT_EQ(connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    shutdown(client, SHUT_WR);
    char byte = 0;
    while (recv(client, &byte, 1, 0) > 0) {
    }
    close(client);
    std::unique_lock lock(mutex_);
    allEnded_.wait(lock, [this] { return ended_ == server_.connectionCount(); });
  }

  EventService events;

 private:
  void serve(ServerConnection& client) {
    while (const auto request = client.readRequest()) {
      const std::string answer = answerTo(*request);
      if (answer.empty() || !client.send(answer)) break;
    }
    const std::lock_guard lock(mutex_);
    ++ended_;
    allEnded_.notify_all();
  }

  /// What goes back; nothing where the connection is lost.
  std::string answerTo(const ReceivedRequest& received) {
    const std::lock_guard lock(mutex_);
    const URLRequest request{.url = {}, .headers = received.headers, .body = received.body};
    const auto key = HTTPResponse{200, received.headers}.header("Idempotency-Key").value();
    const bool isNew = tried_.insert(key).second;
    const auto trouble = isNew ? tried_.size() % 4 : 0;
    if (trouble == 1) return "";
    if (trouble == 2) return httpAnswer("503 Service Unavailable");
    events.takeIn(request);
    return trouble == 3 ? "" : httpAnswer("200 OK", "{}");
  }

  std::mutex mutex_;
  std::condition_variable allEnded_;
  std::set<std::string> tried_;
  std::size_t ended_ = 0;
  LocalServer server_{[this](ServerConnection& client) { serve(client); }};
};

class DeliveryKillTest : public testing::TestWithParam<const char*> {
 protected:
  /// Runs the device in both processes, of which the first ends at the call of that number; false
  /// when it has not so many.
  bool runUntil(int number) {
    TroubledService service;
    const ovinta::test::TemporaryDirectory directory;
    const auto run = [&](const char* moment, int first, int count) {
      const auto result = ovinta::test::runCommand(
          {OVINTA_KILL_HELPER, service.url(), directory.path().string(), moment,
           std::to_string(number), std::to_string(first), std::to_string(count)});
      service.settle();
      return result;
    };
    const CommandResult killed = run(GetParam(), 1, kMadeBefore);
    if (killed.exitCode == 0) return false;
    EXPECT_EQ(killed.exitCode, kKilled) << killed.output;
    for (const std::string& line : killed.lines()) {
      if (line.starts_with("ended at ")) ++points_[line.substr(9)];
    }
    const CommandResult next = run("never", kMadeBefore + 1, kMadeAfter);
    EXPECT_EQ(next.exitCode, 0) << next.output;
    EXPECT_THAT(next.output, testing::HasSubstr("+ waiting 0 +"));
    EXPECT_THAT(next.output, testing::HasSubstr("+ dropped 0\n"));
    checkEffects(service.events, killed.output + next.output);
    linuxos::SQLiteOutbox outbox(directory.path() / linuxos::kOutboxFile,
                                 std::make_shared<simulation::RecordingLog>());
    EXPECT_TRUE(outbox.load().value().empty());
    return true;
  }

  /// What was handed over has had its effect once and in order, save positions with a newer one.
  static void checkEffects(const EventService& events, const std::string& output) {
    EXPECT_FALSE(events.hasEmptyField) << "a request without its tokens";
    std::map<std::int64_t, std::int64_t> last;
    std::set<std::int64_t> learned;
    for (const auto& [orderID, sequence] : events.effects) {
      EXPECT_LT(std::exchange(last[orderID], sequence), sequence) << "order " << orderID;
      learned.insert(sequence);
    }
    std::istringstream words(output);
    for (std::string word; words >> word;) {
      int sequence = 0;
      if (word != "made" || !(words >> sequence) || words.peek() != '\n') continue;
      const bool isStep = sequence / 2 % 2 == 0;
      EXPECT_TRUE(learned.contains(sequence) || (!isStep && last[sequence % 2 + 1] > sequence))
          << "event " << sequence;
    }
  }

  std::map<std::string, int> points_;
};

TEST_P(DeliveryKillTest, NothingIsLostOrDoneTwice) {
  int points = 0;
  while (!HasFailure()) {
    SCOPED_TRACE("point " + std::to_string(points + 1));
    if (!runUntil(points + 1)) break;
    ++points;
  }
  EXPECT_GT(points, 50);
  for (const auto& [call, count] : points_) RecordProperty(call, count);
  EXPECT_GT(points_["pwrite"], 10);
  EXPECT_GT(points_["send"], 10);
  std::cout << points << " points\n";
}

INSTANTIATE_TEST_SUITE_P(Moments, DeliveryKillTest, testing::Values("before", "half", "after"),
                         [](const auto& test) { return test.param; });

}  // namespace
}  // namespace ovinta::platform::test
