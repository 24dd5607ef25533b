// Whom the session believes to be the server.
#include <gtest/gtest.h>
#include <httplib.h>

#include <atomic>
#include <optional>

#include "tests/platform/linux/CurlURLSessionFixture.h"
#include "tests/support/Certificate.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta::platform::linuxos {
namespace {

/// A server with such a certificate.
class CurlURLSessionTLS : public CurlURLSessionFixture {
 protected:
  CurlURLSessionTLS() {
    server_.emplace(certificate_.file.c_str(), certificate_.keyFile.c_str());
    server_->Get("/", [this](const httplib::Request&, httplib::Response& response) {
      ++requests_;
      response.set_content("proven", "text/plain");
    });
    port_ = server_->bind_to_any_port("127.0.0.1");
    thread_ = std::thread([this] { server_->listen_after_bind(); });
  }

  ~CurlURLSessionTLS() override {
    session_.reset();
    server_->stop();
    thread_.join();
  }

  Outcome getFrom(const std::string& host) {
    return get("https://" + host + ":" + std::to_string(port_) + "/");
  }

  test::TemporaryDirectory directory_;
  const test::Certificate certificate_{directory_.path()};
  std::optional<httplib::SSLServer> server_;
  std::atomic<int> requests_ = 0;
  int port_ = 0;
  std::thread thread_;
};

TEST_F(CurlURLSessionTLS, BelievesCertificatesOfTheRightHostByATrustedAuthorityOnly) {
  const std::string kNotSecure = "A secure connection to the server could not be made.";
  EXPECT_EQ(getFrom("127.0.0.1").sentence(), kNotSecure);
  restart({.caFile = certificate_.file});
  EXPECT_EQ(getFrom("localhost").sentence(), kNotSecure);
  EXPECT_EQ(requests_, 0);
  EXPECT_EQ(getFrom("127.0.0.1").data, "proven");
  restart({.caFile = directory_.path() / "missing.pem"});
  EXPECT_EQ(getFrom("127.0.0.1").sentence(), kNotSecure);
}

}  // namespace
}  // namespace ovinta::platform::linuxos
