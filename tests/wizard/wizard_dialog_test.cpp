// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QRadioButton>
#include <QtTest/QtTest>
#include <memory>
#include <string>

#include "base/files.h"
#include "base/temporary_folder.h"
#include "views/fake_shell.h"
#include "wizard/solid_dialog.h"

namespace torvik::wizard {
namespace {

class WizardDialog : public ::testing::Test {
 protected:
  void open(const std::string& settings = {}) {
    if (!settings.empty())
      shell.settings = base::ProfileFile::ofText("[SolidWizard]\n" + settings, "torvik.ini");
    dialog = std::make_unique<SolidDialog>(shell, document, [](const QString&) {});
    dialog->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
  }
  template <class Widget = QWidget>
  Widget& find(const char* name) {
    return *dialog->findChild<Widget*>(name);
  }
  QString textOf(const char* box) { return find<QLineEdit>(box).text(); }
  void click(const char* name) {
    QWidget& button = find(name);
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(12, button.height() / 2));
  }
  /// Keys to whatever has the focus; '\t' and '\r' are the keys Tab and Enter.
  void type(const char* keys) {
    for (; *keys; ++keys) {
      const int key = *keys == '\t' ? Qt::Key_Tab : *keys == '\r' ? Qt::Key_Return : 0;
      QWidget* target = dialog->focusWidget();
      key ? QTest::keyClick(target, static_cast<Qt::Key>(key)) : QTest::keyClick(target, *keys);
    }
  }
  /// Names of the enabled widgets among `Name_0`, `Name_1` ..., as their indices.
  std::string enabled(const std::string& name, int count) {
    std::string indices;
    for (int i = 0; i < count; ++i) {
      const std::string index = std::to_string(i);
      if (find((name + "_" + index).c_str()).isEnabled()) indices += index;
    }
    return indices;
  }

  views::FakeShell shell;
  model::Document document;
  std::unique_ptr<SolidDialog> dialog;
};

TEST_F(WizardDialog, OffersTheDimensionsOfTheShape) {
  open();
  const struct {
    const char *whole, *hollow, *choices, *text11, *text12, *text13, *image11, *image12;
  } rows[] = {
      {"Option01_0", "Option02_0", "012", "012", "012", "01", "Image11_0", "Image12_0"},
      {"Option01_1", "Option02_1", "012", "02", "02", "01", "Image11_1", "Image12_1"},
      {"Option01_2", "Option02_0", "", "012345", "", "0", "Image11_2", "Image12_2"},
      {"Option01_0", "Option02_2", "012", "012", "", "0", "Image11_0", "Image12_2"},
  };
  for (const auto& row : rows) {
    click(row.whole);
    click(row.hollow);
    EXPECT_EQ(enabled("Option02", 3), row.choices);
    click("Command1_0");
    EXPECT_EQ(enabled("Command1", 5), "0134");
    EXPECT_EQ(enabled("Text11", 6), row.text11);
    EXPECT_EQ(enabled("Text12", 3), row.text12);
    EXPECT_EQ(enabled("Text13", 2), row.text13);
    for (const char* image : {row.image11, row.image12}) {
      const QImage picture = find<QLabel>(image).pixmap().toImage();
      EXPECT_TRUE(find(image).isVisible()) << image;
      EXPECT_NE(picture, QImage(picture.size(), picture.format())) << image;
    }
    click("Command1_1");
  }
}

TEST_F(WizardDialog, ChecksAFieldThatIsLeft) {
  const struct {
    int page;
    const char *box, *keys, *text, *message;
  } rows[] = {
      {1, "Text11_0", "-2x5.50\t", "25.50", ""},
      {1, "Text11_0", "1.2.3\t", "12", ""},  // the stored value comes back
      {1, "Text11_0", ".\r", "12", ""},      // Enter turns the page
      {2, "Text21", "3\r", "5", "Minimum Fibers Number (5) is set."},
      {2, "Text21", "1000\t", "500", "Maximum Fibers Number (500) is set."},
      {2, "Text21", "\b\t", "60", ""},
      {3, "Text22", "0\t", "1", "Positive Fibers Height (1) is set."},
  };
  for (const auto& row : rows) {
    open(std::string("Whole_A=12\nFibers_in_Number=60\nFibers=") + (row.page == 3 ? "1\n" : "0\n"));
    shell.messages.clear();
    for (int i = 0; i < std::min(row.page, 2); ++i) click("Command1_0");
    find(row.box).setFocus();
    type(row.keys);
    EXPECT_EQ(textOf(row.box), row.text) << row.keys;
    EXPECT_EQ(shell.messages.join("|"), row.message) << row.keys;
    EXPECT_TRUE(dialog->isVisible());
  }
}

TEST_F(WizardDialog, TakesANumberOrAHeight) {
  open("Fibers_in_Number=494\n");
  type("\r\r");
  for (const char* expected : {"499", "500", "500"}) {
    QTest::keyClick(&find("Text21"), Qt::Key_Up);
    EXPECT_EQ(textOf("Text21"), expected);
  }
  type("3");
  click("Option21_1");
  EXPECT_EQ(shell.messages.size(), 1);
  EXPECT_FALSE(find("Text21").isEnabled() || find("UpDown21").isEnabled());
  EXPECT_TRUE(find("Text22").hasFocus());
}

/// A hollow box by keyboard alone, up to the last key before Finish.
constexpr const char* kTypedBox = "\r500\t500\t800\t\t300\t300\t500\t150\r200";

TEST_F(WizardDialog, KeepsEntriesInTheSettingsWhereNoFileIsOpen) {
  open("Hollow=0\n");
  type(kTypedBox);
  type("\r");
  EXPECT_FALSE(dialog->isVisible());
  EXPECT_EQ(dialog->failureNumber(), 0);
  double area = 0, moment = 0;
  for (const auto& row : dialog->generated().Solids) {
    area += row.Number * row.Area;
    moment += row.Number * row.Area * row.Depth;
  }
  EXPECT_NEAR(area, 500. * 800 - 300. * 500, 1e-6);
  EXPECT_NEAR(moment, area * 400, 1e-3);
  EXPECT_EQ(shell.settings.text(),
            "[SolidWizard]\nHollow=0\nWhole=0\nWhole_A=500\nWhole_B=500\nWhole_C=800\nWhole_D=0\nWhole_E=0\n"
            "Whole_F=0\nWhole_P=0\nHollow_a=300\nHollow_b=300\nHollow_c=500\nHollow_p=150\nFibers=0\n"
            "Fibers_in_Number=200\nFibers_in_Height=10\n");
}

TEST_F(WizardDialog, KeepsEntriesInTheFileThatIsOpen) {
  const tests::TemporaryFolder folder;
  document.currentFile = (folder / "a.inp").string();
  base::replaceWholeFile(document.currentFile, "; mine\n[Solids]\nAll=0\n");
  open("Whole_A=7\nFibers_in_Number=50\n");
  EXPECT_EQ(textOf("Text11_0") + textOf("Text21"), "0100");
  type("\r30\t30\t10\r\r");
  EXPECT_EQ(dialog->generated().Solids.size(), 100U);
  EXPECT_EQ(shell.settings.text(), "[SolidWizard]\nWhole_A=7\nFibers_in_Number=50\n");
  const std::string file = base::readWholeFile(document.currentFile);
  EXPECT_TRUE(file.starts_with("; mine\n[Solids]\nAll=0\n\n[SolidWizard]\nWhole=0\nHollow=2\nWhole_A=30\n"));
}

TEST_F(WizardDialog, CancelLeavesNothing) {
  const std::function<void()> ways[] = {[this] { click("Command1_3"); }, [this] { dialog->close(); },
                                        [this] { QTest::keyClick(dialog->focusWidget(), Qt::Key_Escape); }};
  for (const auto& leave : ways) {
    open("Hollow=0\n");
    type(kTypedBox);
    type("9");  // 2009 fibres: no message on the way out
    leave();
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->failureNumber(), 32755);
    EXPECT_TRUE(dialog->generated().Solids.empty());
    EXPECT_EQ(shell.settings.text(), "[SolidWizard]\nHollow=0\n");
    EXPECT_TRUE(shell.messages.isEmpty());
  }
}

