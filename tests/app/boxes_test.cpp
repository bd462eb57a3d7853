// SPDX-License-Identifier: GPL-3.0-or-later
#include <QDialog>
#include <QDialogButtonBox>
#include <QDropEvent>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QMimeData>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>

#include "app/window_fixture.h"

namespace torvik::app {
namespace {

using job::JobState;

/// The real boxes where they stop nothing; those that would are answered and written down.
class BoxesOnScreen : public ScreenDialogs {
 public:
  explicit BoxesOnScreen(QStringList& log) : m_log(log) {}
  void information(const QString& text, const QString&) override { m_log.append("box: " + text); }
  bool question(const QString& text, const QString&) override {
    m_log.append("question: " + text);
    return true;
  }

 private:
  QStringList& m_log;
};

class Boxes : public WindowTest {
 protected:
  Boxes() : onScreen(log) { program.dialogs = &onScreen; }

  void openWith(const model::ObjectTables& tables) {
    WindowTest::openWith(tables);
    onScreen.setParent(window.get());
  }
  /// The topmost one.
  [[nodiscard]] static QDialog* box() { return qobject_cast<QDialog*>(QApplication::activeModalWidget()); }
  [[nodiscard]] int boxesOpen() const {
    const QList<QDialog*> all = window->findChildren<QDialog*>();
    return static_cast<int>(
        std::count_if(all.begin(), all.end(), [](QDialog* one) { return one->isVisible(); }));
  }
  static void press(QDialogButtonBox::StandardButton button) {
    ASSERT_TRUE(box());
    QTest::mouseClick(box()->findChild<QDialogButtonBox*>()->button(button), Qt::LeftButton);
  }
  /// In a box that asks for a file to write.
  void chooseFile(const std::string& name) const {
    ASSERT_TRUE(box());
    box()->findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromStdString(path(name)));
    press(QDialogButtonBox::Save);
  }
  void triggerOf(const char* title, const char* name) const {
    child<views::ChildWindow>(title).findChild<QAction*>(name)->trigger();
  }

  BoxesOnScreen onScreen;
};

TEST_F(Boxes, AJobComesToItsEndBehindThem) {
  onlyWindows({"TableSolver", "ChartMoment"});
  openWith(smallBeam());
  trigger("mnuFileJob0");
  const int allSteps = program.run->steps();
  const QStringList allMessages = log;
  const struct {
    const char* caption;
    std::function<void()> open;
  } kRows[] = {
      {"About torvik", [&] { trigger("mnuHelpAbout"); }},
      {"torvik", [&] { trigger("mnuHelpHelp1"); }},
      {"Page Setup", [&] { trigger("mnuFilePrint0"); }},
      {"Print", [&] { trigger("mnuFilePrint1"); }},
      {"torvik - Save Table As", [&] { triggerOf("Table - Solver", "mnuTableSaveAs"); }},
      {"torvik - Save Picture As", [&] { triggerOf("Chart - Moment", "mnuChartSavePicture"); }},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.caption);
    log.clear();
    stepBox().setEditText("Small");
    atStep(3, [&] {
      row.open();
      ASSERT_TRUE(box());
      EXPECT_EQ(box()->windowTitle(), row.caption);
      EXPECT_EQ(box()->windowModality(), Qt::WindowModal) << "the guide can be read beside it";
    });
    trigger("mnuFileJob0");
    EXPECT_EQ(program.run->steps(), allSteps);
    EXPECT_EQ(log, allMessages);
    EXPECT_EQ(state(), JobState::Over);
    ASSERT_TRUE(box());
    EXPECT_EQ(boxesOpen(), 1);
    box()->close();
    QCoreApplication::processEvents();
    EXPECT_EQ(window->findChildren<QDialog*>().size(), 0);
  }
}

