// The library over HTTP/2, spoken by a real server that stands before the sandbox.
#include <gmock/gmock.h>
#include <unistd.h>

#include "OvintaSDK/api/OvintaAPIError.h"
#include "replay/ChildProcess.h"
#include "replay/LineServer.h"
#include "tests/OvintaSDK/service/ServiceFixture.h"
#include "tests/support/Certificate.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta::test {
namespace {

using boost::asio::ip::tcp;

constexpr const char* kServer = "/usr/sbin/apache2";

/// The server takes no port 0. Somebody else may have the port by the time that it is used.
std::string freePort() {
  const tcp::endpoint anyPort(boost::asio::ip::address_v4::loopback(), 0);
  return std::to_string(replay::LineServer<tcp>(anyPort).endpoint().port());
}

class HTTP2Test : public ServiceFixture {
 protected:
  void SetUp() override {
    if (access(kServer, X_OK) != 0) GTEST_SKIP() << "takes the package apache2-bin";
    // Its log begins when it listens.
    for (int attempt = 0; attempt < 5 && !isListening(); ++attempt) {
      baseURL_ = "https://127.0.0.1:" + startServer();
    }
    ASSERT_TRUE(isListening()) << server_->firstLine();
    session = std::make_shared<ObservedURLSession>(certificate_.file);
    restartWith([this](platform::Services& services) { services.urlSession = session; });
  }

  bool isListening() const {
    return server_ && server_->firstLine().find("resuming normal operations") != std::string::npos;
  }

  std::string startServer() {
    const std::string directory = directory_.path();
    const std::string port = freePort();
    std::vector<std::string> lines{"ServerName localhost",
                                   "ServerRoot " + directory,
                                   "DefaultRuntimeDir " + directory,
                                   "PidFile " + directory + "/pid",
                                   "ErrorLog /dev/stdout",
                                   "LogLevel error",
                                   "Listen 127.0.0.1:" + port,
                                   "Protocols h2",
                                   "SSLEngine on",
                                   "SSLCertificateFile " + certificate_.file,
                                   "SSLCertificateKeyFile " + certificate_.keyFile,
                                   "ProxyPass / " + service.baseURL() + "/"};
    if (geteuid() == 0) lines.insert(lines.end(), {"User nobody", "Group nogroup"});
    std::string configuration;
    for (const auto& line : lines) configuration += line + "\n";
    std::vector<std::string> command{kServer, "-D", "FOREGROUND", "-f", directory + "/conf"};
    for (const std::string name :
         {"mpm_event", "authz_core", "ssl", "http2", "proxy", "proxy_http"}) {
      command.insert(
          command.end(),
          {"-C", "LoadModule " + name + "_module /usr/lib/apache2/modules/mod_" + name + ".so"});
    }
    writeFile(directory + "/conf", configuration);
    server_.emplace(command, std::vector<std::string>{}, replay::ChildOutput::firstLine);
    return port;
  }

  Report ask(const std::string& name) {
    const auto reports = start(soundCase(name), baseURL_);
    session->wait();
    return reports->empty() ? Report{} : reports->front();
  }

  TemporaryDirectory directory_;
  const Certificate certificate_{directory_.path()};
  std::string baseURL_;
  std::optional<replay::ChildProcess> server_;
};

TEST_F(HTTP2Test, TheUpgradeLinkComesWithANameInLowerCase) {
  const Report report = ask("GetOrders");
  EXPECT_TRUE(report.hasResult) << (report.error ? report.error->errorDescription() : "silence");

  speaker->send("PUT", "/sandbox/faults/GET/m/v1/orders", R"({"fault":"upgrade_required"})");
  const Report refusal = ask("GetOrders");
  const auto* error = dynamic_cast<const OvintaAPIError*>(refusal.error.get());
  ASSERT_NE(error, nullptr);
  EXPECT_EQ(error->statusCode(), HTTPStatusCode::appUpgradeRequired);
  EXPECT_EQ(error->appUpgradeURL(), platform::URL{"https://example.com/upgrade"});

  const auto& exchange = *session->exchanges().back().as<platform::Dictionary>();
  const auto& answer = *platform::find<platform::Dictionary>(exchange, "answer");
  const auto& headers = *platform::find<platform::Dictionary>(answer, "headers");
  EXPECT_TRUE(headers.contains("app-upgrade-url")) << "no HTTP/2";
}

}  // namespace
}  // namespace ovinta::test
