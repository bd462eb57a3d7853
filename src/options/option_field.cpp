// SPDX-License-Identifier: GPL-3.0-or-later
#include "options/option_field.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QRadioButton>
#include <array>

#include "base/number_text.h"
#include "views/entry_box.h"
#include "views/shown_text.h"

namespace torvik::options {

namespace {

using Id = base::OptionId;
using base::OptionKind;

constexpr std::array kControls = {
    OptionControl{Id::CurvatureSmallRangeFrom, 1, "Text01", 0, "&From"},
    OptionControl{Id::CurvatureSmallRangeTo, 1, "Text01", 1, "&To"},
    OptionControl{Id::CurvatureSmallRangeStep, 1, "Text01", 2, "&Step"},
    OptionControl{Id::CurvatureLargeRangeFrom, 1, "Text02", 0, "F&rom"},
    OptionControl{Id::CurvatureLargeRangeTo, 1, "Text02", 1, "T&o"},
    OptionControl{Id::CurvatureLargeRangeStep, 1, "Text02", 2, "St&ep"},
    OptionControl{Id::ConvergenceMaxIteration, 1, "Text03", 0, "Max. &Iteration"},
    OptionControl{Id::ConvergenceDiffWidth, 1, "Text03", 1, "Diff. &Width"},
    OptionControl{Id::ConvergencePrecision, 1, "Text03", 2, "&Precision"},
    OptionControl{Id::ChartMomentCurvature, 2, "Check11", 0, "&Moment-Curvature"},
    OptionControl{Id::ChartLoadDisplacement, 2, "Check11", 1, "&Load-Displacement"},
    OptionControl{Id::ChartStress, 2, "Check11", 2, "&Stress"},
    OptionControl{Id::ChartStrain, 2, "Check11", 3, "S&train"},
    OptionControl{Id::ChartMoment, 2, "Check11", 4, "M&oment"},
    OptionControl{Id::ChartCurvature, 2, "Check11", 5, "C&urvature"},
    OptionControl{Id::ChartDisplacement, 2, "Check11", 6, "Dis&placement"},
    OptionControl{Id::FileSolver, 2, "Check12", -1, "Sol&ver"},
    OptionControl{Id::TableSolver, 2, "Check13", 0, "Solve&r"},
    OptionControl{Id::TableSection, 2, "Check13", 1, "Se&ction"},
    OptionControl{Id::TableSolid, 2, "Check13", 2, "Sol&id"},
    OptionControl{Id::TableBar, 2, "Check13", 3, "&Bar"},
    OptionControl{Id::TableTendon, 2, "Check13", 4, "T&endon"},
    OptionControl{Id::StrainSolidFrom, 3, "Text21", 0, "&From"},
    OptionControl{Id::StrainSolidTo, 3, "Text21", 1, "&To"},
    OptionControl{Id::StrainSolidStep, 3, "Text21", 2, "&Step"},
    OptionControl{Id::StrainBarFrom, 3, "Text22", 0, "F&rom"},
    OptionControl{Id::StrainBarTo, 3, "Text22", 1, "T&o"},
    OptionControl{Id::StrainBarStep, 3, "Text22", 2, "St&ep"},
    OptionControl{Id::StrainTendonFrom, 3, "Text23", 0, "Fro&m"},
    OptionControl{Id::StrainTendonTo, 3, "Text23", 1, "To"},
    OptionControl{Id::StrainTendonStep, 3, "Text23", 2, "Ste&p"},
    OptionControl{Id::MessagesBeepStart, 5, "Check41", 0, "Beep at &Start"},
    OptionControl{Id::MessagesBeepEnd, 5, "Check41", 1, "Beep at &End"},
    OptionControl{Id::MessagesBeepConvergence, 5, "Check41", 2, "Beep at &Convergence"},
    OptionControl{Id::MessagesPausePreLoading, 5, "Check41", 3, "Pause in &Pre-Loading"},
    OptionControl{Id::MessagesPauseWatch, 5, "Check41", 4, "Pause at &Watch"},
    OptionControl{Id::MessagesBeepStartSound, 5, "Text41", 0, ""},
    OptionControl{Id::MessagesBeepEndSound, 5, "Text41", 1, ""},
    OptionControl{Id::MessagesBeepConvergenceSound, 5, "Text41", 2, ""},
    OptionControl{Id::MessagesPausePreLoadingSound, 5, "Text41", 3, ""},
    OptionControl{Id::MessagesPauseWatchSound, 5, "Text41", 4, ""},
    OptionControl{Id::WindowArrange, 6, "Option51", -1, ""},
};

constexpr bool followsKeys() {
  for (std::size_t i = 1; i < kControls.size(); ++i)
    if (kControls[i].id <= kControls[i - 1].id || kControls[i].tab < kControls[i - 1].tab) return false;
  return kControls.size() == static_cast<std::size_t>(Id::WindowArrange) + 1 - 2;
}
static_assert(followsKeys());

const char* const kArrangements[] = {"&Cascade", "Tile Hori&zontal", "Tile &Vertical", "Do &Nothing"};

}  // namespace

std::span<const OptionControl> optionControls() {
  return kControls;
}

QString controlName(const char* name, int index) {
  return index < 0 ? QString(name) : QString("%1_%2").arg(name).arg(index);
}

OptionField::OptionField(const OptionControl& control, QObject& owner) : m_control(&control) {
  const QString name = controlName(control.name, control.index);
  if (control.id == Id::WindowArrange) {
    choice = new QButtonGroup(&owner);
    for (int i = 0; const char* caption : kArrangements) {
      auto* button = new QRadioButton(caption);
      button->setObjectName(controlName(control.name, i));
      choice->addButton(button, i++);
    }
  } else if (key().kind == OptionKind::Flag) {
    check = new QCheckBox(control.caption);
    check->setObjectName(name);
  } else {
    const bool isText = key().kind == OptionKind::Text;
    box = new views::EntryBox(isText                              ? std::optional<std::string>()
                              : key().kind == OptionKind::Integer ? "Integer"
                                                                  : "Double");
    box->setObjectName(name);
    if (!isText) box->setAlignment(Qt::AlignRight);
  }
}

bool OptionField::show(const std::string& value) {
  if (check) {
    check->setChecked(value == "1");
  } else if (choice) {
    for (QAbstractButton* button : choice->buttons())
      if (base::plainText(choice->id(button)) == value) {
        button->setChecked(true);
        return true;
      }
    return false;
  } else {
    m_value = value;
    m_shown = views::shownText(value);
    box->setText(m_shown);
    box->setCursorPosition(0);
  }
  return true;
}

std::optional<std::string> OptionField::value() const {
  if (check) return check->isChecked() ? "1" : "0";
  if (choice) {
    if (choice->checkedId() < 0) return std::nullopt;
    return base::plainText(choice->checkedId());
  }
  return box->text() == m_shown ? m_value : box->text().toStdString();
}

bool OptionField::holdsNumber() const {
  return base::toNumber(box->text().toStdString()).has_value();
}

std::string OptionField::stored(const base::ProfileFile& settings) const {
  const base::OptionKey& k = key();
  switch (k.kind) {
    case OptionKind::Flag:
      return base::optionFlag(settings, k.id) ? "1" : "0";
    case OptionKind::Integer:
      return base::plainText(settings.ProfileGetInt(
          base::kOptionSection, k.name,
          static_cast<std::int32_t>(base::numberOf(k.defaultText, "default of an option"))));
    case OptionKind::Real:
      return base::plainText(base::optionReal(settings, k.id));
    case OptionKind::Text:
      break;
  }
  return base::optionText(settings, k.id);
}

}  // namespace torvik::options
