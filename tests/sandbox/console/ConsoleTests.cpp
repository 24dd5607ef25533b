// The page for people in a real browser, while the command drives orders as an app does.
#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <sstream>
#include <vector>

#include "tests/cli/Shell.h"
#include "tests/sandbox/RawClient.h"
#include "tests/sandbox/SandboxFixture.h"
#include "tests/sandbox/console/Browser.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta::sandbox {
namespace {

using test::Browser;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// One browser for all tests: it takes longer to start than they take.
class ConsoleTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    if (Browser::whyNot().empty()) browser_ = std::make_unique<Browser>();
  }
  static void TearDownTestSuite() { browser_.reset(); }

  void SetUp() override {
    if (const auto reason = Browser::whyNot(); !reason.empty()) GTEST_SKIP() << reason;
    start(0);
    openPage();
  }

  /// Has the page gone before its service, and what it said of its own end with it.
  void TearDown() override {
    if (!browser_) return;
    browser_->open("about:blank");
    browser_->complaints();
  }

  void start(int port) {
    sandbox_ = std::make_unique<Sandbox>(Options{.port = port});
    ASSERT_EQ(sandbox_->start(), std::nullopt);
  }

  void openPage() {
    browser_->open(sandbox_->baseURL());
    browser_->await(kIsLive);
  }

  /// Runs a command of the app's, and expects it to succeed.
  void runApp(const std::string& command) {
    const auto result =
        test::shell("$ovinta " + command + " --data-dir " + directory_.path().string() +
                    " --base-url " + sandbox_->baseURL());
    EXPECT_EQ(result.exitCode, 0) << result.output;
  }

  /// Has the app create order 1001 with a push token, and waits until the page shows it.
  void createOrder() {
    runApp("orders create --site 42 --partner-id A-1 --name Alex --push-token phone");
    browser_->await("document.querySelector('[data-order=\"1001\"]')");
  }

  std::string contentOf(const std::string& selector) {
    return browser_->text("return document.querySelector('" + selector + "').textContent");
  }

  void awaitText(const std::string& selector, const std::string& text) {
    browser_->await("document.querySelector('" + selector + "').textContent.includes('" + text +
                    "')");
  }

  /// Puts a value in place of a field's, as if it had been typed or chosen.
  void fill(const std::string& selector, const std::string& value) {
    browser_->run("const field = document.querySelector('" + selector + "'); field.value = '" +
                  value +
                  "'; for (const type of ['input', 'change'])"
                  " field.dispatchEvent(new Event(type, {bubbles: true}));");
  }

  static constexpr const char* kIsLive = "document.getElementById('link').textContent === 'Live'";

  inline static std::unique_ptr<Browser> browser_;
  std::unique_ptr<Sandbox> sandbox_;
  const test::TemporaryDirectory directory_;
};

TEST_F(ConsoleTest, AnOrderMovesOnTheMapAndWithClicks) {
  createOrder();
  browser_->click("[data-order='1001'] summary");
  browser_->click("[aria-label='Order 1001: ready']");
  awaitText("[data-order=\"1001\"] .state", "ready");
  awaitText("#push-list", "\"order_state\": \"ready\"");
  browser_->click("[aria-label='Order 1001: eta']");
  awaitText("[data-order=\"1001\"]", "expected in 300 s");
  runApp("track --pace 0");
  browser_->await("document.querySelector('.trail').points.length > 5");
  browser_->await("document.querySelectorAll('.fence').length > 0");
  browser_->await("Number(document.querySelector('.accuracy').getAttribute('r')) > 0");
  awaitText("#map-facts", "Distance");
  awaitText("[data-order=\"1001\"] ol", "location update by the customer at 40.7");
  awaitText("[data-order=\"1001\"] ol", "state change by the merchant: ready");
  awaitText("#request-rows", "POST /m/v1/events");
  browser_->await("Number(document.getElementById('request-count').textContent) > 5");
  browser_->click("[aria-label='Order 1001: cancelled']");
  awaitText("[data-order=\"1001\"] .state", "cancelled");
  browser_->click("[aria-label='Order 1001: ready']");
  awaitText("#notice", "State is final");
  // What the page asks by itself leaves what was told to people.
  Speaker(*sandbox_).send("PUT", "/sandbox/faults/GET/m/v1/app", R"({"fault":"gone"})");
  awaitText("#fault-list", "gone");
  EXPECT_EQ(contentOf("#notice"), "State is final");
  EXPECT_THAT(browser_->complaints(), HasSubstr("409"));
}

