#include "platform/linux/main/SystemLog.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <string>

#include "tests/support/TemporaryDirectory.h"

namespace ovinta::platform::linuxos {
namespace {

class SystemLogTest : public testing::Test {
 protected:
  SystemLogTest() { EXPECT_EQ(pipe(pipe_), 0); }
  ~SystemLogTest() override {
    closeReader();
    close(pipe_[1]);
  }
  void closeReader() {
    if (pipe_[0] >= 0) close(std::exchange(pipe_[0], -1));
  }

  int pipe_[2];
};

TEST_F(SystemLogTest, NobodyForgesALineAndNoClosedPipeEndsTheProcess) {
  SystemLog log("test", pipe_[1]);
  log.write("one\ntwo");
  std::string buffer(100, '\0');
  buffer.resize(read(pipe_[0], buffer.data(), buffer.size()));
  EXPECT_EQ(buffer, "one two\n");
  closeReader();
  log.write("into the void");
  sigset_t blocked;
  pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
  EXPECT_EQ(sigismember(&blocked, SIGPIPE), 0);
}

TEST_F(SystemLogTest, WithoutStandardErrorTheJournalServes) {
  const test::TemporaryDirectory directory;
  const auto path = directory.path() / "journal";
  const int journal = socket(AF_UNIX, SOCK_DGRAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.native().copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(journal, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);

  const int nowhere = open("/dev/null", O_WRONLY);
  for (const int descriptor : {nowhere, -1}) {
    SystemLog("application", descriptor, path).write("one\nMESSAGE=two");
    std::string buffer(200, '\0');
    buffer.resize(std::max<ssize_t>(0, recv(journal, buffer.data(), buffer.size(), MSG_DONTWAIT)));
    EXPECT_EQ(buffer, "PRIORITY=6\nSYSLOG_IDENTIFIER=application\nMESSAGE=one MESSAGE=two\n");
  }
  SystemLog("application", nowhere, directory.path() / "none").write("dropped");
  SystemLog("application", pipe_[1], path).write("line");
  char byte = 0;
  EXPECT_EQ(read(pipe_[0], &byte, 1), 1);
  EXPECT_EQ(recv(journal, &byte, 1, MSG_DONTWAIT), -1);
  close(nowhere);
  close(journal);
}

}  // namespace
}  // namespace ovinta::platform::linuxos
