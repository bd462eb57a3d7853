// SPDX-License-Identifier: GPL-3.0-or-later
#include "options/option_dialog.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGuiApplication>
#include <QPushButton>
#include <QShortcut>
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "base/fault.h"
#include "base/number_text.h"
#include "base/title.h"
#include "widgets/entry_box.h"
#include "widgets/shown_text.h"
#include "widgets/up_down.h"

namespace torvik::options {

namespace {

using Id = base::OptionId;
using base::OptionKind;

const QString kNoValue = "N/A";
constexpr double kMostSteps = 3000;
constexpr int kMouseInterval = 20;  // ms

std::optional<double> numberIn(const QLineEdit& box) {
  return base::toNumber(box.text().toStdString());
}

base::InputError badKey(const base::ProfileFile& settings, Id id, const std::string& value,
                        const char* expected) {
  return base::InputError::ofKey(settings.name(), base::kOptionSection, base::optionKey(id).name, value,
                                 expected);
}

}  // namespace

OptionDialog::OptionDialog(views::Shell& shell, chart::ChartControl* chart, Services services,
                           QWidget* parent)
    : QDialog(parent), m_shell(shell), m_chart(chart), m_services(std::move(services)) {
  setObjectName("frmOption");
  setWindowTitle("Option");
  setWindowModality(Qt::WindowModal);
  m_messageTimer.setSingleShot(true);
  connect(&m_messageTimer, &QTimer::timeout, this, &OptionDialog::showMessages);
  build();
  connectRules();
  fill();
  connect(m_tabs, &QTabWidget::currentChanged, this, &OptionDialog::focusPage);
  focusPage();
}

void OptionDialog::connectRules() {
  for (OptionField& one : m_fields) {
    if (one.check)
      connect(one.check, &QCheckBox::clicked, this, [this, &one] { checkBoxClicked(one.key().id); });
    if (one.box && one.key().kind != OptionKind::Text)
      connect(one.box, &widgets::EntryBox::left, this, [this, &one] { guarded([&] { leave(one); }); });
  }
  for (const Id id : {Id::CurvatureSmallRangeFrom, Id::CurvatureSmallRangeTo, Id::CurvatureSmallRangeStep})
    connect(field(id).box, &QLineEdit::textChanged, this, [this] {
      field(Id::CurvatureLargeRangeFrom).box->setText(field(Id::CurvatureSmallRangeTo).box->text());
    });
  for (Axis& axis : m_axes)
    for (widgets::EntryBox* box : axis.boxes()) {
      connect(box, &QLineEdit::textChanged, this, [&axis] { axis.automatic->setChecked(false); });
      connect(box, &widgets::EntryBox::left, this, [box] {
        if (!numberIn(*box)) box->setText(kNoValue);
      });
    }
  auto* nextTab = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Tab), this);
  connect(new QShortcut(QKeySequence::HelpContents, this), &QShortcut::activated, this, &OptionDialog::help);
  connect(nextTab, &QShortcut::activated, this, [this] { m_tabs->setCurrentIndex(tab() % kTabs); });
}

OptionField& OptionDialog::field(Id id) {
  const auto found = std::find_if(m_fields.begin(), m_fields.end(),
                                  [&](const OptionField& one) { return one.key().id == id; });
  if (found == m_fields.end()) throw base::InternalError(base::kImpossibleCase, "control of an option");
  return *found;
}

// ---- Filling

void OptionDialog::fill() {
  const base::ProfileFile settings = m_shell.readSettings();
  QStringList bad;
  const auto tell = [&](const base::InputError& error) { bad.append(widgets::shownText(error.what())); };

  const int selected = settings.ProfileGetInt(base::kOptionSection, base::optionKey(Id::SelectedTab).name, 1);
  if (selected >= 1 && selected <= kTabs)
    m_tabs->setCurrentIndex(selected - 1);
  else
    tell(badKey(settings, Id::SelectedTab, base::plainText(selected), "an integer from 1 to 6"));

  for (OptionField& one : m_fields) {
    try {
      const std::string value = one.stored(settings);
      if (!one.show(value)) tell(badKey(settings, one.key().id, value, "an integer from 0 to 3"));
    } catch (const base::InputError& error) {
      one.show(settings.ProfileGetString(base::kOptionSection, one.key().name, {}));
      tell(error);
    }
  }
  for (Axis& axis : m_axes)
    for (widgets::EntryBox* box : axis.boxes()) box->setText(kNoValue);
  fillAxes();
  if (!bad.isEmpty()) report(bad.join("\r"));
}

void OptionDialog::fillAxes() {
  if (!m_chart) return;
  for (int i = 0; i < 2; ++i) {
    const chart::ValueScale scale = m_chart->valueScale(i);
    const Axis& axis = m_axes[static_cast<std::size_t>(i)];
    axis.minimum->setText(QString::fromStdString(base::plainText(scale.Minimum)));
    axis.maximum->setText(QString::fromStdString(base::plainText(scale.Maximum)));
    axis.division->setText(QString::number(scale.MajorDivision));
    axis.automatic->setChecked(scale.Auto);
  }
}