TEST_F(ConsoleTest, RequestsShowHeadersAndBodiesWithoutTokens) {
  createOrder();
  runApp("orders fetch --token T");
  awaitText("#request-rows", "GET /m/v1/orders");
  fill("#request-filter", "post /m/v1/orders");
  awaitText("#request-count", "1 of ");
  browser_->click("#request-rows tr:not([hidden]) button");
  browser_->await("document.querySelector('[data-detail] .curl')");
  const std::string detail = contentOf("[data-detail]");
  EXPECT_THAT(detail, HasSubstr("Authorization: ••••••"));
  EXPECT_THAT(detail, HasSubstr("\"push_token\": \"••••••\""));
  EXPECT_THAT(detail, HasSubstr("curl -X POST"));
  EXPECT_THAT(detail, Not(HasSubstr("\"phone\"")));
  browser_->command("Browser.grantPermissions",
                    {{"permissions", List{"clipboardReadWrite", "clipboardSanitizedWrite"}}});
  browser_->click("[data-detail] p button");
  awaitText("[data-detail] [role=status]", "Copied");
  browser_->run("Object.defineProperty(navigator, 'clipboard', {value: undefined})");
  browser_->click("[data-detail] p button");
  awaitText("[data-detail] [role=status]", "Selected");
  EXPECT_THAT(browser_->text("return String(getSelection())"), HasSubstr("curl -X POST"));
  browser_->click("#show-tokens");
  awaitText("[data-detail] .curl", "\"push_token\":\"phone\"");
  EXPECT_THAT(contentOf("[data-detail]"), HasSubstr("Token token="));
  fill("#request-filter", "");
  browser_->click("#request-clear");
  browser_->await("document.getElementById('request-rows').rows.length === 0");
}

