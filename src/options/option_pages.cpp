// SPDX-License-Identifier: GPL-3.0-or-later
// The pages of the dialog: which controls they have and where these stand.
#include <QButtonGroup>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>
#include <QVBoxLayout>

#include "options/option_dialog.h"
#include "widgets/entry_box.h"
#include "widgets/shown_text.h"
#include "widgets/up_down.h"

namespace torvik::options {

namespace {

using Id = base::OptionId;
using widgets::UpDownRange;

const char* const kCaptions[kTabs] = {"Calculation", "Chart/File/Table", "SS Curve",
                                      "Axis",        "Messages",         "Misc"};
constexpr UpDownRange kConvergence[] = {{500, 5000, 500, 500}, {1, 10, 1, 6}, {1, 10, 1, 3}};
constexpr UpDownRange kDivision{chart::kLeastDivision, chart::kMostDivision, 1, 3};
constexpr int kNumberCharacters = 16;
constexpr int kSmallNumberCharacters = 7;

Id operator+(Id id, int offset) {
  return static_cast<Id>(static_cast<int>(id) + offset);
}

void setCharacters(QLineEdit& box, int characters) {
  box.setMinimumWidth(characters * box.fontMetrics().horizontalAdvance('0'));
}

QLabel* labelOf(QWidget& control, const QString& caption) {
  auto* label = new QLabel(caption);
  label->setBuddy(&control);
  return label;
}

/// A page with its groups at the top.
QWidget* pageOf(QLayout* groups) {
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  layout->addLayout(groups);
  layout->addStretch();
  return page;
}

QHBoxLayout* tightRow(std::initializer_list<QWidget*> widgets) {
  auto* row = new QHBoxLayout;
  row->setSpacing(0);
  for (QWidget* widget : widgets) row->addWidget(widget);
  return row;
}

}  // namespace

void OptionDialog::build() {
  m_fields.reserve(base::optionKeys().size());
  for (const base::OptionKey& key : base::optionKeys())
    if (key.control.tab > 0) m_fields.emplace_back(key, *this);

  m_tabs = new QTabWidget;
  m_tabs->setObjectName("TabStrip1");
  QWidget* const pages[kTabs] = {calculationPage(), chartFileTablePage(), curvePage(),
                                 axisPage(),        messagesPage(),       miscPage()};
  for (int i = 0; i < kTabs; ++i) {
    pages[i]->setObjectName(controlName("Picture1", i));
    m_tabs->addTab(pages[i], kCaptions[i]);
  }

  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  const struct {
    const char* caption;
    void (OptionDialog::*click)();
  } kButtons[] = {{"OK", &OptionDialog::ok},
                  {"Cancel", &OptionDialog::reject},
                  {"&Default...", &OptionDialog::takeDefaults},
                  {"&Help", &OptionDialog::help}};
  for (std::size_t i = 0; i < m_buttons.size(); ++i) {
    m_buttons[i] = new QPushButton(kButtons[i].caption);
    m_buttons[i]->setObjectName(controlName("Command1", static_cast<int>(i)));
    connect(m_buttons[i], &QPushButton::clicked, this, kButtons[i].click);
    buttons->addWidget(m_buttons[i]);
  }
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(m_tabs);
  layout->addLayout(buttons);
  m_buttons[0]->setDefault(true);  // not before the dialog has it
}

QGroupBox* OptionDialog::rangeGroup(const QString& title, Id from, const QString& unit) {
  auto* group = new QGroupBox(title);
  auto* grid = new QGridLayout(group);
  for (int i = 0; i < 3; ++i) {
    OptionField& one = field(from + i);
    setCharacters(*one.box, kNumberCharacters);
    one.box->setAccessibleName(title + ' ' + widgets::shownText(one.control().caption).remove('&'));
    grid->addWidget(labelOf(*one.box, widgets::shownText(one.control().caption)), i, 0);
    grid->addWidget(one.box, i, 1);
    if (!unit.isEmpty()) grid->addWidget(new QLabel(unit), i, 2);
  }
  grid->setColumnStretch(1, 1);
  return group;
}

QWidget* OptionDialog::calculationPage() {
  const QString unit = "1/mm";
  auto* convergence = new QGroupBox("Convergence");
  auto* rows = new QGridLayout(convergence);
  for (int i = 0; i < 3; ++i) {
    OptionField& one = field(Id::ConvergenceMaxIteration + i);
    auto* spin = new widgets::UpDown(*one.box, kConvergence[i]);
    spin->setObjectName(controlName("UpDown03", i));
    m_convergence[static_cast<std::size_t>(i)] = spin;
    setCharacters(*one.box, kSmallNumberCharacters);
    rows->addWidget(labelOf(*one.box, widgets::shownText(one.control().caption)), i, 0);
    if (i > 0) rows->addWidget(new QLabel("1/10^"), i, 1, Qt::AlignRight | Qt::AlignVCenter);
    rows->addLayout(tightRow({one.box, spin}), i, 2);
  }
  rows->setColumnStretch(3, 1);

  auto* groups = new QGridLayout;
  groups->addWidget(rangeGroup("Curvature (Small Range)", Id::CurvatureSmallRangeFrom, unit), 0, 0);
  groups->addWidget(rangeGroup("Curvature (Large Range)", Id::CurvatureLargeRangeFrom, unit), 0, 1);
  groups->addWidget(convergence, 1, 0, 1, 2);
  return pageOf(groups);
}

QGroupBox* OptionDialog::checkGroup(const QString& title, Id first, Id last) {
  auto* group = new QGroupBox(title);
  auto* column = new QVBoxLayout(group);
  for (Id id = first; id <= last; id = id + 1) {
    field(id).check->setAccessibleName(title + ' ' +
                                       widgets::shownText(field(id).control().caption).remove('&'));
    column->addWidget(field(id).check);
  }
  return group;
}

QWidget* OptionDialog::allAndNothing(const char* name, Id first, Id last, bool mnemonics) {
  auto* pair = new QWidget;
  auto* row = new QHBoxLayout(pair);
  row->setContentsMargins(0, 0, 0, 0);
  const char* const kAllAndNothing[] = {"&All", "&Nothing"};
  for (const int index : {0, 1}) {
    auto* button = new QPushButton(kAllAndNothing[index]);
    if (!mnemonics) button->setText(button->text().remove('&'));
    button->setObjectName(controlName(name, index));
    connect(button, &QPushButton::clicked, this, [this, first, last, on = index == 0] {
      for (Id id = first; id <= last; id = id + 1) {
        field(id).check->setChecked(on);
        checkBoxClicked(id);
      }
    });
    row->addWidget(button);
  }
  row->addStretch();
  return pair;
}

QWidget* OptionDialog::chartFileTablePage() {
  QGroupBox* chart = checkGroup("Chart", Id::ChartMomentCurvature, Id::ChartDisplacement);
  chart->layout()->addWidget(
      allAndNothing("Command11", Id::ChartMomentCurvature, Id::ChartDisplacement, true));
  QGroupBox* file = checkGroup("File", Id::FileSolver, Id::FileSolver);
  QGroupBox* table = checkGroup("Table", Id::TableSolver, Id::TableTendon);
  // Its letters would be those of the chart's pair.
  table->layout()->addWidget(allAndNothing("Command13", Id::TableSolver, Id::TableTendon, false));
  auto* groups = new QGridLayout;
  groups->addWidget(chart, 0, 0, 2, 1);
  groups->addWidget(file, 0, 1);
  groups->addWidget(table, 1, 1);
  groups->setColumnStretch(0, 1);
  groups->setColumnStretch(1, 1);
  return pageOf(groups);
}

QWidget* OptionDialog::curvePage() {
  auto* groups = new QHBoxLayout;
  groups->addWidget(rangeGroup("Strain for Solid", Id::StrainSolidFrom, {}));
  groups->addWidget(rangeGroup("Strain for Bar", Id::StrainBarFrom, {}));
  groups->addWidget(rangeGroup("Strain for Tendon", Id::StrainTendonFrom, {}));
  return pageOf(groups);
}

QWidget* OptionDialog::axisPage() {
  auto* group = new QGroupBox("Scale");
  auto* grid = new QGridLayout(group);
  const char* const kHeadings[] = {"Min", "Max", "Div"};
  for (int column = 0; column < 3; ++column)
    grid->addWidget(new QLabel(kHeadings[column]), 0, column + 2, Qt::AlignHCenter);
  const char* const kAxes[] = {"&X", "&Y"};
  const char* const kAuto[] = {"&Auto", "A&uto"};
  for (int i = 0; i < 2; ++i) {
    Axis& axis = m_axes[static_cast<std::size_t>(i)];
    axis.automatic = new QCheckBox(kAuto[i]);
    axis.automatic->setObjectName(controlName("Check31", i));
    const QString name = QString(kAxes[i]).remove('&');
    axis.automatic->setAccessibleName(name + " Auto");
    axis.minimum = new widgets::EntryBox("-Double");
    axis.maximum = new widgets::EntryBox("-Double");
    axis.division = new widgets::EntryBox("");  // the spin buttons and the arrow keys change it
    auto* spin = new widgets::UpDown(*axis.division, kDivision);
    spin->setObjectName(controlName("UpDown31", i));
    connect(axis.division, &widgets::EntryBox::arrowPressed, spin, &widgets::UpDown::step);
    const char* const kNames[] = {"Text31", "Text32", "Text33"};
    for (std::size_t k = 0; k < 3; ++k) {
      widgets::EntryBox* const box = axis.boxes()[k];
      box->setObjectName(controlName(kNames[k], i));
      box->setAlignment(Qt::AlignRight);
      box->setAccessibleName(name + ' ' + kHeadings[k]);
      setCharacters(*box, k < 2 ? kNumberCharacters : kSmallNumberCharacters);
      connect(axis.automatic, &QCheckBox::toggled, box, &QWidget::setDisabled);
    }
    connect(axis.automatic, &QCheckBox::toggled, spin, &QWidget::setDisabled);
    grid->addWidget(labelOf(*axis.minimum, kAxes[i]), i + 1, 0);
    grid->addWidget(axis.automatic, i + 1, 1);
    grid->addWidget(axis.minimum, i + 1, 2);
    grid->addWidget(axis.maximum, i + 1, 3);
    grid->addLayout(tightRow({axis.division, spin}), i + 1, 4);
  }
  grid->setColumnStretch(2, 1);
  grid->setColumnStretch(3, 1);
  auto* groups = new QVBoxLayout;
  groups->addWidget(group);
  return pageOf(groups);
}

QWidget* OptionDialog::messagesPage() {
  constexpr int kRows = 5;
  auto* page = new QWidget;
  auto* grid = new QGridLayout;
  auto* layout = new QVBoxLayout(page);
  layout->addLayout(grid);
  const auto checkOf = [this](int i) { return field(Id::MessagesBeepStart + i).check; };
  const auto boxOf = [this](int i) { return field(Id::MessagesBeepStartSound + i).box; };
  // Column by column, which is the order of the Tab key.
  for (int i = 0; i < kRows; ++i) grid->addWidget(checkOf(i), i, 0);
  const auto addToRow = [&](int i, int column, QWidget& control, const char* purpose) {
    control.setAccessibleName(checkOf(i)->text().remove('&') + ": " + purpose);
    control.setEnabled(false);  // as the check box, until that is filled
    connect(checkOf(i), &QCheckBox::toggled, &control, &QWidget::setEnabled);
    grid->addWidget(&control, i, column);
  };
  for (int i = 0; i < kRows; ++i) {
    setCharacters(*boxOf(i), 2 * kNumberCharacters);
    addToRow(i, 1, *boxOf(i), "Sound");
  }
  const auto buttonOf = [&](int i, int column, const char* name, const char* purpose) {
    auto* button = new QToolButton;
    button->setObjectName(controlName(name, i));
    button->setToolTip(purpose);
    button->setFocusPolicy(Qt::StrongFocus);
    const int height = boxOf(i)->sizeHint().height();
    button->setFixedSize(height * 5 / 4, height);
    addToRow(i, column, *button, purpose);
    return button;
  };
  for (int i = 0; i < kRows; ++i) {
    QToolButton* const play = buttonOf(i, 2, "Command41", "Play");
    play->setArrowType(Qt::RightArrow);
    connect(play, &QToolButton::clicked, this, [this, box = boxOf(i)] { m_services.play(box->text()); });
  }
  for (int i = 0; i < kRows; ++i) {
    QToolButton* const choose = buttonOf(i, 3, "Command42", "Browse");
    choose->setText("...");
    connect(choose, &QToolButton::clicked, this, [this, box = boxOf(i)] { browse(*box); });
  }
  grid->addWidget(allAndNothing("Command43", Id::MessagesBeepStart, Id::MessagesPauseWatch, true), kRows, 0);
  grid->setColumnStretch(1, 1);
  layout->addStretch();
  return page;
}

QWidget* OptionDialog::miscPage() {
  auto* group = new QGroupBox("Window Arrange");
  auto* column = new QVBoxLayout(group);
  for (QAbstractButton* button : field(Id::WindowArrange).choice->buttons()) column->addWidget(button);
  auto* groups = new QVBoxLayout;
  groups->addWidget(group);
  return pageOf(groups);
}

}  // namespace torvik::options
