#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/support/Command.h"

namespace ovinta::test {

/// A certificate that vouches for itself, made for 127.0.0.1 only, and its key, as PEM files.
struct Certificate {
  explicit Certificate(const std::filesystem::path& directory)
      : file(directory / "ca.pem"), keyFile(directory / "key.pem") {
    const auto made =
        runCommand({"/usr/bin/openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt",
                    "ec_paramgen_curve:P-256", "-nodes", "-subj", "/CN=Self", "-addext",
                    "subjectAltName=IP:127.0.0.1", "-keyout", keyFile, "-out", file});
    EXPECT_EQ(made.exitCode, 0) << made.output;
  }

  const std::string file;
  const std::string keyFile;
};

}  // namespace ovinta::test