TEST_F(Boxes, ATableIsSavedAsItIsWhenTheFileIsChosen) {
  onlyWindows({"TableSolver"});
  openWith(smallBeam());
  base::replaceWholeFile(path("a.csv"), "old");
  std::string atChoice;
  atStep(3, [&] {
    triggerOf("Table - Solver", "mnuTableSaveAs");
    atStep(6, [&] {
      chooseFile("a.csv");
      ASSERT_TRUE(qobject_cast<QMessageBox*>(box()));
      EXPECT_EQ(qobject_cast<QMessageBox*>(box())->text(),
                "a.csv already exists.\nDo you want to replace it?");
      press(QDialogButtonBox::No);
      chooseFile("a.csv");
      atStep(9, [&] {
        EXPECT_EQ(content("a.csv"), "old");
        atChoice = table("Table - Solver").text(',');
        press(QDialogButtonBox::Yes);
      });
    });
  });
  trigger("mnuFileJob0");
  EXPECT_EQ(content("a.csv"), atChoice);
  EXPECT_LT(atChoice.size(), table("Table - Solver").text(',').size());
  EXPECT_EQ(boxesOpen(), 0);
}

TEST_F(Boxes, AFileThatCanNotBeWrittenIsToldBesideTheJob) {
  onlyWindows({"TableSolver", "ChartMoment"});
  openWith(smallBeam());
  const auto expectNotice = [&](const char* part) {
    auto* const notice = qobject_cast<QMessageBox*>(box());
    ASSERT_TRUE(notice);
    EXPECT_TRUE(notice->text().contains(part)) << notice->text().toStdString();
    EXPECT_EQ(boxesOpen(), 1);
    press(QDialogButtonBox::Ok);
  };
  atStep(3, [&] {
    triggerOf("Table - Solver", "mnuTableSaveAs");
    chooseFile("missing/a.csv");
    expectNotice("missing/a.csv");
    triggerOf("Chart - Moment", "mnuChartSavePicture");
    chooseFile("missing/a.png");
    atStep(6, [&] { expectNotice("missing/a.png"); });
  });
  trigger("mnuFileJob0");
  EXPECT_EQ(boxesOpen(), 0);
  EXPECT_GT(solverRows(), 20);
}

TEST_F(Boxes, DoNothingForAWindowThatIsGone) {
  onlyWindows({"TableSolver"});
  model("b.inp", smallBeam());
  openWith(smallBeam());
  bool second = false;
  atStep(3, [&] { triggerOf("Table - Solver", "mnuTableSaveAs"); });
  inEachJob([&] {
    if (program.document.currentFile != path("b.inp")) return;
    second = true;
    chooseFile("a.csv");
  });
  window->takeCommandLine({path("a.inp"), path("b.inp")});
  EXPECT_TRUE(second);
  EXPECT_FALSE(base::isFile(path("a.csv")));
  EXPECT_EQ(boxesOpen(), 0);
  EXPECT_EQ(log.filter("box:"), QStringList());
}

TEST_F(Boxes, NoSecondOneComesBeforeTheFirstHasTheKeyboard) {
  onlyWindows({"TableSolver"});
  openWith(smallBeam());
  trigger("mnuFileJob0");
  for (int i = 0; i < 3; ++i) QTest::keyClick(window.get(), Qt::Key_P, Qt::ControlModifier);
  QTest::keyClick(window.get(), Qt::Key_F5);
  trigger("mnuHelpAbout");
  EXPECT_EQ(boxesOpen(), 1);
  EXPECT_EQ(box()->windowTitle(), "Print");
  EXPECT_EQ(state(), JobState::Over);
  box()->close();
  QTest::keyClick(window.get(), Qt::Key_P, Qt::ControlModifier);
  EXPECT_EQ(boxesOpen(), 1);
}

TEST_F(Boxes, KeepTheFrameFromTakingDrops) {
  openWith(smallBeam());
  trigger("mnuObjectSectionParameter");
  QMimeData files;
  files.setUrls({QUrl::fromLocalFile(QString::fromStdString(path("a.inp")))});
  for (const bool isBlocked : {true, false}) {
    if (isBlocked) trigger("mnuHelpAbout");
    QDragEnterEvent enter({50, 50}, Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window.get(), &enter);
    QDropEvent drop({50, 50}, Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window.get(), &drop);
    EXPECT_EQ(enter.isAccepted(), !isBlocked);
    EXPECT_EQ(drop.isAccepted(), !isBlocked);
    if (isBlocked) box()->close();
  }
}

