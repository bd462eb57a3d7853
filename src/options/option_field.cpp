// SPDX-License-Identifier: GPL-3.0-or-later
#include "options/option_field.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QRadioButton>

#include "base/number_text.h"
#include "widgets/entry_box.h"
#include "widgets/shown_text.h"

namespace torvik::options {

namespace {

using Id = base::OptionId;
using base::OptionKind;

const char* const kArrangements[] = {"&Cascade", "Tile Hori&zontal", "Tile &Vertical", "Do &Nothing"};

}  // namespace

QString controlName(std::string_view name, int index) {
  return index < 0 ? widgets::shownText(name) : QString("%1_%2").arg(widgets::shownText(name)).arg(index);
}

OptionField::OptionField(const base::OptionKey& key, QObject& owner) : m_key(&key) {
  const base::OptionControl& control = key.control;
  const QString name = controlName(control.name, control.index);
  if (key.id == Id::WindowArrange) {
    choice = new QButtonGroup(&owner);
    for (int i = 0; const char* caption : kArrangements) {
      auto* button = new QRadioButton(caption);
      button->setObjectName(controlName(control.name, i));
      choice->addButton(button, i++);
    }
  } else if (key.kind == OptionKind::Flag) {
    check = new QCheckBox(widgets::shownText(control.caption));
    check->setObjectName(name);
  } else {
    const bool isText = key.kind == OptionKind::Text;
    box = new widgets::EntryBox(isText                            ? std::optional<std::string>()
                                : key.kind == OptionKind::Integer ? "Integer"
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
    m_shown = widgets::shownText(value);
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