TEST_F(WizardDialog, StaysWhereNoRowsCome) {
  const std::pair<const char*, const char*> rows[] = {
      {"", "Invalid section."},
      {"Hollow=0\nWhole_A=9\nWhole_B=9\nWhole_C=9\nHollow_c=9\nHollow_p=1\n", "Invalid section."},
      {"Whole_A=9\nWhole_B=9\nWhole_C=9\nFibers=1\n", "Invalid section."},  // lower than a fibre
      {"Whole=1\nWhole_A=9\nWhole_C=1E+300\nFibers=1\n", "Add Default Solid: number of strips: overflow"},
  };
  for (const auto& [settings, message] : rows) {
    shell.settings = base::ProfileFile();
    open(settings);
    shell.messages.clear();
    type("\r\r\r");
    EXPECT_EQ(shell.messages.join("|"), message) << settings;
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_TRUE(dialog->generated().Solids.empty());
    EXPECT_NE(shell.settings.find("SolidWizard", "Fibers_in_Height"), std::nullopt);
  }
}

TEST_F(WizardDialog, TellsStoredValuesOfAnotherKindAndShowsTheirDefaults) {
  open("Whole=3\nHollow=99999\nFibers=2\nWhole_A=x\nFibers_in_Height=\nWhole_B=7\n");
  ASSERT_EQ(shell.messages.size(), 1);
  EXPECT_EQ(shell.messages[0].count("expected"), 5) << shell.messages[0].toStdString();
  EXPECT_TRUE(find<QRadioButton>("Option01_0").isChecked() && find<QRadioButton>("Option02_2").isChecked());
  EXPECT_EQ(textOf("Text11_0") + textOf("Text11_1") + textOf("Text22"), "0710");
}

TEST_F(WizardDialog, PreviewFollowsWhatIsTyped) {
  open("Hollow=0\n");
  type("\r500\t400\t800\t\t300\t300\t500\t150");
  const auto& chart = find<chart::ChartControl>("MSChart1");
  EXPECT_EQ(chart.Data(1, 1) + " " + chart.Data(2, 1) + " " + chart.Data(2, 2), "250 200 -800");
  EXPECT_EQ(chart.Data(1, 3) + " " + chart.Data(1, 4), "150 -150");
  EXPECT_EQ(find<QLabel>("Label1").text().left(9), "98 fibers");
  EXPECT_EQ(chart.ColumnCount(), 4);
  type("\r.");
  EXPECT_GT(chart.ColumnCount(), 4);
}

}  // namespace
}  // namespace torvik::wizard
