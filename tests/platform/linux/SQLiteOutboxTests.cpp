#include "platform/linux/storage/SQLiteOutbox.h"

#include <SQLiteCpp/Database.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sqlite3.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>

#include "platform/simulation/RecordingLog.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta::platform::linuxos {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

OutboxEntry entry(std::int64_t number) {
  return {
      .number = number,
      .made = Date(std::chrono::seconds(number)),
      .customer = 0xFFFF'FFFFU,
      .request = {.url = {"https://service.test/m/v1/events"},
                  .method = "POST",
                  .headers = {{"Authorization", ""}, {"Accept", "\"quoted\" é"}, {"Accept", ""}},
                  .body = R"({"data":{"order_id":7}})"}};
}

std::vector<OutboxEntry> loaded(const std::unique_ptr<SQLiteOutbox>& outbox) {
  return outbox->load().value();
}

class SQLiteOutboxTest : public testing::Test {
 protected:
  std::unique_ptr<SQLiteOutbox> open() { return std::make_unique<SQLiteOutbox>(file_, log_); }

  test::TemporaryDirectory temporary_;
  const std::filesystem::path file_ = temporary_.path() / "made" / "Outbox.sqlite";
  std::shared_ptr<simulation::RecordingLog> log_ = std::make_shared<simulation::RecordingLog>();
};

