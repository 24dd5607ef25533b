#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <future>
#include <vector>

#include "tests/sandbox/SandboxFixture.h"

namespace ovinta::sandbox {
namespace {

using std::chrono::milliseconds;

/// What comes back for a request over a bare socket.
struct WireReply {
  std::string body = {};
  /// What the head says of the body; empty without one.
  std::string length = {};
  bool isReset = false;
};

WireReply askForConfiguration(int port) {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address);
  const std::string_view request = "GET /m/v1/app HTTP/1.1\r\nApp-Version: 1\r\n\r\n";
  ::send(socket, request.data(), request.size(), MSG_NOSIGNAL);
  std::string bytes;
  std::array<char, 4096> buffer{};
  ssize_t count = 0;
  while ((count = ::recv(socket, buffer.data(), buffer.size(), 0)) > 0) {
    bytes.append(buffer.data(), static_cast<std::size_t>(count));
  }
  WireReply reply{.isReset = count < 0 && errno == ECONNRESET};
  ::close(socket);
  constexpr std::string_view kLength = "Content-Length: ";
  if (const auto start = bytes.find(kLength); start != std::string::npos) {
    const auto value = start + kLength.size();
    reply.length = bytes.substr(value, bytes.find('\r', value) - value);
    reply.body = bytes.substr(bytes.find("\r\n\r\n") + 4);
  }
  return reply;
}

class FaultTest : public SandboxTest {
 protected:
  FaultTest() : SandboxTest({.pause = [this](milliseconds time) { pauses.push_back(time); }}) {}

  static std::string errors(const Reply& reply) { return platform::writeJSON(reply.errors); }
  static std::string list(const Reply& reply) { return platform::writeJSON(reply.data); }

