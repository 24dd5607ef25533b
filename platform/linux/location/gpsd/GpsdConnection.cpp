#include "platform/linux/location/gpsd/GpsdConnection.h"

#include <glib-unix.h>
#include <netdb.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/types.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <string_view>
#include <utility>

namespace ovinta::platform::linuxos {
namespace {

/// Has gpsd tell of everything, in lines of JSON.
constexpr std::string_view kWatch = "?WATCH={\"enable\":true,\"json\":true};\n";

/// No line of gpsd's is nearly as long.
constexpr std::size_t kLongestLine = std::size_t{64} << 10;

/// How long one address of a host may take. Whoever drops a stream meanwhile waits for it.
constexpr timeval kPatience{.tv_sec = 5, .tv_usec = 0};

/// A socket that is connected to one of the host's addresses; -1 when none takes it.
int connectTo(const std::string& host, const std::string& port) {
  addrinfo wanted{};
  wanted.ai_socktype = SOCK_STREAM;
  addrinfo* addresses = nullptr;
  if (getaddrinfo(host.c_str(), port.c_str(), &wanted, &addresses) != 0) return -1;
  int connected = -1;
  for (const auto* each = addresses; each && connected < 0; each = each->ai_next) {
    const int made = socket(each->ai_family, each->ai_socktype | SOCK_CLOEXEC, each->ai_protocol);
    if (made < 0) continue;
    // It limits `connect`, too.
    setsockopt(made, SOL_SOCKET, SO_SNDTIMEO, &kPatience, sizeof kPatience);
    if (connect(made, each->ai_addr, each->ai_addrlen) == 0) {
      connected = made;
    } else {
      ::close(made);
    }
  }
  freeaddrinfo(addresses);
  return connected;
}

}  // namespace

struct GpsdConnection::Session {
  ~Session() {
    if (source) {
      g_source_destroy(source);
      g_source_unref(source);
    }
    if (socket >= 0) ::close(socket);
  }

  int socket = -1;
  /// The source that watches the socket; null until that is open.
  GSource* source = nullptr;
  /// What came since the last whole line.
  std::string received = {};
};

GpsdConnection::GpsdConnection(Handlers handlers) : handlers_(std::move(handlers)) {}

GpsdConnection::~GpsdConnection() = default;

bool GpsdConnection::open(const std::string& host, const std::string& port) {
  session_ = std::make_unique<Session>();
  const int socket = session_->socket = connectTo(host, port);
  const bool isWatching = socket >= 0 && send(socket, kWatch.data(), kWatch.size(), MSG_NOSIGNAL) ==
                                             static_cast<ssize_t>(kWatch.size());
  if (!isWatching) {
    close();
    return false;
  }
  session_->source =
      g_unix_fd_source_new(socket, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR));
  g_source_set_callback(session_->source,
                        G_SOURCE_FUNC(+[](int, GIOCondition, gpointer self) -> gboolean {
                          static_cast<GpsdConnection*>(self)->readSome();
                          return G_SOURCE_CONTINUE;
                        }),
                        this, nullptr);
  g_source_attach(session_->source, g_main_context_get_thread_default());
  return true;
}

void GpsdConnection::close() { session_ = nullptr; }

void GpsdConnection::readSome() {
  std::array<char, 4096> piece;
  const auto count = recv(session_->socket, piece.data(), piece.size(), MSG_DONTWAIT);
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
  std::string& received = session_->received;
  if (count > 0) received.append(piece.data(), static_cast<std::size_t>(count));
  std::size_t begin = 0;
  for (auto end = received.find('\n'); end != std::string::npos; end = received.find('\n', begin)) {
    tell(readGpsdLine(std::string_view(received).substr(begin, end - begin)));
    begin = end + 1;
  }
  received.erase(0, begin);
  if (count > 0 && received.size() <= kLongestLine) return;
  close();
  handlers_.onEnd();
}

void GpsdConnection::tell(const GpsdReport& report) {
  if (report.version) handlers_.onVersion(*report.version);
  if (report.location) handlers_.onLocation(*report.location);
}

}  // namespace ovinta::platform::linuxos