TEST_F(ConsoleTest, TokensAreMaskedInAnyTextAndAllElseIsAsItCame) {
  browser_->run(R"(window.show = async text => {
    const {prettyBody, maskedJSON} = await import('/sandbox/console/dom.js');
    window.shown = prettyBody(text).replace(/\s+/g, '') + ' ' + maskedJSON(text);
  })");
  const auto shown = [&](const std::string& text) {
    browser_->run("window.shown = ''; show(" + platform::writeJSON(text) + ")");
    browser_->await("window.shown");
    return browser_->text("return window.shown");
  };
  const std::string whole = R"({"a":[12345678901234567890,{}],"push_token":"••••••","b":"token"})";
  EXPECT_EQ(shown(R"({"a":[12345678901234567890,{}],"push_token":"x\"y","b":"token"})"),
            whole + " " + whole);
  EXPECT_EQ(shown(R"({"push\u005ftoken":"secret"})"),
            R"({"push\u005ftoken":"••••••"} {"push\u005ftoken":"••••••"})");
  for (const char* cut : {R"(["\"",{"api_token":"x\"y)", R"(["\"",{"api_token":"x\)"}) {
    EXPECT_EQ(shown(cut), R"(["\"",{"api_token":"••••••" ["\"",{"api_token":"••••••")");
  }
  EXPECT_EQ(shown("no JSON"), "noJSON no JSON");
}

TEST_F(ConsoleTest, AReloadKeepsWhatPeopleOpenedTypedAndMoved) {
  createOrder();
  runApp("track --pace 0");
  browser_->click("[data-order='1001'] summary");
  browser_->click("#request-rows button");
  browser_->await("document.querySelector('[data-detail]')");
  fill("[name=minutes]", "17");
  browser_->click("#map svg");
  browser_->type("#map svg", "\uE014\uE014");
  browser_->run("document.querySelector('#request-rows button').focus()");
  const auto kept = [&] {
    return browser_->text(
        "return [document.querySelector('#map svg').getAttribute('viewBox'),"
        " document.querySelector('.trail').points.length,"
        " document.querySelector('[name=minutes]').value, document.activeElement.textContent,"
        " document.querySelector('[data-detail]').textContent,"
        " document.querySelector('[data-order=\"1001\"] ol').textContent].join('|')");
  };
  const std::string before = kept();
  // A page that comes to the front again connects anew, which begins with a "reload".
  browser_->run(R"(document.getElementById('no-orders').hidden = false;
      document.dispatchEvent(new Event('visibilitychange'));)");
  browser_->await("document.getElementById('no-orders').hidden");
  browser_->await(kIsLive);
  EXPECT_EQ(kept(), before);
  browser_->click("#request-clear");
  browser_->await("document.getElementById('request-rows').rows.length === 0");
  EXPECT_THAT(browser_->complaints(), IsEmpty());
}

TEST_F(ConsoleTest, EventsThatComeWhileTheirListIsAskedForAreShownOnce) {
  createOrder();
  browser_->run(R"(const real = fetch, released = new Promise(go => { window.release = go; });
    window.held = 0;
    window.fetch = async (path, options) => {
      const answer = await real(path, options);
      if (String(path).endsWith('/events')) { ++window.held; await released; }
      return answer;
    };)");
  browser_->click("[data-order='1001'] summary");
  fill("#map-order", "1001");
  browser_->await("window.held >= 2");
  runApp("track --pace 0");
  awaitText("#map-facts", "Distance");
  Speaker(*sandbox_).send("POST", "/sandbox/orders/1001/ready");
  awaitText("[data-order=\"1001\"] .state", "ready");
  EXPECT_EQ(contentOf("[data-order=\"1001\"] ol"), "");
  browser_->run("window.release()");
  awaitText("[data-order=\"1001\"] ol", "by the merchant: ready");
  browser_->await("document.querySelector('.trail').points.length > 5");
  const auto events = Speaker(*sandbox_).send("GET", "/sandbox/orders/1001/events").list();
  EXPECT_EQ(browser_->run("return document.querySelectorAll('[data-order=\"1001\"] li').length"),
            Value(static_cast<int>(events.size())));
}

TEST_F(ConsoleTest, FaultsAreSetMetAndClearedByClick) {
  createOrder();
  fill("#fault-endpoint", "GET/m/v1/orders");
  fill("#fault-kind", "status");
  browser_->type("#fault-settings [name=status]", "503");
  browser_->type("#fault-settings [name=every]", "2");
  browser_->click("#fault-form button");
  awaitText("#fault-list", "GET /m/v1/orders: status, every 2, status 503");
  Speaker app(*sandbox_);
  app.becomeCustomer();
  for (const int status : {200, 503, 200, 503}) {
    EXPECT_EQ(app.send("GET", "/m/v1/orders").status, status);
  }
  awaitText("#request-rows", "503");
  browser_->click("#fault-list button");
  browser_->await("!document.getElementById('no-faults').hidden");
  EXPECT_EQ(app.send("GET", "/m/v1/orders").status, 200);
  EXPECT_THAT(app.send("GET", "/sandbox/faults").list(), IsEmpty());

  fill("#fault-endpoint", "ANY/ANY");
  fill("#fault-kind", "reset");
  awaitText("#fault-endpoint", "all endpoints");
  awaitText("#fault-settings", "Sets in after seconds");
  awaitText("#fault-settings", "Lasts for seconds");
  browser_->type("#fault-settings [name=after]", "0");
  browser_->type("#fault-settings [name=for]", "3600");
  browser_->click("#fault-form button");
  awaitText("#fault-list", "all endpoints: reset, ");
  EXPECT_EQ(app.send("GET", "/m/v1/orders").status, 0);
}

TEST_F(ConsoleTest, PushesAreSentAndEverythingIsKeptAndPutBack) {
  createOrder();
  browser_->await("document.querySelector('#push-order option[value=\"1001\"]')");
  fill("#push-order", "1001");
  browser_->click("#push-form button");
  awaitText("#push-list", "to ••••••, waits for a listener");
  const auto snapshot = httplib::Client("127.0.0.1", sandbox_->port()).Get("/sandbox/snapshot");
  const std::string file = directory_.path() / "snapshot.json";
  std::ofstream(file) << snapshot->body;
  browser_->click("#reset");
  browser_->await("document.getElementById('order-list').children.length === 0");
  browser_->type("#snapshot-file", file);
  browser_->click("#seed");
  browser_->await("document.querySelector('[data-order=\"1001\"]')");
  fill("#offer [name=partner_identifier]", "B-2");
  browser_->click("#offer button");
  browser_->await("document.querySelector('[data-order=\"1002\"]')");
  browser_->click("#reset");
  browser_->await("document.getElementById('order-list').children.length === 1");
  // The present state becomes the start, and nothing else changes.
  browser_->click("[aria-label='Order 1001: ready']");
  awaitText("[data-order=\"1001\"] .state", "ready");
  browser_->click("#seed-now");
  browser_->await("performance.getEntriesByName(location.origin + '/sandbox/seed').length === 2");
  awaitText("#push-list", "\"order_state\": \"ready\"");
  browser_->click("[aria-label='Order 1001: delayed']");
  awaitText("[data-order=\"1001\"] .state", "delayed");
  browser_->click("#reset");
  awaitText("[data-order=\"1001\"] .state", "ready");
  EXPECT_THAT(browser_->complaints(), IsEmpty());
}

TEST_F(ConsoleTest, ComesBackWhenTooManyWaitedAndAfterARestart) {
  // One without the stream of the page that is open.
  browser_->open("about:blank");
  start(0);
  {
    std::vector<RawClient> streams;
    for (int count = 0; count < 24; ++count) {
      streams.emplace_back(sandbox_->port())
          .send("GET /sandbox/events HTTP/1.1\r\nHost: localhost\r\n\r\n");
      ASSERT_TRUE(streams.back().isAnswered(std::chrono::seconds(90)));
    }
    browser_->open(sandbox_->baseURL());
    browser_->await("document.getElementById('link').textContent.startsWith('Connection lost')");
  }
  browser_->await(kIsLive);
  const int port = sandbox_->port();
  sandbox_.reset();
  browser_->await("document.getElementById('link').textContent.startsWith('Connection lost')");
  start(port);
  browser_->await(kIsLive);
  createOrder();
  std::istringstream lines(browser_->complaints());
  for (std::string line; std::getline(lines, line);) {
    EXPECT_THAT(line, HasSubstr("/sandbox/"));
    EXPECT_THAT(line, HasSubstr("Failed to load resource"));
  }
}

TEST_F(ConsoleTest, WhatClientsSendIsTextAndNothingComesFromOutside) {
  Speaker app(*sandbox_);
  app.becomeCustomer();
  const std::string hostile = "<img src=x onerror=document.title=1><script>document.title=2";
  app.send("POST", "/m/v1/orders",
           R"({"site_id":42,"partner_identifier":"A","push_token":"<b>","customer_name":")" +
               hostile + "\"}");
  app.send("POST", "/sandbox/orders/1001/ready");
  app.send("GET", "/m/v1/sites?q=%3Cimg%20src=x%3E<b>");
  awaitText("#order-list", hostile);
  awaitText("#request-rows", "<b>");
  browser_->click("#request-rows button");
  browser_->await("document.querySelector('[data-detail]')");
  browser_->click("#show-tokens");
  awaitText("#push-list", "<b>");
  EXPECT_EQ(browser_->text("return document.title"), "Ovinta sandbox");
  EXPECT_EQ(
      browser_->run("return document.querySelectorAll('main img, main script, main b').length"),
      Value(0));
  EXPECT_EQ(browser_->run("return performance.getEntriesByType('resource').filter("
                          "entry => new URL(entry.name).origin !== location.origin).length"),
            Value(0));
  EXPECT_THAT(browser_->complaints(), IsEmpty());
  const auto page = httplib::Client("127.0.0.1", sandbox_->port()).Get("/sandbox/");
  const std::string policy = page->get_header_value("Content-Security-Policy");
  EXPECT_THAT(policy, HasSubstr("default-src 'none'; script-src 'self'; style-src 'self'"));
  EXPECT_THAT(policy, Not(HasSubstr("unsafe")));
}

TEST_F(ConsoleTest, IsForEveryScreenAndForKeysAndReaders) {
  createOrder();
  runApp("track --pace 0");
  for (const int width : {400, 1600}) {
    for (const char* scheme : {"light", "dark"}) {
      SCOPED_TRACE(std::to_string(width) + " " + scheme);
      browser_->command(
          "Emulation.setDeviceMetricsOverride",
          {{"width", width}, {"height", 900}, {"deviceScaleFactor", 1}, {"mobile", false}});
      browser_->command(
          "Emulation.setEmulatedMedia",
          {{"features", List{Dictionary{{"name", "prefers-color-scheme"}, {"value", scheme}}}}});
      EXPECT_EQ(browser_->run("return document.documentElement.scrollWidth <= innerWidth"),
                Value(true));
      const std::string ground =
          browser_->text("return getComputedStyle(document.body).backgroundColor");
      EXPECT_EQ(ground, scheme == std::string("dark") ? "rgb(20, 23, 26)" : "rgb(255, 255, 255)");
      if (const char* directory = std::getenv("OVINTA_PICTURES")) {
        browser_->takePicture(std::string(directory) + "/console-" + std::to_string(width) + "-" +
                              scheme + ".png.base64");
      }
    }
  }
  browser_->command("Emulation.clearDeviceMetricsOverride", {});
  EXPECT_EQ(
      browser_->text(R"(return [...document.querySelectorAll('button, input, select, textarea')]
      .filter(field => !(field.labels?.length || field.ariaLabel || field.textContent.trim()))
      .map(field => field.outerHTML).join())"),
      "");
  EXPECT_EQ(browser_->text(R"(return [...document.querySelectorAll('section')].filter(
      part => !document.getElementById(part.getAttribute('aria-labelledby')))
      .map(part => part.id).join())"),
            "");
  // The rules of the package axe-core, where OVINTA_AXE is the path of its axe.min.js.
  if (const char* axe = std::getenv("OVINTA_AXE")) {
    std::ifstream file(axe);
    browser_->run(std::string(std::istreambuf_iterator<char>(file), {}));
    browser_->run(
        "axe.run().then(({violations}) => { window.found = violations.map(({id}) => id); })");
    browser_->await("window.found");
    EXPECT_EQ(browser_->text("return window.found.join()"), "");
  } else {
    std::cout << "left out: the rules of axe-core, for its axe.min.js was not found\n";
  }
  browser_->type("body", "\uE004");
  EXPECT_EQ(browser_->text("return document.activeElement.className"), "skip");
  browser_->type(".skip", "\uE007");
  EXPECT_EQ(browser_->text("return document.activeElement.id"), "orders");
  browser_->run("document.querySelector('#map svg').focus()");
  browser_->type("#map svg", "\uE014");
  EXPECT_EQ(browser_->text("return document.getElementById('map-follow').ariaPressed"), "false");
}

}  // namespace
}  // namespace ovinta::sandbox
