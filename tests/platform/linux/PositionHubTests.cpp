#include "platform/linux/position/PositionHub.h"

#include <gmock/gmock.h>

#include <map>

#include "platform/simulation/VirtualTime.h"

namespace ovinta::platform::linux {
namespace {

using testing::ElementsAre;
using Access = PositionAccess;

/// A service that says what the test wants, to each stream by its distance filter.
class Provider : public PositionProvider {
 public:
  void findService(std::function<void(bool)> handler) override { find = std::move(handler); }
  std::shared_ptr<void> watchArrivals(std::function<void()> handler) override {
    arrive = std::move(handler);
    auto token = std::make_shared<int>();
    watch = token;
    return token;
  }
  std::unique_ptr<PositionStream> open(double distanceFilter, PositionHandlers handlers) override {
    streams[distanceFilter] = std::move(handlers);
    return std::make_unique<Stream>(*this, distanceFilter);
  }
  void say(double distanceFilter, Access access) {
    const auto handler = streams.at(distanceFilter).onAccess;
    handler(access);
  }

  std::function<void(bool)> find;
  std::function<void()> arrive;
  std::weak_ptr<void> watch;
  std::map<double, PositionHandlers> streams;

 private:
  class Stream : public PositionStream {
   public:
    Stream(Provider& provider, double filter) : provider_(provider), filter_(filter) {}
    ~Stream() override { provider_.streams.erase(filter_); }
    void setDistanceFilter(double) override {}

   private:
    Provider& provider_;
    const double filter_;
  };
};

class PositionHubTest : public testing::Test {
 protected:
  static constexpr double kQuestion = 500;

  PositionHubTest() {
    hub_.onStatusChanged(owner_, [this] { statuses_.push_back(hub_.status()); });
  }

  std::unique_ptr<PositionStream> open(double distanceFilter) {
    return hub_.open(distanceFilter, [this](const Location&) { ++locations_; });
  }
  bool isAsking() const { return provider_->streams.contains(kQuestion); }

  simulation::VirtualTime time_{Date{}};
  std::shared_ptr<Provider> provider_ = std::make_shared<Provider>();
  PositionHub hub_{provider_, time_.mainQueue()};
  const std::shared_ptr<int> owner_ = std::make_shared<int>();
  std::vector<AuthorizationStatus> statuses_;
  int locations_ = 0;
};

TEST_F(PositionHubTest, TheStrongestAnswerOfTheStreamsThatAreOpenCounts) {
  auto first = open(1);
  auto second = open(2);
  provider_->say(1, Access::granted);
  for (const Access hiccup : {Access::undecided, Access::absent, Access::denied}) {
    provider_->say(2, hiccup);
    provider_->streams.at(1).onLocation({});
  }
  EXPECT_EQ(locations_, 3);
  EXPECT_THAT(statuses_, ElementsAre(4));
  first = nullptr;
  EXPECT_EQ(hub_.status(), 4) << "never inside a call";
  time_.runUntilIdle();
  second = nullptr;
  time_.runUntilIdle();
  EXPECT_THAT(statuses_, ElementsAre(4, 2)) << "the last answer stands";
}

TEST_F(PositionHubTest, AQuestionEndsWithAnAnswerAndRestsWithoutOne) {
  const struct {
    Access access;
    bool isOpen, isWatching;
  } cases[] = {{Access::undecided, true, true},
               {Access::absent, false, true},
               {Access::off, false, true},
               {Access::denied, false, false},
               {Access::granted, false, false}};
  for (const auto& tested : cases) {
    SCOPED_TRACE(static_cast<int>(tested.access));
    hub_.askPermission();
    hub_.askPermission();
    ASSERT_TRUE(isAsking());
    provider_->say(kQuestion, tested.access);
    EXPECT_EQ(isAsking(), tested.isOpen);
    EXPECT_EQ(!provider_->watch.expired(), tested.isWatching);
    hub_.askAgain();
    EXPECT_EQ(isAsking(), tested.isWatching);
  }
}

TEST_F(PositionHubTest, AServiceThatComesLaterIsNoticedAndAskedWhatRests) {
  hub_.findService();
  provider_->find(false);
  EXPECT_FALSE(hub_.isEnabled());
  provider_->arrive();
  EXPECT_TRUE(hub_.isEnabled());
  EXPECT_TRUE(provider_->watch.expired());
  EXPECT_FALSE(isAsking());

  hub_.askPermission();
  provider_->say(kQuestion, Access::absent);
  EXPECT_FALSE(hub_.isEnabled());
  provider_->arrive();
  ASSERT_TRUE(isAsking());
  provider_->say(kQuestion, Access::grantedAlways);
  EXPECT_THAT(statuses_, ElementsAre(3));
}

}  // namespace
}  // namespace ovinta::platform::linux
