// Message boxes and the progress of long runs.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "ui/progress.h"
#include "ui/prompter.h"

namespace {

/// Answers the next message box by the key, after looking at it.
void Answer(Qt::Key key, const std::function<void(QMessageBox&)>& look = {}) {
  QTimer::singleShot(0, [key, look] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    if (look) look(*box);
    QTest::keyClick(box, key);
  });
}

TEST(QtPrompter, ShowsTextsAsTheyAre) {
  ui::QtPrompter prompter;
  Answer(Qt::Key_Return, [](QMessageBox& box) {
    EXPECT_EQ(box.windowTitle(), "EROARE MAJORA");
    EXPECT_EQ(box.text(), "A <b>&B</b>\nC:\\x");
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    EXPECT_EQ(box.icon(), QMessageBox::Critical);
  });
  prompter.Message("A <b>&B</b>\r\nC:\\x", "EROARE MAJORA", platform::Icon::kCritical);
}

TEST(QtPrompter, AQuickEnterOrEscMeansNo) {
  ui::QtPrompter prompter;
  Answer(Qt::Key_Return);
  EXPECT_FALSE(prompter.Ask("Stergeti ?", "RASPUNDETI", platform::Icon::kQuestion));
  Answer(Qt::Key_Escape);
  EXPECT_FALSE(prompter.Ask("Stergeti ?", "RASPUNDETI", platform::Icon::kQuestion));
  QTimer::singleShot(0, [] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    QTest::mouseClick(box->button(QMessageBox::Yes), Qt::LeftButton);
  });
  EXPECT_TRUE(prompter.Ask("Stergeti ?", "RASPUNDETI", platform::Icon::kQuestion));
}

QWidget* Box() {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->objectName() == "Frm_Progres" && window->isVisible()) return window;
  }
  return nullptr;
}

/// Reports as a run does until `ms` have passed.
void Work(ui::QtProgress& progress, int ms, int percent) {
  QElapsedTimer since;
  since.start();
  while (since.elapsed() < ms) {
    progress.Update("Se lucreaza", percent);
    progress.Status("rand 7");
    QTest::qSleep(5);
  }
}

TEST(QtProgress, GivesWayToMessages) {
  ui::QtProgress progress;
  ui::QtPrompter prompter;
  const ui::LongRun run(progress, "Titlu");
  Work(progress, 450, 10);
  ASSERT_NE(Box(), nullptr);
  bool covered = true;
  QTimer::singleShot(0, [&covered] {
    covered = Box() != nullptr;
    QApplication::activeModalWidget()->close();
  });
  prompter.Message("Gata", "", platform::Icon::kInformation);
  EXPECT_FALSE(covered);
  Work(progress, 100, 20);
  EXPECT_NE(Box(), nullptr);
}

TEST(QtProgress, AppearsAfterAWhileAndGoesWithTheRun) {
  ui::QtProgress progress;
  Work(progress, 50, 1);  // outside of a run nothing is shown
  {
    const ui::LongRun run(progress, "Titlu");
    Work(progress, 150, 10);
    EXPECT_EQ(Box(), nullptr);
    Work(progress, 350, 42);
    QWidget* box = Box();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->windowTitle(), "Titlu");
    EXPECT_EQ(box->findChild<QProgressBar*>()->value(), 42);
    EXPECT_FALSE(box->findChild<QPushButton*>("CmdRenunt")->isVisible());
    box->close();  // closing is no end of a run that cannot stop
    QTest::keyClick(box, Qt::Key_Escape);
    EXPECT_TRUE(box->isVisible());
    EXPECT_FALSE(progress.Cancelled());
    {
      const ui::LongRun inner(progress, "Altul", ui::Stopping::kPossible);
      Work(progress, 60, 50);
    }
    EXPECT_EQ(Box(), box);  // the outer one's
  }
  EXPECT_EQ(Box(), nullptr);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST(QtProgress, CancelsOnceAndForThisRunOnly) {
  ui::QtProgress progress;
  {
    const ui::LongRun run(progress, "Titlu", ui::Stopping::kPossible);
    Work(progress, 400, -1);
    ASSERT_NE(Box(), nullptr);
    auto* cancel = Box()->findChild<QPushButton*>("CmdRenunt");
    QTest::mouseClick(cancel, Qt::LeftButton);
    EXPECT_TRUE(progress.Cancelled());
    EXPECT_EQ(cancel->text(), "Cancelling...");
    EXPECT_FALSE(cancel->isEnabled());
  }
  const ui::LongRun next(progress, "Titlu", ui::Stopping::kPossible);
  EXPECT_FALSE(progress.Cancelled());
}

}  // namespace