TEST_F(Boxes, PaperIsChosenDuringAJob) {
  onlyWindows({"TableSolver"});
  openWith(smallBeam());
  atStep(3, [&] {
    trigger("mnuFilePrint0");
    atStep(6, [&] {
      for (QRadioButton* button : box()->findChildren<QRadioButton*>())
        if (button->text().remove('&') == "Landscape") button->click();
      press(QDialogButtonBox::Ok);
      EXPECT_FALSE(box());
      EXPECT_EQ(setting("Printer", "Orientation"), "2");
    });
  });
  trigger("mnuFileJob0");
  EXPECT_EQ(setting("Printer", "Orientation"), "2");
  EXPECT_GT(solverRows(), 20);
}

TEST_F(Boxes, GoWithTheWindow) {
  openWith(smallBeam());
  atStep(3, [&] {
    trigger("mnuFileExit");
    trigger("mnuHelpAbout");
    EXPECT_TRUE(box());
  });
  trigger("mnuFileJob0");
  EXPECT_TRUE(QTest::qWaitFor([&] { return !window->isVisible(); }, 1000));
  EXPECT_EQ(boxesOpen(), 0);
}

/// The user takes a while for an answer.
class HeldDialogs : public ScriptedDialogs {
 public:
  using ScriptedDialogs::ScriptedDialogs;
  std::function<void()> answer;
  void saveFile(const QString&, const QString&, const QString&, const QString&,
                std::function<void(const QString&)> then) override {
    answer = [this, then = std::move(then)] { then(fileToSave); };
  }
  void choosePrinter(QPrinter& printer, std::function<void()> then) override {
    answer = [this, &printer, then = std::move(then)] {
      printer.setOutputFileName(fileToSave);
      then();
    };
  }
};

TEST_F(Boxes, AnswersGoToTheWindowThatAsked) {
  HeldDialogs held(log);
  program.dialogs = &held;
  const auto table = [this]() -> views::ChildWindow& { return child<views::ChildWindow>("Table - Solver"); };
  const auto chart = [this]() -> views::ChildWindow& { return child<views::ChildWindow>("Chart - Moment"); };
  const auto printTable = [&] {
    window->activate(&table());
    trigger("mnuFilePrint1");
  };
  const auto saveTable = [&] { triggerOf("Table - Solver", "mnuTableSaveAs"); };
  const auto savePicture = [&] { triggerOf("Chart - Moment", "mnuChartSavePicture"); };
  const auto startAnew = [&] { trigger("mnuFileJob0"); };
  const struct {
    const char *file, *way;
    std::function<void()> ask, meanwhile;
    bool isWritten = false;
    const char* box = nullptr;
  } kRows[] = {
      {"a.pdf", "printed, not active", printTable, [&] { window->activate(&chart()); }, true},
      {"b.pdf", "printed, closed", printTable, [&] { table().frame()->close(); }},
      {"c.pdf", "printed, of an earlier job", printTable, startAnew},
      {"d.csv", "table, closed", saveTable, [&] { table().frame()->close(); }},
      {"e.csv", "table, of an earlier job", saveTable, startAnew},
      {"f.png", "picture, closed", savePicture, [&] { chart().frame()->close(); }},
      {"g.png", "picture, of an earlier job", savePicture, startAnew},
      {"missing/h.pdf", "no folder", printTable, [] {}, false,
       "box: Print: The printer can not be written to."},
  };
  onlyWindows({"TableSolver", "ChartMoment"});
  WindowTest::openWith(smallBeam());
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.way);
    trigger("mnuFileJob0");
    held.fileToSave = QString::fromStdString(path(row.file));
    row.ask();
    row.meanwhile();
    log.clear();
    held.answer();
    EXPECT_EQ(log, row.box ? QStringList{row.box} : QStringList());
    EXPECT_EQ(base::isFile(path(row.file)), row.isWritten);
  }
  log.clear();
  window->askSaveFile("torvik - Save As", {}, {}, [](const QString&) { throw std::runtime_error("why"); });
  held.answer();
  EXPECT_EQ(log, QStringList{"box: Save As: why"});
  const QString printed = QString::fromLatin1(QByteArray::fromStdString(content("a.pdf")));
  EXPECT_GT(printed.count(QRegularExpression("/Type /Page\\b")), 1) << "a table";
}

}  // namespace
}  // namespace torvik::app
