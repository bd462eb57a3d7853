// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QPointer>
#include <QStringList>
#include <QTabWidget>
#include <QTimer>
#include <array>
#include <functional>
#include <vector>

#include "chart/control.h"
#include "options/option_field.h"
#include "views/shell.h"

class QGridLayout;
class QGroupBox;
class QLineEdit;
class QPushButton;

namespace torvik::widgets {
class UpDown;
}

namespace torvik::options {

/// What the dialog asks of the program beside the shell.
struct Services {
  std::function<void(const QString& file)> play;  ///< starts a sound file and does not wait
  std::function<void(const QString& key)> help;   ///< shows the guide at a key
  QString soundFolder;                            ///< where the browse dialog begins; may be empty
};

/// `frmOption`: edits section `Option` of the settings file and the scale of one chart. Nothing takes effect
/// before OK, but `SelectedTab`, which every button and the closing write. Modal to the frame alone, so that
/// the guide can be read beside it; made for `open`.
class OptionDialog : public QDialog {
  Q_OBJECT

 public:
  /// A stored value that can not be shown is told in one message; its box holds it as it stands.
  /// @param chart  the active one; may be null, and may go while the dialog is open
  /// @throws InputError where the settings file can not be read
  OptionDialog(views::Shell& shell, chart::ChartControl* chart, Services services, QWidget* parent);

 public slots:
  void reject() override;

 private:
  struct Axis {
    QCheckBox* automatic = nullptr;
    widgets::EntryBox* minimum = nullptr;
    widgets::EntryBox* maximum = nullptr;
    widgets::EntryBox* division = nullptr;
    [[nodiscard]] std::array<widgets::EntryBox*, 3> boxes() const { return {minimum, maximum, division}; }
  };

  // The pages (option_pages.cpp).
  void build();
  QWidget* calculationPage();
  QWidget* chartFileTablePage();
  QWidget* curvePage();
  QWidget* axisPage();
  QWidget* messagesPage();
  QWidget* miscPage();
  /// "From", "To" and "Step" of three keys that follow each other.
  QGroupBox* rangeGroup(const QString& title, base::OptionId from, const QString& unit);
  /// "All" and "Nothing" for the check boxes of the keys from `first` to `last`.
  QWidget* allAndNothing(const char* name, base::OptionId first, base::OptionId last, bool mnemonics);
  QGroupBox* checkGroup(const QString& title, base::OptionId first, base::OptionId last);

  void connectRules();
  void fill();
  void fillAxes();
  void focusPage();
  /// The rules of a box that loses the focus.
  void leave(OptionField& field);
  void checkSteps(base::OptionId from);
  void checkBoxClicked(base::OptionId id);
  void browse(QLineEdit& box);

  void ok();
  void takeDefaults();
  void help();
  void writeSelectedTab();
  void applyAxes();

  [[nodiscard]] OptionField& field(base::OptionId id);
  [[nodiscard]] int tab() const { return m_tabs->currentIndex() + 1; }
  void guarded(const std::function<void()>& operation);
  /// Shows a message as soon as no mouse button is down: a box in between would swallow the click that took
  /// the focus away.
  void report(const QString& text);
  void showMessages();

  views::Shell& m_shell;
  QPointer<chart::ChartControl> m_chart;
  Services m_services;
  QTabWidget* m_tabs = nullptr;
  std::vector<OptionField> m_fields;
  std::array<Axis, 2> m_axes;
  std::array<QPushButton*, 4> m_buttons{};
  std::array<widgets::UpDown*, 3> m_convergence{};
  QStringList m_messages;
  QTimer m_messageTimer;
};

}  // namespace torvik::options
