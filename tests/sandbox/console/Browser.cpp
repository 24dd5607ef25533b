#include "tests/sandbox/console/Browser.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <utility>

#include "platform/JSON.h"

namespace ovinta::test {
namespace {

using platform::Dictionary;
using platform::List;
using platform::Value;

constexpr const char* kDriver = "/usr/bin/chromedriver";
constexpr const char* kBrowser = "/usr/bin/chromium";
/// How long a page may take to become what it is to become.
constexpr int kPatienceInSeconds = 90;

/// Starts the driver on a port that is free, and answers it with the port.
std::pair<pid_t, int> startDriver() {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
  std::string program = kDriver;
  std::string port = "--port=0";
  std::array<char*, 3> arguments = {program.data(), port.data(), nullptr};
  pid_t driver = 0;
  const int failure = ::posix_spawn(&driver, kDriver, &actions, nullptr, arguments.data(), environ);
  ::posix_spawn_file_actions_destroy(&actions);
  ::close(ends[1]);
  const std::unique_ptr<FILE, int (*)(FILE*)> output(::fdopen(ends[0], "r"), ::fclose);
  if (failure != 0) throw std::runtime_error("chromedriver does not start");
  std::array<char, 500> line{};
  while (std::fgets(line.data(), line.size(), output.get())) {
    const std::string_view said = line.data();
    constexpr std::string_view kWords = "successfully on port ";
    const auto at = said.find(kWords);
    if (at != said.npos) return {driver, std::stoi(line.data() + at + kWords.size())};
  }
  throw std::runtime_error("chromedriver has ended");
}

Dictionary wantedBrowser() {
  List flags{"--headless=new", "--disable-gpu", "--disable-dev-shm-usage", "--no-first-run",
             "--window-size=1600,1000"};
  // The browser's own sandbox takes a user who is not root.
  if (::geteuid() == 0) flags.emplace_back("--no-sandbox");
  return {{"goog:chromeOptions", Dictionary{{"binary", kBrowser}, {"args", std::move(flags)}}},
          {"goog:loggingPrefs", Dictionary{{"browser", "ALL"}}},
          {"timeouts", Dictionary{{"script", kPatienceInSeconds * 1000}}}};
}

}  // namespace

std::string Browser::whyNot() {
  const bool isThere = ::access(kDriver, X_OK) == 0 && ::access(kBrowser, X_OK) == 0;
  return isThere ? "" : "takes the packages chromium and chromium-driver";
}

Browser::Browser() {
  const auto [driver, port] = startDriver();
  driver_ = driver;
  client_ = std::make_unique<httplib::Client>("127.0.0.1", port);
  client_->set_read_timeout(std::chrono::seconds(kPatienceInSeconds + 30));
  const Value made = call("", {{"capabilities", Dictionary{{"alwaysMatch", wantedBrowser()}}}});
  session_ = "/" + *platform::find<std::string>(*made.as<Dictionary>(), "sessionId");
}

Browser::~Browser() {
  client_->Delete("/session" + session_);
  ::kill(driver_, SIGTERM);
  ::waitpid(driver_, nullptr, 0);
}

void Browser::open(const std::string& url) { call("/url", {{"url", url}}); }

Value Browser::run(const std::string& body) {
  return call("/execute/sync", {{"script", body}, {"args", List{}}});
}

std::string Browser::text(const std::string& body) {
  const Value value = run(body);
  const auto* text = value.as<std::string>();
  return text ? *text : "";
}

void Browser::await(const std::string& expression) {
  call("/execute/async",
       {{"script",
         "const done = arguments[0], look = () => { let is = false; try { is = " + expression +
             " } catch {} if (is) done(); else setTimeout(look, 20); }; look();"},
        {"args", List{}}});
}

void Browser::click(const std::string& selector) { call(element(selector) + "/click", {}); }

void Browser::type(const std::string& selector, const std::string& text) {
  call(element(selector) + "/value", {{"text", text}});
}

void Browser::command(const std::string& name, Dictionary parameters) {
  call("/goog/cdp/execute", {{"cmd", name}, {"params", std::move(parameters)}});
}

std::string Browser::complaints() {
  std::string lines;
  const Value log = call("/se/log", {{"type", "browser"}});
  for (const Value& entry : *log.as<List>()) {
    const auto& record = *entry.as<Dictionary>();
    if (*platform::find<std::string>(record, "level") != "SEVERE") continue;
    lines.append(*platform::find<std::string>(record, "message")).append("\n");
  }
  return lines;
}

void Browser::takePicture(const std::string& path) {
  const Value picture = call(
      "/goog/cdp/execute",
      {{"cmd", "Page.captureScreenshot"}, {"params", Dictionary{{"captureBeyondViewport", true}}}});
  std::ofstream(path) << *platform::find<std::string>(*picture.as<Dictionary>(), "data");
}

Value Browser::call(const std::string& path, const Dictionary& body) {
  const auto answer =
      client_->Post("/session" + session_ + path, platform::writeJSON(body), "application/json");
  if (!answer) throw std::runtime_error("chromedriver does not answer");
  if (answer->status != 200) throw std::runtime_error(path + ": " + answer->body.substr(0, 500));
  const auto document = platform::parseJSON(answer->body);
  return document->as<Dictionary>()->find("value")->second;
}

std::string Browser::element(const std::string& selector) {
  const Value found = call("/element", {{"using", "css selector"}, {"value", selector}});
  return "/element/" + *found.as<Dictionary>()->begin()->second.as<std::string>();
}

}  // namespace ovinta::test
