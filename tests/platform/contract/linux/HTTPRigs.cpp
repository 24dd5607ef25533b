// libcurl, with a service on this machine.
#include "platform/linux/http/CurlURLSession.h"
#include "tests/platform/contract/URLSessionContract.h"
#include "tests/support/LocalServer.h"
#include "tests/support/ScopedVariable.h"

namespace ovinta::platform::contract {
namespace {

/// For any session that speaks HTTP.
struct ServedRig : testing::Test {
  std::string url(std::string_view path) const { return server_.url(path); }
  void work() {}

  void play(test::ServerConnection& connection) {
    while (auto received = connection.readRequest()) {
      auto& [method, target, headers, body] = *received;
      const auto [data, response, error] = service_->answer({{url(target)}, method, headers, body});
      // Whoever gets no data finds the connection closed.
      if (!response) return;
      std::string head = "HTTP/1.1 " + std::to_string(response->statusCode) + " Status\r\n";
      for (const auto& [name, value] : response->headers) head += name + ": " + value + "\r\n";
      const auto size = data ? data->size() : 1;
      connection.send(head + "Content-Length: " + std::to_string(size) + "\r\n\r\n" +
                      data.value_or(""));
      if (!data) return;
    }
  }

  const std::shared_ptr<Service> service_ = std::make_shared<Service>();
  test::LocalServer server_{[this](auto& connection) { play(connection); }};
};

struct CurlRig : ServedRig {
  const test::ScopedVariable withoutProxy_{"no_proxy", "*"};
  std::shared_ptr<URLSession> session_ = std::make_shared<linuxos::CurlURLSession>();
};
INSTANTIATE_TYPED_TEST_SUITE_P(Curl, URLSessionContract, CurlRig);

}  // namespace
}  // namespace ovinta::platform::contract