  std::vector<milliseconds> pauses;
};

TEST_F(FaultTest, StrikesOneEndpointAsOftenAsItWasTold) {
  Speaker app(sandbox);
  app.becomeCustomer();
  const auto set = [&](const char* endpoint, const char* fault) {
    return app.send("PUT", std::string("/sandbox/faults/") + endpoint, fault).status;
  };
  EXPECT_EQ(set("PUT/m/v1/orders/{code}", R"({"fault":"status","status":503,"body":"no"})"), 200);
  EXPECT_EQ(set("GET/m/v1/orders", R"({"fault":"gone"})"), 200);
  EXPECT_EQ(set("GET/m/v1/orders", R"({"fault":"gone","count":2})"), 200);
  EXPECT_EQ(app.send("GET", "/m/v1/orders").status, 410);
  EXPECT_EQ(list(app.send("GET", "/sandbox/faults")),
            R"([{"count":1,"fault":"gone","method":"GET","path":"/m/v1/orders"},)"
            R"({"body":"no","fault":"status","method":"PUT","path":"/m/v1/orders/{code}",)"
            R"("status":503}])");
  EXPECT_EQ(app.send("GET", "/m/v1/orders").status, 410);
  EXPECT_EQ(app.send("GET", "/m/v1/orders").status, 200);
  EXPECT_EQ(app.createOrder().status, 200);
  for (const char* code : {"ABCDEF", "GHIJKL"}) {
    EXPECT_EQ(app.send("PUT", std::string("/m/v1/orders/") + code, "{}").status, 503);
  }
  set("GET/m/v1/app", R"({"fault":"gone"})");
  EXPECT_EQ(app.send("DELETE", "/sandbox/faults/PUT/m/v1/orders/ABCDEF").list().size(), 1U);
  EXPECT_EQ(app.send("PUT", "/m/v1/orders/ABCDEF", "{}").status, 404);
  EXPECT_EQ(app.send("GET", "/m/v1/app").status, 410);
  EXPECT_EQ(list(app.send("DELETE", "/sandbox/faults")), "[]");
  EXPECT_EQ(app.send("GET", "/m/v1/app").status, 200);
}

TEST_F(FaultTest, RefusesWhatItDoesNotUnderstand) {
  Speaker app(sandbox);
  const std::pair<const char*, const char*> cases[] = {
      {R"({})", R"({"fault":["Fault is missing"]})"},
      {R"({"fault":"earthquake","count":0})",
       R"({"count":["Count must be an integer above 0"],"fault":["Fault is unknown"]})"},
      {R"({"fault":"gone","status":410})", R"({"status":["status is no setting of this fault"]})"},
      {R"({"fault":"status","status":199,"content_type":"a\nb"})",
       R"({"content_type":["Content type must be one line of text and not empty"],)"
       R"("status":["Status must be an integer from 200 to 599"]})"},
      {R"({"fault":"delay"})", R"({"seconds":["Seconds is missing"]})"},
      {R"({"fault":"delay","seconds":3601})",
       R"({"seconds":["Seconds must be a number from 0 to 3600"]})"},
      {R"({"fault":"oversize_body","length":0})",
       R"({"length":["Length must be an integer above 0"]})"},
  };
  for (const auto& [record, complaints] : cases) {
    const Reply reply = app.send("PUT", "/sandbox/faults/GET/m/v1/app", record);
    EXPECT_EQ(reply.status, 422) << record;
    EXPECT_EQ(errors(reply), complaints) << record;
  }
  for (const char* endpoint : {"GET/sandbox/faults", "PATCH/m/v1/app", "GET/m/v1/nothing"}) {
    const std::string path = std::string("/sandbox/faults/") + endpoint;
    EXPECT_EQ(app.send("PUT", path, R"({"fault":"gone"})").status, 404) << endpoint;
    EXPECT_EQ(app.send("DELETE", path).status, 404) << endpoint;
  }
  EXPECT_EQ(list(app.send("GET", "/sandbox/faults")), "[]");
}

TEST_F(FaultTest, DoesTheWorkUnlessTheFaultTakesItsPlace) {
  Speaker app(sandbox);
  app.becomeCustomer();
  const std::pair<const char*, bool> cases[] = {{R"("status","status":500)", false},
                                                {R"("delay","seconds":0.25)", true},
                                                {R"("cut_short")", true},
                                                {R"("reset")", false},
                                                {R"("reset_in_body")", true},
                                                {R"("wrong_types")", true},
                                                {R"("oversize_body","length":9)", false}};
  std::size_t orders = 0;
  for (const auto& [fault, works] : cases) {
    app.send("PUT", "/sandbox/faults/POST/m/v1/orders",
             std::string(R"({"count":1,"fault":)") + fault + "}");
    app.createOrder();
    orders += works ? 1 : 0;
    EXPECT_EQ(app.send("GET", "/m/v1/orders").list().size(), orders) << fault;
  }
  EXPECT_EQ(pauses, std::vector{milliseconds(250)});
}

TEST_F(FaultTest, SpoilsTheTransmission) {
  const std::string body = askForConfiguration(sandbox.port()).body;
  const std::string length = std::to_string(body.size());
  const std::string half = body.substr(0, body.size() / 2);
  const struct {
    const char* fault;
    std::string body;
    std::string length;
    bool isReset = false;
  } cases[] = {{R"("cut_short")", half, length},
               {R"("reset")", "", "", true},
               {R"("reset_in_body")", half, length, true},
               {R"("wrong_content_length")", body, std::to_string(half.size())},
               {R"("oversize_body","length":99999)", std::string(99999, ' '), "99999"}};
  Speaker app(sandbox);
  for (const auto& test : cases) {
    SCOPED_TRACE(test.fault);
    app.send("PUT", "/sandbox/faults/GET/m/v1/app", std::string(R"({"fault":)") + test.fault + "}");
    const WireReply reply = askForConfiguration(sandbox.port());
    EXPECT_EQ(reply.body, test.body);
    EXPECT_EQ(reply.length, test.length);
    EXPECT_EQ(reply.isReset, test.isReset);
  }
}

TEST_F(FaultTest, ARedirectionToTheSameUrlKeepsItsOrigin) {
  Speaker app(sandbox);
  const std::string path = "//m/v1/customer/password";
  app.send("PUT", "/sandbox/faults/POST" + path, R"({"fault":"redirect_same_origin"})");
  const Reply reply = app.send("POST", path);
  EXPECT_EQ(reply.headers.find("Location")->second, sandbox.baseURL() + path);
}

TEST_F(FaultTest, LeavesTheTesterThreads) {
  Speaker app(sandbox);
  app.send("PUT", "/sandbox/faults/GET/m/v1/app", R"({"fault":"never_answers"})");
  std::vector<std::future<int>> answers;
  for (int i = 0; i < 40; ++i) {
    answers.push_back(std::async(std::launch::async, [port = sandbox.port()] {
      const auto result = httplib::Client("127.0.0.1", port).Get("/m/v1/app");
      return result ? result->status : 0;
    }));
  }
  for (int i = 0; i < 9999 && app.send("GET", "/sandbox/requests").list().size() < 40; ++i) {
  }
  sandbox.stop();
  EXPECT_EQ(std::ranges::count_if(answers, [](auto& answer) { return answer.get() == 503; }), 16);
}

TEST_F(FaultTest, SilenceEndsWithTheClient) {
  Speaker app(sandbox);
  app.send("PUT", "/sandbox/faults/GET/m/v1/app", R"({"fault":"never_answers"})");
  // More than can wait at the same time.
  for (int i = 0; i < 50; ++i) {
    httplib::Client client("127.0.0.1", sandbox.port());
    client.set_read_timeout(0, 1);
    EXPECT_EQ(client.Get("/m/v1/app").error(), httplib::Error::Read);
    EXPECT_EQ(app.send("GET", "/sandbox/faults").status, 200);
  }
}

class WaitingTest : public SandboxTest {};

TEST_F(WaitingTest, EndsWithTheService) {
  Speaker app(sandbox);
  app.send("PUT", "/sandbox/faults/GET/m/v1/app", R"({"fault":"never_answers","count":1})");
  app.send("PUT", "/sandbox/faults/GET/m/v1/orders",
           R"({"fault":"delay","seconds":3600,"count":1})");
  std::vector<std::future<bool>> answered;
  for (const char* path : {"/m/v1/app", "/m/v1/orders"}) {
    answered.push_back(std::async(std::launch::async, [port = sandbox.port(), path] {
      return httplib::Client("127.0.0.1", port).Get(path).error() == httplib::Error::Success;
    }));
  }
  // A fault that has struck as often as it was told is no longer listed.
  while (!app.send("GET", "/sandbox/faults").list().empty()) {
  }
  sandbox.stop();
  EXPECT_FALSE(answered[0].get());
  EXPECT_FALSE(answered[1].get());
}

}  // namespace
}  // namespace ovinta::sandbox