void OptionDialog::focusPage() {
  QWidget* const kFirst[kTabs] = {
      field(Id::CurvatureSmallRangeTo).box, field(Id::ChartMomentCurvature).check,
      field(Id::StrainSolidFrom).box,       m_axes[0].automatic,
      field(Id::MessagesBeepStart).check,   field(Id::WindowArrange).choice->checkedButton()};
  if (QWidget* first = kFirst[m_tabs->currentIndex()]) first->setFocus();
}

// ---- Rules while editing

void OptionDialog::leave(OptionField& one) {
  if (!one.holdsNumber()) one.show(one.stored(m_shell.readSettings()));
  const Id id = one.key().id;
  if (one.key().kind == OptionKind::Integer) {
    const auto index = static_cast<std::size_t>(one.control().index);
    const double value = base::numberOf(one.box->text().toStdString(), one.control().name.data());
    const double bounded = m_convergence[index]->bounded(value);
    if (bounded != value) one.box->setText(QString::fromStdString(base::plainText(bounded)));
  } else if (id >= Id::StrainSolidFrom && id <= Id::StrainTendonStep) {
    checkSteps(static_cast<Id>(static_cast<int>(id) - one.control().index));
  }
}

void OptionDialog::checkSteps(Id from) {
  std::array<double, 3> range{};
  for (std::size_t i = 0; i < range.size(); ++i) {
    const OptionField& one = field(static_cast<Id>(static_cast<std::size_t>(from) + i));
    range[i] = base::numberOf(one.box->text().toStdString(), one.key().name.data());
  }
  if (base::divide(range[1] - range[0], range[2], "number of steps") > kMostSteps) report("Too many steps.");
}

void OptionDialog::checkBoxClicked(Id id) {
  QCheckBox& file = *field(Id::FileSolver).check;
  QCheckBox& table = *field(Id::TableSolver).check;
  if (id == Id::FileSolver && !file.isChecked()) table.setChecked(true);
  if (id >= Id::TableSolver && id <= Id::TableTendon && !table.isChecked()) file.setChecked(true);
}

void OptionDialog::browse(QLineEdit& box) {
  guarded([&] {
    const QString folder = m_services.soundFolder.isEmpty() ? QString() : m_services.soundFolder + '/';
    const QString path = m_shell.askOpenFile(QString(base::kTitle) + " - Messages", folder + "*.wav",
                                             "Wave Files (*.wav);;All Files (*)", "wav");
    if (!path.isEmpty()) box.setText(path);
  });
}

// ---- Buttons

void OptionDialog::ok() {
  writeSelectedTab();
  m_buttons[0]->setFocus();  // Enter leaves no box by itself
  showMessages();
  guarded([this] {
    m_shell.writeSettings([this](base::ProfileFile& settings) {
      for (const OptionField& one : m_fields)
        if (const auto value = one.value())
          settings.ProfileWrite(base::kOptionSection, one.key().name, *value);
    });
    applyAxes();
    accept();
  });
}

void OptionDialog::applyAxes() {
  if (!m_chart) return;
  constexpr double kRefused = std::numeric_limits<double>::quiet_NaN();
  for (int i = 0; i < 2; ++i) {
    const Axis& axis = m_axes[static_cast<std::size_t>(i)];
    const double division = std::round(numberIn(*axis.division).value_or(0));
    chart::ValueScale scale;
    scale.Auto = axis.automatic->isChecked();
    scale.Minimum = numberIn(*axis.minimum).value_or(kRefused);
    scale.Maximum = numberIn(*axis.maximum).value_or(kRefused);
    scale.MajorDivision = division >= chart::kLeastDivision && division <= chart::kMostDivision
                              ? static_cast<int>(division)
                              : 0;
    m_chart->setValueScale(i, scale);  // what the chart can not take is skipped
  }
}

void OptionDialog::reject() {
  writeSelectedTab();
  showMessages();
  QDialog::reject();
}

void OptionDialog::takeDefaults() {
  writeSelectedTab();
  showMessages();
  if (!m_shell.ask("Take default options for this tab ?")) return;
  if (tab() == kAxisTab) fillAxes();
  for (OptionField& one : m_fields)
    if (one.control().tab == tab()) one.show(std::string(one.key().defaultText));
}

void OptionDialog::help() {
  writeSelectedTab();
  m_services.help(m_tabs->tabText(m_tabs->currentIndex()) + QString::fromUtf8("Option―"));
}

void OptionDialog::writeSelectedTab() {
  m_shell.changeSettings([this](base::ProfileFile& settings) {
    settings.ProfileWrite(base::kOptionSection, base::optionKey(Id::SelectedTab).name,
                          base::plainText(tab()));
  });
}

// ---- Messages

void OptionDialog::guarded(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const std::exception& error) {
    report("Option: " + widgets::shownText(error.what()));
  }
}

void OptionDialog::report(const QString& text) {
  m_messages.append(text);
  m_messageTimer.start(0);
}

void OptionDialog::showMessages() {
  if (QGuiApplication::mouseButtons() != Qt::NoButton) {
    m_messageTimer.start(kMouseInterval);
    return;
  }
  while (!m_messages.isEmpty()) m_shell.showMessage(m_messages.takeFirst());
}

}  // namespace torvik::options
