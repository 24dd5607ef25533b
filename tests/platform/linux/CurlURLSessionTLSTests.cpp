// Whom the session believes to be the server.
#include <gtest/gtest.h>
#include <httplib.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <cstdio>
#include <filesystem>

#include "tests/platform/linux/CurlURLSessionFixture.h"

namespace ovinta::platform::linux {
namespace {

/// A key and a certificate that vouches for itself, made for 127.0.0.1 only.
class SelfSignedIdentity {
 public:
  SelfSignedIdentity()
      : key_(EVP_EC_gen("P-256"), &EVP_PKEY_free), certificate_(X509_new(), &X509_free) {
    X509_set_version(certificate_.get(), 2);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate_.get()), 1);
    X509_gmtime_adj(X509_getm_notBefore(certificate_.get()), -3600);
    X509_gmtime_adj(X509_getm_notAfter(certificate_.get()), 3600);
    X509_NAME* const name = X509_get_subject_name(certificate_.get());
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC,
                               reinterpret_cast<const unsigned char*>("Self"), -1, -1, 0);
    X509_set_issuer_name(certificate_.get(), name);
    X509_set_pubkey(certificate_.get(), key_.get());
    const std::unique_ptr<X509_EXTENSION, decltype(&X509_EXTENSION_free)> names(
        X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, "IP:127.0.0.1"),
        &X509_EXTENSION_free);
    X509_add_ext(certificate_.get(), names.get(), -1);
    X509_sign(certificate_.get(), key_.get(), EVP_sha256());
  }

  EVP_PKEY* key() const { return key_.get(); }
  X509* certificate() const { return certificate_.get(); }

  void writeCertificate(const std::filesystem::path& path) const {
    std::FILE* const file = std::fopen(path.c_str(), "w");
    PEM_write_X509(file, certificate_.get());
    std::fclose(file);
  }

 private:
  std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key_;
  std::unique_ptr<X509, decltype(&X509_free)> certificate_;
};

class CurlURLSessionTLS : public CurlURLSessionFixture {
 protected:
  CurlURLSessionTLS() : server_(identity_.certificate(), identity_.key()) {
    server_.Get("/", [this](const httplib::Request&, httplib::Response& response) {
      ++requests_;
      response.set_content("proven", "text/plain");
    });
    port_ = server_.bind_to_any_port("127.0.0.1");
    thread_ = std::thread([this] { server_.listen_after_bind(); });
    char directory[] = "/tmp/ovinta-tls-XXXXXX";
    directory_ = mkdtemp(directory);
    identity_.writeCertificate(directory_ / "ca.pem");
  }

  ~CurlURLSessionTLS() override {
    session_.reset();
    server_.stop();
    thread_.join();
    std::filesystem::remove_all(directory_);
  }

  Outcome getFrom(const std::string& host) {
    return get("https://" + host + ":" + std::to_string(port_) + "/");
  }

  SelfSignedIdentity identity_;
  httplib::SSLServer server_;
  std::atomic<int> requests_ = 0;
  int port_ = 0;
  std::thread thread_;
  std::filesystem::path directory_;
};

TEST_F(CurlURLSessionTLS, BelievesCertificatesOfTheRightHostByATrustedAuthorityOnly) {
  const std::string kNotSecure = "A secure connection to the server could not be made.";
  EXPECT_EQ(getFrom("127.0.0.1").sentence(), kNotSecure);
  restart({.caFile = directory_ / "ca.pem"});
  EXPECT_EQ(getFrom("localhost").sentence(), kNotSecure);
  EXPECT_EQ(requests_, 0);
  EXPECT_EQ(getFrom("127.0.0.1").data, "proven");
  restart({.caFile = directory_ / "missing.pem"});
  EXPECT_EQ(getFrom("127.0.0.1").sentence(), kNotSecure);
}

}  // namespace
}  // namespace ovinta::platform::linux
