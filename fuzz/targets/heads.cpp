#include <sys/socket.h>
#include <unistd.h>

#include <array>

#include "fuzz/Target.h"
#include "platform/linux/CurlTransfer.h"

namespace ovinta::fuzz {
namespace {

using namespace platform;

constexpr std::size_t kLargestBody = 4096;
/// What a socket surely takes at once.
constexpr std::size_t kLargestAnswer = 65'536;

/// One end of a connection on which the peer has said the input and hung up.
curl_socket_t connectionThatSays(std::string_view input) {
  std::array<int, 2> ends{};
  require(socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) == 0, "there are sockets");
  require(send(ends[1], input.data(), input.size(), MSG_NOSIGNAL) == std::ssize(input),
          "the whole input goes in");
  // The peer still listens, so that the request can be sent.
  shutdown(ends[1], SHUT_WR);
  static int peer = -1;
  if (peer >= 0) close(peer);
  peer = ends[1];
  return ends[0];
}

curl_socket_t open(void* input, curlsocktype, curl_sockaddr*) {
  return connectionThatSays(*static_cast<std::string_view*>(input));
}

int sayConnected(void*, curl_socket_t, curlsocktype) { return CURL_SOCKOPT_ALREADY_CONNECTED; }

CURLcode perform(CURL* handle, std::string_view& input) {
  curl_easy_setopt(handle, CURLOPT_OPENSOCKETFUNCTION, &open);
  curl_easy_setopt(handle, CURLOPT_OPENSOCKETDATA, &input);
  curl_easy_setopt(handle, CURLOPT_SOCKOPTFUNCTION, &sayConnected);
  return curl_easy_perform(handle);
}

/// What a server sends, to the end of the connection; the same again to whatever it redirects to.
void run(std::string_view input) {
  input = input.substr(0, kLargestAnswer);
  int completions = 0;
  linux::CurlTransfer transfer(
      {.url = {"http://127.0.0.1/a"}, .method = "GET", .headers = {{"Accept", "a"}}},
      [&](const auto& data, const auto& response, const auto& error) {
        ++completions;
        require(data.has_value() != error.has_value(), "an answer is whole, or there is an error");
        require(!data || response, "a whole answer has a head");
        require(!data || data->size() <= kLargestBody, "no answer is larger than allowed");
        if (!response) return;
        require(response->statusCode >= 200, "an interim answer is none");
        for (const HeaderField& field : response->headers) {
          require(!field.name.empty() && response->header(field.name),
                  "every field is found by its name");
          require(field.value.find_first_of("\r\n") == std::string::npos,
                  "a field's value has no line ends");
        }
      });
  const linux::CurlTransfer::Setting setting{.caFile = {}, .maximumBodySize = kLargestBody};
  CURLcode code = CURLE_OK;
  int ways = 0;
  do {
    code = transfer.begin(setting, {});
    if (code == CURLE_OK) code = perform(transfer.handle(), input);
    require(++ways <= 11, "redirects come to an end");
  } while (transfer.followsRedirect(code));
  transfer.complete(code);
  require(completions == 1, "a request is completed once");
}

const Target kTarget("heads", run);

}  // namespace
}  // namespace ovinta::fuzz