TEST_F(SQLiteOutboxTest, KeepsEntriesInAPrivateFileThatIsMadeWhenItIsNeeded) {
  EXPECT_THAT(loaded(open()), IsEmpty());
  EXPECT_FALSE(exists(file_));
  EXPECT_EQ(open()->write({.added = {entry(2), entry(1), entry(3)}}), std::nullopt);
  struct stat status {};
  ASSERT_EQ(stat(file_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600);
  EXPECT_THAT(loaded(open()), ElementsAre(entry(1), entry(2), entry(3)));
  EXPECT_EQ(open()->write({.removed = {2, 9}, .added = {entry(4)}}), std::nullopt);
  EXPECT_THAT(loaded(open()), ElementsAre(entry(1), entry(3), entry(4)));
  EXPECT_THAT(log_->lines(), IsEmpty());
}

TEST_F(SQLiteOutboxTest, SaysWhyAFileCannotBeUsedAndUsesItOnceItCan) {
  const auto outbox = open();
  {
    const auto other = open();
    ASSERT_EQ(other->write({.added = {entry(1)}}), std::nullopt);
    EXPECT_FALSE(outbox->load());
    EXPECT_FALSE(outbox->load()) << "told once";
    EXPECT_EQ(outbox->write({.added = {entry(2)}}), "database is locked");
    EXPECT_THAT(log_->lines(), ElementsAre(HasSubstr("cannot be read: database is locked")));
  }
  EXPECT_EQ(outbox->write({.added = {entry(2)}}), std::nullopt);
  EXPECT_THAT(loaded(outbox), SizeIs(2));
  const auto elsewhere = temporary_.path() / "file";
  std::ofstream(elsewhere) << "no directory";
  SQLiteOutbox unusable(elsewhere / "Outbox.sqlite", log_);
  EXPECT_NE(unusable.write({.added = {entry(1)}}), std::nullopt);
  EXPECT_NE(SQLiteOutbox(std::nullopt, log_).write({.added = {entry(1)}}), std::nullopt);
}

TEST_F(SQLiteOutboxTest, SetsGarbageAsideAndBeginsAnew) {
  create_directories(file_.parent_path());
  std::ofstream(file_) << std::string(5000, 'x');
  {
    const auto outbox = open();
    EXPECT_EQ(outbox->write({.added = {entry(1)}}), "The file was damaged")
        << "what it held is for others to know";
    EXPECT_EQ(outbox->write({.added = {entry(1)}}), std::nullopt);
    EXPECT_THAT(loaded(outbox), ElementsAre(entry(1)));
    EXPECT_THAT(log_->lines(), ElementsAre(HasSubstr("damaged")));
    EXPECT_TRUE(exists(std::filesystem::path(file_).concat(".corrupt-1")));
    EXPECT_EQ(outbox->write({.added = {entry(2)}, .leavesNoTrace = true}), std::nullopt);
    EXPECT_EQ(outbox->write({.removed = {2}, .leavesNoTrace = true}), std::nullopt);
    EXPECT_FALSE(exists(std::filesystem::path(file_).concat(".corrupt-1")));
    EXPECT_EQ(file_size(std::filesystem::path(file_).concat("-wal")), 0U);
  }
  SQLite::Database(file_.string(), SQLite::OPEN_READWRITE)
      .exec(
          "INSERT INTO event VALUES(2, 0, 0, 'no lines'), "
          "(3, 0, 0, 'POST' || char(10) || 'url' || char(10) || 'soon' || char(10))");
  EXPECT_THAT(loaded(open()), ElementsAre(entry(1))) << "what cannot be read is passed over";
}

/// Has one of SQLite's calls of the system fail for as long as this lives.
class FailingCall {
 public:
  FailingCall(const char* name, sqlite3_syscall_ptr failing)
      : name_(name), files_(sqlite3_vfs_find(nullptr)) {
    files_->xSetSystemCall(files_, name_, failing);
  }
  ~FailingCall() { files_->xSetSystemCall(files_, name_, nullptr); }
  FailingCall(const FailingCall&) = delete;
  FailingCall& operator=(const FailingCall&) = delete;

 private:
  const char* const name_;
  sqlite3_vfs* const files_;
};

template <int kError>
ssize_t failToWrite(int, const void*, std::size_t, off_t) {
  errno = kError;
  return -1;
}
int openForReadingOnly(const char* path, int flags, int mode) {
  if ((flags & O_ACCMODE) == O_RDONLY) return open(path, flags, mode);
  errno = EROFS;
  return -1;
}

template <class Function>
sqlite3_syscall_ptr systemCall(Function* function) {
  return reinterpret_cast<sqlite3_syscall_ptr>(function);
}

TEST_F(SQLiteOutboxTest, ADiskThatFailsChangesNothingAndIsUsedOnceItIsWell) {
  const struct {
    const char* call;
    sqlite3_syscall_ptr failing;
    const char* fault;
  } cases[] = {{"pwrite64", systemCall(&failToWrite<ENOSPC>), "full"},
               {"pwrite64", systemCall(&failToWrite<EIO>), "broken"},
               {"open", systemCall(&openForReadingOnly), "read-only"}};
  for (const auto& [call, failing, fault] : cases) {
    SCOPED_TRACE(fault);
    std::filesystem::remove_all(file_.parent_path());
    ASSERT_EQ(open()->write({.added = {entry(1)}}), std::nullopt);
    const auto outbox = open();
    {
      const FailingCall disk(call, failing);
      EXPECT_NE(outbox->write({.removed = {1}, .added = {entry(2)}}), std::nullopt);
    }
    EXPECT_THAT(loaded(outbox), ElementsAre(entry(1)));
    EXPECT_EQ(outbox->write({.removed = {1}, .added = {entry(2)}}), std::nullopt);
    EXPECT_THAT(loaded(outbox), ElementsAre(entry(2)));
  }
}

/// What a process has been told, and at which of its writes it ends; shared with its parent.
struct Shared {
  int writesLeft = 0;
  int kept = 0;
};
Shared* shared = nullptr;

using Write = ssize_t (*)(int, const void*, std::size_t, off_t);
Write realWrite = nullptr;

ssize_t writeOrEnd(int file, const void* bytes, std::size_t size, off_t at) {
  if (--shared->writesLeft == 0) {
    // Half of it has reached the disk.
    (void)realWrite(file, bytes, size / 2, at);
    _exit(0);
  }
  return realWrite(file, bytes, size, at);
}

/// Has the process that calls it end at one of SQLite's writes.
void interposeWrites() {
  sqlite3_vfs* const files = sqlite3_vfs_find(nullptr);
  realWrite = reinterpret_cast<Write>(files->xGetSystemCall(files, "pwrite64"));
  files->xSetSystemCall(files, "pwrite64", reinterpret_cast<sqlite3_syscall_ptr>(&writeOrEnd));
}

TEST_F(SQLiteOutboxTest, AProcessMayEndAtEachWrite) {
  shared = static_cast<Shared*>(
      mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  ASSERT_NE(shared, MAP_FAILED);
  constexpr int kEntries = 20;
  int points = 0;
  for (int point = 1; !HasFailure(); ++point) {
    SCOPED_TRACE(point);
    std::filesystem::remove_all(file_.parent_path());
    *shared = {.writesLeft = point};
    const pid_t child = fork();
    if (child == 0) {
      interposeWrites();
      const auto outbox = open();
      for (int i = 1; i <= kEntries; ++i) {
        if (outbox->write({.removed = {i - 2}, .added = {entry(i)}})) _exit(1);
        shared->kept = i;
      }
      _exit(2);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    if (WEXITSTATUS(status) == 2) break;
    ASSERT_EQ(WEXITSTATUS(status), 0);
    ++points;
    const auto entries = loaded(open());
    // The step under way is there as a whole or not at all.
    ASSERT_GE(entries.size(), static_cast<std::size_t>(std::min(shared->kept, 2)));
    const auto last = entries.empty() ? 0 : entries.back().number;
    EXPECT_TRUE(last == shared->kept || last == shared->kept + 1) << last;
    for (const auto& each : entries) EXPECT_EQ(each, entry(each.number));
    EXPECT_THAT(log_->lines(), IsEmpty());
  }
  EXPECT_GT(points, 50);
  RecordProperty("points", points);
  munmap(shared, sizeof(Shared));
}

}  // namespace
}  // namespace ovinta::platform::linuxos
