#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/location/PositionHub.h"
#include "platform/linux/location/SystemLocationServices.h"
#include "platform/portable/Portable.h"
#include "platform/simulation/time/VirtualTime.h"

namespace ovinta::platform::linuxos {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Notes who asks.
class Provider : public PositionProvider {
 public:
  void findService(std::function<void(bool)> handler) override { handler(isThere); }
  std::shared_ptr<void> watchArrivals(const std::function<void()>& handler) override {
    onArrival = handler;
    const auto token = std::make_shared<int>();
    watch = token;
    return token;
  }
  std::unique_ptr<PositionStream> open(double, PositionHandlers handlers) override {
    streams.push_back(std::move(handlers));
    return std::make_unique<Stream>();
  }

  bool isThere = true;
  std::vector<PositionHandlers> streams;
  std::function<void()> onArrival;
  /// Expires when nobody waits for the service.
  std::weak_ptr<void> watch;

 private:
  class Stream : public PositionStream {
    void setDistanceFilter(double) override {}
  };
};

class PositionHubTest : public testing::Test {
 protected:
  PositionHubTest() { begin(); }

  /// Begins anew as another process does.
  void begin() {
    hub_ = std::make_shared<PositionHub>(provider_, time_.mainQueue(), kept_);
    hub_->onStatusChanged(lifetime_.watch(), [this] { told_.push_back(hub_->status()); });
  }

  std::unique_ptr<PositionStream> open() {
    return hub_->open(10, [this](const Location&) { ++locations_; });
  }
  /// What is told after an answer to the stream that was opened as number `index`.
  std::vector<AuthorizationStatus> answer(std::size_t index, PositionAccess access) {
    told_.clear();
    provider_->streams.at(index).onAccess(access);
    time_.runUntilIdle();
    return told_;
  }
  std::size_t streams() const { return provider_->streams.size(); }

  simulation::VirtualTime time_{Date{}};
  std::shared_ptr<Provider> provider_ = std::make_shared<Provider>();
  std::shared_ptr<SettingsStore> settings_ = portable::makeInMemorySettingsStore();
  KeptAccess kept_{settings_, PositionSource::geoclue};
  std::shared_ptr<PositionHub> hub_;
  portable::Lifetime lifetime_;
  std::vector<AuthorizationStatus> told_;
  int locations_ = 0;
};

TEST_F(PositionHubTest, AGrantThatGetsOutOfReachIsAskedForAgainWhenNobodyFollows) {
  std::size_t count = 0;
  for (const auto& [access, status] :
       {std::pair(PositionAccess::off, 1), {PositionAccess::absent, 0}}) {
    auto stream = open();
    answer(count++, PositionAccess::granted);
    EXPECT_THAT(answer(count - 1, access), ElementsAre(status));
    provider_->onArrival();
    EXPECT_EQ(streams(), count) << "the stream notices it";
    stream = nullptr;
    time_.runUntilIdle();
    EXPECT_FALSE(provider_->watch.expired());
    status == 1 ? hub_->askAgain() : provider_->onArrival();
    ASSERT_EQ(streams(), ++count);
    EXPECT_THAT(answer(count - 1, PositionAccess::granted), ElementsAre(4));
    EXPECT_TRUE(provider_->watch.expired()) << "nothing is left to wake for";
    hub_->askAgain();
    EXPECT_EQ(streams(), count) << "answered";
  }
}

TEST_F(PositionHubTest, TheAnswerToTheProcessBeforeHoldsUntilThereIsAnother) {
  for (const auto& [access, status] : {std::pair(PositionAccess::off, 1),
                                       {PositionAccess::denied, 2},
                                       {PositionAccess::grantedAlways, 3},
                                       {PositionAccess::granted, 4}}) {
    SCOPED_TRACE(status);
    auto stream = open();
    EXPECT_THAT(answer(streams() - 1, access), ElementsAre(status));
    begin();
    EXPECT_EQ(hub_->status(), status);
    EXPECT_FALSE(KeptAccess(settings_, PositionSource::portal).load()) << "it was not asked";
    stream = open();
    for (const auto same : {PositionAccess::undecided, access}) {
      EXPECT_TRUE(hub_->isOfOld());
      EXPECT_THAT(answer(streams() - 1, same), IsEmpty());
    }
    EXPECT_FALSE(hub_->isOfOld());
    begin();
    provider_->isThere = status % 2 == 0;
    EXPECT_EQ(SystemLocationServices(hub_, nullptr).authorizationStatus(), status);
    time_.runUntilIdle();
    EXPECT_EQ(hub_->status(), provider_->isThere ? status : 0);
    stream = open();
    answer(streams() - 1, PositionAccess::absent);
    EXPECT_EQ(hub_->status(), 0) << "the service is gone";
    begin();
    EXPECT_EQ(hub_->status(), 0);
  }
}

TEST_F(PositionHubTest, AQuestionThatWasLeftToAStreamIsAskedWhenThatCloses) {
  hub_->askPermission();
  answer(0, PositionAccess::off);
  auto stream = open();
  provider_->onArrival();
  stream = nullptr;
  time_.runUntilIdle();
  ASSERT_EQ(streams(), 3U);
  EXPECT_THAT(answer(2, PositionAccess::granted), ElementsAre(4));
}

TEST_F(PositionHubTest, AGrantHoldsForStreamsThatWereRefusedBefore) {
  const auto refused = open(), off = open(), undecided = open();
  answer(0, PositionAccess::off);
  EXPECT_THAT(answer(0, PositionAccess::denied), ElementsAre(2));
  answer(1, PositionAccess::off);
  answer(2, PositionAccess::undecided);
  hub_->askPermission();
  EXPECT_THAT(answer(3, PositionAccess::granted), ElementsAre(4));
  ASSERT_EQ(streams(), 5U) << "the refused one asks anew";
  provider_->streams[4].onLocation({});
  EXPECT_EQ(locations_, 1);
  EXPECT_THAT(answer(4, PositionAccess::denied), ElementsAre(2));
  EXPECT_EQ(streams(), 5U);
}

TEST_F(PositionHubTest, AQuestionWaitsForItsOwnAnswer) {
  const auto stream = open();
  answer(0, PositionAccess::off);
  hub_->askPermission();
  for (const auto access : {PositionAccess::off, PositionAccess::denied}) answer(0, access);
  EXPECT_THAT(answer(1, PositionAccess::granted), ElementsAre(4));
}

}  // namespace
}  // namespace ovinta::platform::linuxos
