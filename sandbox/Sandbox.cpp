#include "sandbox/Sandbox.h"

#include <chrono>
#include <utility>

#include "sandbox/Server.h"
#include "sandbox/domain/SnapshotFile.h"

namespace ovinta::sandbox {
namespace {

platform::Date systemNow() {
  return std::chrono::floor<platform::Date::duration>(std::chrono::system_clock::now());
}

Options completed(Options options) {
  if (!options.now) options.now = systemNow;
  return options;
}

}  // namespace

Sandbox::Sandbox(Options options)
    : host_(options.host),
      seedFile_(options.seedFile),
      server_(std::make_unique<Server>(completed(std::move(options)))) {}

Sandbox::~Sandbox() { stop(); }

std::optional<std::string> Sandbox::start() {
  Service& service = server_->service();
  if (seedFile_) {
    if (auto error = readSnapshotFile(*seedFile_, service.state)) return error;
  }
  service.keepAsStart();
  return server_->start();
}

std::optional<std::string> Sandbox::saveSnapshot(const std::string& path) {
  return writeSnapshotFile(path, server_->service().state);
}

void Sandbox::stop() { server_->stop(); }

int Sandbox::port() const { return server_->port(); }

std::string Sandbox::baseURL() const {
  // The address that stands for all of them is none to connect to.
  const std::string host = host_ == "0.0.0.0" ? "127.0.0.1" : host_;
  return "http://" + host + ":" + std::to_string(port());
}

}  // namespace ovinta::sandbox
