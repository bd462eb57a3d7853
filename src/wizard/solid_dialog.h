// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QButtonGroup>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <array>
#include <functional>
#include <optional>
#include <vector>

#include "base/profile.h"
#include "model/input_file.h"
#include "views/shell.h"
#include "widgets/up_down.h"
#include "wizard/fibre_generation.h"
#include "wizard/section_preview.h"

namespace torvik::wizard {

/// `frmDefSolid`: asks for a section shape, its dimensions and how fine to cut it, on three pages. What was
/// entered is kept in section `SolidWizard` of the current input file, and of the settings file where none is
/// open.
class SolidDialog : public QDialog {
  Q_OBJECT

 public:
  static constexpr int kCancelled = 32755;

  /// @param openHelp  opens the help at a topic
  /// A key that holds no value of its kind is told, and its default shown.
  /// @throws InputError where the file can not be read
  SolidDialog(views::Shell& shell, const model::Document& document,
              std::function<void(const QString&)> openHelp, QWidget* parent = nullptr);

  /// 0 after Finish, `kCancelled` however else the dialog was left.
  [[nodiscard]] int failureNumber() const { return m_failureNumber; }
  /// The rows to add, in `Solids`: at least one after Finish, none after Cancel.
  [[nodiscard]] const model::ObjectTables& generated() const { return m_generated; }

 protected:
  void changeEvent(QEvent* event) override;

 private:
  enum Button : std::size_t { kNext, kBack, kFinish, kCancel, kHelp };

  QWidget* buildShapePage();
  QWidget* buildDimensionPage();
  QWidget* buildFibrePage();
  QWidget* buildButtons();
  QLineEdit* addBox(std::size_t field);
  void loadPictures();

  void load();
  void keep();
  [[nodiscard]] base::ProfileFile stored() const;

  void showPage(int page);
  void enableFields();
  void redraw();
  [[nodiscard]] std::optional<SectionShape> shape() const;
  /// What leaving a field brings. @return false where a message was shown
  bool check(std::size_t field);
  /// `check` of every field that is open on the page at hand.
  bool checkPage();
  void turnPage(int by);
  void finish();

  views::Shell& m_shell;
  const model::Document& m_document;
  std::function<void(const QString&)> m_openHelp;
  QStackedWidget* m_pages = nullptr;
  QButtonGroup* m_whole = nullptr;
  QButtonGroup* m_hollow = nullptr;
  QButtonGroup* m_mode = nullptr;
  std::vector<QLineEdit*> m_boxes;  ///< in the order of the keys
  std::vector<QLabel*> m_letters;   ///< of the dimensions
  std::array<QLabel*, 3> m_wholePictures{};
  std::array<QLabel*, 3> m_hollowPictures{};
  widgets::UpDown* m_upDown = nullptr;
  std::array<QPushButton*, 5> m_buttons{};
  SectionPreview* m_preview = nullptr;
  model::ObjectTables m_generated;
  int m_failureNumber = kCancelled;
};

}  // namespace torvik::wizard
