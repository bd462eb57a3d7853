// SPDX-License-Identifier: GPL-3.0-or-later
#include "options/option_dialog.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QLineEdit>
#include <QTabBar>
#include <QtTest/QtTest>
#include <memory>

#include "views/fake_shell.h"

namespace torvik::options {
namespace {

class Options : public ::testing::Test {
 protected:
  void open(const std::string& settings = {}, chart::ChartControl* chart = nullptr) {
    shell.settings = base::ProfileFile::ofText(settings, "torvik.ini");
    const Services services{[this](const QString& file) { played.append(file); },
                            [this](const QString& key) { helpKey = key; }, "/sounds"};
    dialog = std::make_unique<OptionDialog>(shell, chart, services, nullptr);
    dialog->show();
    dialog->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    QCoreApplication::processEvents();
  }
  template <class Control = QLineEdit>
  [[nodiscard]] Control& get(const QString& name) const {
    return *dialog->findChild<Control*>(name);
  }
  [[nodiscard]] std::string stored(const char* key) const {
    return shell.settings.ProfileGetString("Option", key, "");
  }
  [[nodiscard]] QString text(const QString& name) const { return get(name).text(); }
  void goTo(int tab) {
    QTabBar& bar = *get<QTabWidget>("TabStrip1").tabBar();
    QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.tabRect(tab - 1).center());
  }
  void click(const QString& button) {
    auto& control = get<QAbstractButton>(button);
    QTest::mouseClick(&control, Qt::LeftButton, {}, {8, control.height() / 2});
    QCoreApplication::processEvents();
  }
  /// The box with the focus, by a click where it has not got it yet, and its whole text selected.
  QLineEdit& focused(const QString& name) {
    QLineEdit& box = get(name);
    if (!box.hasFocus()) QTest::mouseClick(&box, Qt::LeftButton);
    QCoreApplication::processEvents();
    EXPECT_TRUE(box.selectedText() == box.text()) << qPrintable(name);
    return box;
  }
  /// Replaces the text of a box by a paste, which no key filter sees, and leaves it by the Tab key.
  void enter(const QString& name, const QString& value) {
    QLineEdit& box = focused(name);
    QGuiApplication::clipboard()->setText(value);
    QTest::keyClick(&box, value.isEmpty() ? Qt::Key_Delete : Qt::Key_V,
                    value.isEmpty() ? Qt::NoModifier : Qt::ControlModifier);
    QTest::keyClick(&box, Qt::Key_Tab);
    QTest::qWait(1);
  }
  /// Which of the check boxes are on, as "1" and "0".
  [[nodiscard]] std::string checks(const QStringList& names) const {
    std::string on;
    for (const QString& name : names) on += get<QCheckBox>(name).isChecked() ? '1' : '0';
    return on;
  }
  /// All keys that the dialog edits, with their defaults.
  static std::string allDefaults(const std::string& selectedTab) {
    std::string text = "[Option]\nSelectedTab=" + selectedTab + "\n";
    for (const base::OptionKey& key : base::optionKeys())
      if (key.id != base::OptionId::SelectedTab && key.id != base::OptionId::CurvatureUserRangeStep)
        text.append(key.name).append("=").append(key.defaultText).append("\n");
    return text;
  }

