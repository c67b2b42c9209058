#include "editor_fixture.h"

#ifndef _WIN32
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#endif

namespace declarations {
namespace {

#ifndef _WIN32
TEST_F(EditorTest, AProgramKilledWhileTypingLosesOnlyTheLineBeingTyped) {
  // A database connection must not live on in a child: each process opens its own.
  at.session.company.Close();
  at.session.common.Close();
  at.session.tariff.Close();
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    session::OpenCommonConnection(at.session);
    session::OpenCompanyConnection(at.session, at.session.current.database_path);
    Editor& editor = Open();
    for (int row = 0; row < 3; ++row) {
      MustType(row, "Descriere", fmt::format("linia {}", row + 1));
      MustType(row, "Valoare_Valuta", "10");
    }
    if (editor.pending_row() != 2 || write(ready[1], "x", 1) != 1) _exit(1);
    for (;;) pause();
  }
  close(ready[1]);
  char byte = 0;
  EXPECT_EQ(read(ready[0], &byte, 1), 1);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  close(ready[0]);
  session::OpenCommonConnection(at.session);
  session::OpenCompanyConnection(at.session, at.session.current.database_path);
  Editor& editor = Open();
  ASSERT_EQ(editor.row_count(), 2);
  EXPECT_EQ(Text(1, "Descriere") + " " + Text(1, "Valoare_Valuta"), "linia 2 10");
  MustType(2, "Descriere", "din nou");
  EXPECT_TRUE(editor.SaveLine());
}
#endif

}  // namespace
}  // namespace declarations
