// SPDX-License-Identifier: GPL-3.0-or-later
#include "wizard/solid_dialog.h"

#include <QApplication>
#include <algorithm>
#include <cmath>
#include <string_view>

#include "base/errors.h"
#include "base/files.h"
#include "base/number_text.h"
#include "widgets/shown_text.h"
#include "wizard/dialog_fields.h"

namespace torvik::wizard {

namespace {

constexpr std::string_view kSection = "SolidWizard";

/// Dimensions that a shape has, by its group.
constexpr std::array<std::string_view, 3> kWholeLetters = {"ABCP", "ACP", "ABCDEFP"};
constexpr std::array<std::string_view, 3> kHollowLetters = {"abcp", "acp", ""};

std::string storedText(const base::ProfileFile& file, std::size_t field) {
  const FieldKey& of = kFields.at(field);
  if (field == kNumberField) {
    return base::plainText(file.ProfileGetInt(kSection, of.key, static_cast<int>(of.defaultValue)));
  }
  return base::plainText(file.ProfileGetDouble(kSection, of.key, of.defaultValue));
}

void checkStored(QButtonGroup& group, const base::ProfileFile& file, std::string_view key, int byDefault) {
  group.button(byDefault)->setChecked(true);
  const int id = file.ProfileGetInt(kSection, key, byDefault);
  QAbstractButton* button = group.button(id);
  if (!button) {
    throw base::InputError::ofKey(
        file.name(), kSection, key, base::plainText(id),
        "an integer from 0 to " + base::plainText(static_cast<long long>(group.buttons().size() - 1)));
  }
  button->setChecked(true);
}

class WaitCursor {
 public:
  WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
  ~WaitCursor() { QApplication::restoreOverrideCursor(); }
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;
};

}  // namespace

// ---- Keys

base::ProfileFile SolidDialog::stored() const {
  return m_document.currentFile.empty() ? m_shell.readSettings()
                                        : base::ProfileFile::read(m_document.currentFile);
}

void SolidDialog::load() {
  const base::ProfileFile file = stored();
  QStringList bad;
  const auto read = [&](const auto& take) {
    try {
      take();
    } catch (const base::InputError& error) {
      bad.append(widgets::shownText(error.what()));
    }
  };
  read([&] { checkStored(*m_whole, file, "Whole", static_cast<int>(WholeShape::Tapered)); });
  read([&] { checkStored(*m_hollow, file, "Hollow", static_cast<int>(HollowShape::None)); });
  for (std::size_t i = 0; i < kFields.size(); ++i) {
    if (i == kNumberField)
      read([&] { checkStored(*m_mode, file, "Fibers", static_cast<int>(FibreMode::InNumber)); });
    m_boxes[i]->setText(widgets::shownText(base::plainText(kFields.at(i).defaultValue)));
    read([&] { m_boxes[i]->setText(QString::fromStdString(storedText(file, i))); });
  }
  // Told, with the defaults in their places: the user can put it right here.
  if (!bad.isEmpty()) m_shell.showMessage(bad.join('\n'));
}

void SolidDialog::keep() {
  const auto write = [this](base::ProfileFile& file) {
    const auto writeId = [&](const char* key, const QButtonGroup& group) {
      file.ProfileWrite(kSection, key, base::plainText(group.checkedId()));
    };
    writeId("Whole", *m_whole);
    writeId("Hollow", *m_hollow);
    for (std::size_t i = 0; i < kFields.size(); ++i) {
      if (i == kNumberField) writeId("Fibers", *m_mode);
      file.ProfileWrite(kSection, kFields.at(i).key, m_boxes[i]->text().toStdString());
    }
  };
  if (m_document.currentFile.empty()) {
    m_shell.changeSettings(write);
    return;
  }
  if (!base::isFile(m_document.currentFile)) return;  // gone meanwhile: a stub would pass for the model
  try {
    base::ProfileFile file = stored();
    write(file);
    file.save(m_document.currentFile);
  } catch (const base::InputError&) {
    // As with the settings: entries that can not be kept keep nobody from working.
  }
}

// ---- Pages

void SolidDialog::showPage(int page) {
  m_pages->setCurrentIndex(page);
  const bool last = page == m_pages->count() - 1;
  m_buttons[kNext]->setEnabled(!last);
  m_buttons[kBack]->setEnabled(page > 0);
  m_buttons[kFinish]->setEnabled(last);
  m_buttons[last ? kFinish : kNext]->setDefault(true);
  enableFields();
  QLineEdit* const fibres = m_boxes[m_boxes[kNumberField]->isEnabled() ? kNumberField : kHeightField];
  QWidget* const first[] = {m_whole->checkedButton(), m_boxes[0], fibres};
  first[page]->setFocus(Qt::TabFocusReason);
  redraw();
}

void SolidDialog::turnPage(int by) {
  checkPage();
  showPage(m_pages->currentIndex() + by);
}

void SolidDialog::enableFields() {
  const int whole = m_whole->checkedId();
  const bool mayBeHollow = whole != static_cast<int>(WholeShape::ThreeRectangles);
  const int hollow = mayBeHollow ? m_hollow->checkedId() : static_cast<int>(HollowShape::None);
  for (QAbstractButton* button : m_hollow->buttons()) button->setEnabled(mayBeHollow);

  const std::string letters = std::string(kWholeLetters.at(static_cast<std::size_t>(whole))) +
                              std::string(kHollowLetters.at(static_cast<std::size_t>(hollow)));
  for (std::size_t i = 0; i < m_letters.size(); ++i) {
    const bool on = letters.find(kFields.at(i).letter) != std::string::npos;
    m_boxes[i]->setEnabled(on);
    m_letters[i]->setEnabled(on);
  }
  for (int i = 0; i < 3; ++i) {
    m_wholePictures.at(static_cast<std::size_t>(i))->setVisible(i == whole);
    m_hollowPictures.at(static_cast<std::size_t>(i))->setVisible(i == hollow);
  }

  const bool inNumber = m_mode->checkedId() == static_cast<int>(FibreMode::InNumber);
  QLineEdit* open = m_boxes[inNumber ? kNumberField : kHeightField];
  QLineEdit* shut = m_boxes[inNumber ? kHeightField : kNumberField];
  m_upDown->setEnabled(inNumber);
  open->setEnabled(true);
  if (shut->hasFocus()) open->setFocus();  // else it would go to the next button
  shut->setEnabled(false);
}

std::optional<SectionShape> SolidDialog::shape() const {
  SectionShape shape;
  shape.whole = static_cast<WholeShape>(m_whole->checkedId());
  shape.hollow = static_cast<HollowShape>(m_hollow->checkedId());
  shape.mode = static_cast<FibreMode>(m_mode->checkedId());
  for (std::size_t i = 0; i < kFields.size(); ++i) {
    const auto number = base::toNumber(m_boxes[i]->text().toStdString());
    if (!number && m_boxes[i]->isEnabled()) return std::nullopt;
    const double value = number.value_or(kFields.at(i).defaultValue);
    if (i == kNumberField)
      shape.fibreNumber = static_cast<int>(std::clamp(std::floor(value), -1e9, 1e9));
    else
      shape.*kFields.at(i).number = value;
  }
  return shape;
}

void SolidDialog::redraw() {
  if (const auto section = shape()) {
    m_preview->showSketch(sketchSection(*section), m_pages->currentIndex() == m_pages->count() - 1);
  } else {
    m_preview->showText("A field holds no number.");
  }
}

// ---- Fields

bool SolidDialog::check(std::size_t field) {
  QLineEdit& box = *m_boxes[field];
  const auto set = [&](const char* what, int value) {
    const QString text = QString::number(value);
    m_shell.showMessage(what + text + ") is set.");
    box.setText(text);
    return false;
  };
  try {
    auto number = base::toNumber(box.text().toStdString());
    if (!number) {
      const std::string text = storedText(stored(), field);
      box.setText(QString::fromStdString(text));
      number = base::numberOf(text, kFields.at(field).key);
    }
    if (field == kNumberField && *number < kFewestFibres)
      return set("Minimum Fibers Number (", kFewestFibres);
    if (field == kNumberField && *number > kMostFibres) return set("Maximum Fibers Number (", kMostFibres);
    if (field == kHeightField && *number == 0) return set("Positive Fibers Height (", 1);
  } catch (const base::InputError& error) {
    m_shell.showMessage(windowTitle() + ": " + widgets::shownText(error.what()));
    return false;
  }
  return true;
}

bool SolidDialog::checkPage() {
  bool quiet = true;
  for (std::size_t i = 0; i < m_boxes.size(); ++i) {
    if (m_boxes[i]->isVisibleTo(this) && m_boxes[i]->isEnabled()) quiet = check(i) && quiet;
  }
  return quiet;
}

// ---- Leaving

void SolidDialog::finish() {
  if (!checkPage()) return;  // what was set instead is for the user to see first
  QString fault;
  {
    const WaitCursor wait;
    keep();
    m_generated = {};
    try {
      const auto section = shape();
      // A section of which every zone is lower than a strip brings no row: nothing to finish with either.
      if (!section || !GenerateFibers(*section, m_generated, m_shell.readSettings()) ||
          m_generated.Solids.empty()) {
        fault = "Invalid section.";
      }
    } catch (const std::exception& error) {
      fault = windowTitle() + ": " + widgets::shownText(error.what());
    }
  }
  if (!fault.isEmpty()) {
    m_shell.showMessage(fault);
    return;
  }
  m_failureNumber = 0;
  accept();
}

}  // namespace torvik::wizard