  views::FakeShell shell;
  QStringList played;
  QString helpKey;
  std::unique_ptr<OptionDialog> dialog;
};

const QStringList kFileAndTables = {"Check12",   "Check13_0", "Check13_1",
                                    "Check13_2", "Check13_3", "Check13_4"};

TEST_F(Options, WithoutAFileOkWritesEveryDefaultInOrder) {
  open();
  EXPECT_FALSE(get("Text41_3").isEnabled());
  click("Command1_0");
  EXPECT_FALSE(dialog->isVisible());
  EXPECT_EQ(shell.settings.text(), allDefaults("1"));
  EXPECT_TRUE(shell.messages.isEmpty());
}

TEST_F(Options, GoBackToTheFileOnlyWithOk) {
  const std::string kBefore =
      "; mine\n[Option]\nChartStress=0\nSelectedTab=3\nMessagesPauseWatchSound=\xE4.wav\n";
  const std::string kAfter =
      "; mine\n[Option]\nChartStress=0\nSelectedTab=2\nMessagesPauseWatchSound=\xE4.wav\n";
  for (const std::string way : {"Cancel", "Esc", "X"}) {
    open(kBefore);
    EXPECT_TRUE(get("Text21_0").isVisible());
    enter("Text21_0", "-0.002");
    goTo(2);
    click("Check11_2");
    if (way == "Cancel") click("Command1_1");
    if (way == "Esc") QTest::keyClick(dialog.get(), Qt::Key_Escape);
    if (way == "X") dialog->close();
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(shell.settings.text(), kAfter) << way;
  }
  open(kBefore);
  goTo(5);
  EXPECT_EQ(text("Text41_4"), QString::fromLatin1("\xE4.wav"));
  click("Command1_0");  // bytes of another code page stay while nobody edits them
  EXPECT_EQ(stored("MessagesPauseWatchSound"), "\xE4.wav");
}

TEST_F(Options, ABoxThatIsLeftHoldsANumberWithinItsBounds) {
  const QString kTooMany = "Too many steps.";
  const struct {
    int tab;
    const char *box, *entered, *left;
    QString message;
  } kRows[] = {{1, "Text01_2", "abc", "1E-07", {}},
               {1, "Text01_1", "4E-05", "4E-05", {}},
               {1, "Text02_1", "", "0.5", {}},
               {1, "Text03_0", "100", "500", {}},
               {1, "Text03_0", "9000", "5000", {}},
               {3, "Text21_0", "-0.02", "-0.02", {}},
               {3, "Text21_0", "-0.0201", "-0.0201", kTooMany},
               {3, "Text21_2", "0", "0", "Option: number of steps: division by zero"}};
  for (const auto& row : kRows) {
    SCOPED_TRACE(std::string(row.box) + "=" + row.entered);
    shell.messages.clear();
    open("[Option]\nCurvatureSmallRangeTo=0.00003\nConvergenceMaxIteration=2000\n");
    goTo(row.tab);
    enter(row.box, row.entered);
    EXPECT_EQ(text(row.box), row.left);
    EXPECT_EQ(shell.messages.join('|'), row.message);
    if (row.box == std::string("Text01_1")) {
      EXPECT_EQ(text("Text02_0"), row.left);
    }
    click("Command1_0");  // nothing of this keeps OK from working
    EXPECT_FALSE(dialog->isVisible());
  }
}

TEST_F(Options, LeavingABoxForOkChecksItOnceAndOkGoesOn) {
  for (const bool byEnter : {true, false}) {
    shell.messages.clear();
    open();
    goTo(3);
    get("Text23_2").setFocus();
    get("Text23_2").setText("0.00001");
    if (byEnter)
      QTest::keyClick(&get("Text23_2"), Qt::Key_Return);
    else
      click("Command1_0");
    EXPECT_EQ(shell.messages, QStringList{"Too many steps."});
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(stored("StrainTendonStep"), "0.00001");
  }
}

TEST_F(Options, KeysAreFilteredAndTheSpinButtonsKeepTheirBounds) {
  chart::ChartControl chart;
  chart.setValueScale(chart::kAxisX, {false, 0, 10, 19});
  open({}, &chart);
  const struct {
    int tab;
    const char *box, *typed, *held;
  } kRows[] = {{1, "Text01_1", "-1e.5a", "1.5"},
               {1, "Text03_1", "-7.", "7"},
               {4, "Text31_0", "-1e.5a", "-1.5"},
               {5, "Text41_0", "a b-1", "a b-1"}};
  for (const auto& row : kRows) {
    goTo(row.tab);
    QTest::keyClicks(&focused(row.box), row.typed);
    EXPECT_EQ(text(row.box), row.held) << row.box;
  }
  goTo(4);
  for (const auto& [key, held] : {std::pair(Qt::Key_Up, "20"), {Qt::Key_Up, "20"}, {Qt::Key_Down, "19"}}) {
    QTest::keyClick(&get("Text33_0"), key);
    EXPECT_EQ(text("Text33_0"), held);
  }
}

TEST_F(Options, AJobIsNeverLeftWithoutSolverOutputByAClick) {
  const struct {
    const char *before, *click, *after;  ///< file, then tables
  } kRows[] = {{"010000", "Check13_0", "100000"},   {"110000", "Check13_0", "100000"},
               {"100000", "Check12", "010000"},     {"000000", "Check13_3", "100010"},
               {"010111", "Command13_1", "100000"}, {"000000", "Command13_0", "011111"}};
  const char* const kKeys[] = {"FileSolver", "TableSolver", "TableSection",
                               "TableSolid", "TableBar",    "tabletendon"};
  for (const auto& row : kRows) {
    std::string settings = "[Option]\nSelectedTab=2\n";
    for (std::size_t i = 0; i < 6; ++i) settings += std::string(kKeys[i]) + "=" + row.before[i] + "\n";
    open(settings);
    EXPECT_EQ(checks(kFileAndTables), row.before);
    click(row.click);
    EXPECT_EQ(checks(kFileAndTables), row.after) << row.before << " " << row.click;
  }
}

TEST_F(Options, AxesAreThoseOfTheChart) {
  const std::string kAxes = "[Option]\nSelectedTab=4\n";
  const auto texts = [&] { return text("Text31_0") + " " + text("Text32_0") + " " + text("Text33_0"); };
  auto chart = std::make_unique<chart::ChartControl>();
  chart->setValueScale(chart::kAxisX, {false, -5, 20, 4});
  open(kAxes, chart.get());
  EXPECT_EQ(texts(), "-5 20 4");
  EXPECT_EQ(checks({"Check31_0", "Check31_1"}), "01");
  EXPECT_FALSE(get("Text31_1").isEnabled() || get<QWidget>("UpDown31_1").isEnabled());
  enter("Text32_0", "abc");
  EXPECT_EQ(text("Text32_0"), "N/A");
  enter("Text31_0", "-7");
  click("Check31_1");
  enter("Text32_1", "1000");
  click("Command1_0");
  EXPECT_EQ(chart->valueScale(chart::kAxisX).Minimum, -7);
  EXPECT_EQ(chart->valueScale(chart::kAxisX).Maximum, 20);  // what is no number is skipped
  EXPECT_FALSE(chart->valueScale(chart::kAxisY).Auto);
  EXPECT_EQ(chart->valueScale(chart::kAxisY).Maximum, 1000);

  open(kAxes, chart.get());
  click("Check31_0");
  click("Command1_2");  // again from the chart
  EXPECT_EQ(checks({"Check31_0", "Check31_1"}), "00");
  EXPECT_EQ(texts(), "-7 20 4");
  click("Check31_0");
  click("Command1_0");
  EXPECT_TRUE(chart->valueScale(chart::kAxisX).Auto);

  open(kAxes, chart.get());
  get("Text33_0").setText("7");  // by whatever way it changes
  EXPECT_EQ(checks({"Check31_0", "Check31_1"}), "00");
  chart.reset();
  click("Command1_0");
  open(kAxes);
  click("Command1_2");
  EXPECT_EQ(texts(), "N/A N/A N/A");
}

TEST_F(Options, DefaultsAreTakenForTheTabAloneAndOnlyAfterYes) {
  std::string settings = "[Option]\nSelectedTab=1\n";
  for (const base::OptionKey& key : base::optionKeys())
    if (key.control.tab > 0) settings.append(key.name).append(key.defaultText == "1" ? "=0\n" : "=1\n");
  open(settings);
  shell.yes = false;
  click("Command1_2");
  EXPECT_EQ(text("Text01_2"), "1");
  shell.yes = true;
  for (int tab = 1; tab <= kTabs; ++tab) {
    goTo(tab);
    click("Command1_2");
    EXPECT_EQ(checks(kFileAndTables), tab == 1 ? "101000" : "010111");
    EXPECT_EQ(text("Text22_0"), tab < 3 ? "1" : "-0.1");
  }
  EXPECT_EQ(shell.messages.count("Take default options for this tab ?"), 7);
  EXPECT_EQ(stored("StrainBarFrom"), "1");  // not before OK
  click("Command1_0");
  EXPECT_EQ(shell.settings.text(), allDefaults("6"));
}

TEST_F(Options, MessagesPlayBrowseAndSwitchTheirRow) {
  open("[Option]\nSelectedTab=5\n");
  click("Command41_0");
  EXPECT_EQ(played, QStringList{"chimes.wav"});
  click("Command42_0");
  EXPECT_EQ(text("Text41_0"), "chimes.wav");  // cancelled
  EXPECT_EQ(shell.proposal, "/sounds/*.wav");
  shell.openAnswer = "/tmp/bell.wav";
  click("Command42_0");
  EXPECT_EQ(text("Text41_0"), "/tmp/bell.wav");
  click("Command43_1");
  for (const char* name : {"Text41_0", "Command41_0", "Command42_0"})
    EXPECT_FALSE(get<QWidget>(name).isEnabled()) << name;
  click("Command1_3");
  EXPECT_EQ(helpKey, QString::fromUtf8("MessagesOption―"));
}

TEST_F(Options, StoredValuesThatCanNotBeShownAreToldOnceAndCanBeMended) {
  open("[Option]\nSelectedTab=9\nCurvatureSmallRangeStep=abc\nWindowArrange=7\n");
  QTest::qWait(1);
  ASSERT_EQ(shell.messages.size(), 1);
  for (const char* part : {"SelectedTab=\"9\"", "CurvatureSmallRangeStep=\"abc\"", "WindowArrange=\"7\""})
    EXPECT_TRUE(shell.messages[0].contains(part)) << qPrintable(shell.messages[0]);
  EXPECT_EQ(text("Text01_2"), "abc");
  enter("Text01_2", "1E-08");
  click("Command1_0");
  EXPECT_EQ(shell.messages.size(), 1);
  EXPECT_EQ(stored("CurvatureSmallRangeStep"), "1E-08");
  EXPECT_EQ(stored("WindowArrange"), "7");  // nobody chose another
}

}  // namespace
}  // namespace torvik::options
