#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>

#include "fuzz/Target.h"
#include "platform/linux/http/CurlTransfer.h"

namespace ovinta::fuzz {
namespace {

using namespace platform;

constexpr std::size_t kLargest = 4096;
/// What a socket surely takes at once.
constexpr std::size_t kLargestAnswer = 65'536;

/// Listens where no other process does, and no port is used up.
class Server {
 public:
  Server() {
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    name_.copy(address.sun_path + 1, sizeof(address.sun_path) - 1);
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name_.size());
    require(bind(listener_, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                listen(listener_, 1) == 0,
            "there are sockets");
  }

  const std::string& name() const { return name_; }

  /// Says the text to whoever has connected, and hangs up; false: there is nobody yet.
  bool say(std::string_view text) {
    const int connection = accept(listener_, nullptr, nullptr);
    if (connection < 0) return false;
    (void)!send(connection, text.data(), text.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    // Still listens, so that the request can be sent.
    shutdown(connection, SHUT_WR);
    if (peer_ >= 0) close(peer_);
    peer_ = connection;
    return true;
  }

 private:
  const std::string name_ = "ovinta-fuzz-" + std::to_string(getpid());
  const int listener_ = socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0);
  int peer_ = -1;
};

CURLcode perform(CURL* handle, std::string_view input) {
  static auto& server = *new Server;
  curl_easy_setopt(handle, CURLOPT_ABSTRACT_UNIX_SOCKET, server.name().c_str());
  const linuxos::CurlMulti multi(curl_multi_init());
  curl_multi_add_handle(multi.get(), handle);
  bool isSaid = false;
  for (int running = 1; running > 0;) {
    curl_multi_perform(multi.get(), &running);
    if (isSaid) {
      curl_multi_poll(multi.get(), nullptr, 0, running > 0 ? 1000 : 0, nullptr);
    } else {
      isSaid = server.say(input);
    }
  }
  int left = 0;
  const CURLMsg* const message = curl_multi_info_read(multi.get(), &left);
  require(message != nullptr, "a transfer tells its result");
  const CURLcode code = message->data.result;
  curl_multi_remove_handle(multi.get(), handle);
  return code;
}

/// What a server sends, to the end of the connection; the same again to whatever it redirects to.
void run(std::string_view input) {
  input = input.substr(0, kLargestAnswer);
  int completions = 0;
  linuxos::CurlTransfer transfer(
      {.url = {"http://127.0.0.1/a"}, .method = "GET", .headers = {{"Accept", "a"}}},
      [&](const auto& data, const auto& response, const auto& error) {
        ++completions;
        require(data.has_value() != error.has_value(), "an answer is whole, or there is an error");
        require(!data || response, "a whole answer has a head");
        require(!data || data->size() <= kLargest, "no answer is larger than allowed");
        if (!response) return;
        require(response->statusCode >= 200, "an interim answer is none");
        for (const HeaderField& field : response->headers) {
          require(!field.name.empty() && response->header(field.name),
                  "every field is found by its name");
          require(field.value.find_first_of("\r\n") == std::string::npos,
                  "a field's value has no line ends");
        }
      });
  const linuxos::CurlTransfer::Options options{
      .caFile = {}, .timeLimit = std::chrono::minutes(1), .sizeLimit = kLargest};
  CURLcode code = CURLE_OK;
  int ways = 0;
  do {
    code = transfer.begin(options, {});
    if (code == CURLE_OK) code = perform(transfer.handle(), input);
    require(++ways <= 11, "redirects come to an end");
  } while (transfer.followsRedirect(code));
  transfer.complete(code);
  require(completions == 1, "a request is completed once");
}

const Target kTarget("heads", run);

}  // namespace
}  // namespace ovinta::fuzz
