#include "store/store_fixture.h"

#ifndef _WIN32
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#endif

namespace store {
namespace {

class CrashTest : public StoreTest {};

#ifndef _WIN32
TEST_F(CrashTest, AKilledRunLeavesTheStateBeforeIt) {
  {
    auto db = CreateAndOpen("a.mdb");
    CreateLines(db->catalog());
    db->Execute("INSERT INTO Linii(Cod) VALUES('inainte')");
  }
  // A run far larger than the cache, so that pages reach the file before the commit.
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    auto db = OpenFile("a.mdb");
    db->Begin();
    Recordset rows = db->QueryForUpdate("SELECT TOP 1 * FROM Linii");
    const std::string text(60000, 'x');
    for (int i = 0;; ++i) {
      rows.AddNew();
      rows.Set("Cod", fmt::format("{}", i));
      rows.Set("Descriere", text);
      rows.Update();
      if (i == 2000 && write(ready[1], "x", 1) != 1) _exit(1);
      if (i > 2000) pause();
    }
  }
  char byte = 0;
  ASSERT_EQ(read(ready[0], &byte, 1), 1);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  close(ready[0]);
  close(ready[1]);
  EXPECT_GT(std::filesystem::file_size(HostPath("a.mdb")), 10'000'000u);  // the run had begun to write
  auto db = OpenFile("a.mdb");
  EXPECT_EQ(Rows(db->Query("SELECT Record_ID, Cod FROM Linii")), "1|inainte");
  db->Execute("INSERT INTO Linii(Cod) VALUES('dupa')");
  EXPECT_EQ(db->Scalar("SELECT COUNT(*) FROM Linii"), Value(2));
}
#endif

TEST_F(CrashTest, ACommitThatAReaderHoldsUpIsTriedAgain) {
  auto db = CreateAndOpen("a.mdb");
  CreateLines(db->catalog());
  db->Execute("INSERT INTO Linii(Cod) VALUES('inainte')");
  db = OpenFile("a.mdb");
  auto reader = OpenFile("a.mdb");
  reader->Begin();
  reader->Scalar("SELECT COUNT(*) FROM Linii");
  db->Begin();
  db->Execute("INSERT INTO Linii(Cod) VALUES('nou')");
  ErrorOf(kIntegrity, [&] { db->Commit(); });
  EXPECT_TRUE(db->in_transaction());
  reader->Rollback();
  db->Commit();
  EXPECT_EQ(db->Scalar("SELECT COUNT(*) FROM Linii"), Value(2));
}

}  // namespace
}  // namespace store
