// SPDX-License-Identifier: GPL-3.0-or-later
#include <QEvent>
#include <QFile>
#include <QGridLayout>
#include <QGroupBox>
#include <QPainter>
#include <QRadioButton>
#include <QShortcut>
#include <QSvgRenderer>
#include <utility>

#include "widgets/entry_box.h"
#include "wizard/dialog_fields.h"
#include "wizard/solid_dialog.h"

namespace torvik::wizard {

namespace {

constexpr int kChoicePixels = 96;
constexpr int kPicturePixels = 168;
constexpr std::array kWholePictures = {"whole-tapered", "whole-ellipse", "whole-rectangles"};
constexpr std::array kHollowPictures = {"hollow-tapered", "hollow-ellipse", "hollow-none"};

QString indexed(const char* name, std::size_t index) {
  return name + QString("_%1").arg(index);
}

/// One of the shapes, its letters in the colour of the window's text.
QPixmap shapePicture(const char* name, int size, const QWidget& of) {
  QFile file(QString(":/wizard/%1.svg").arg(name));
  QByteArray svg = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  QSvgRenderer renderer(svg.replace("#000000", of.palette().color(QPalette::WindowText).name().toLatin1()));
  QPixmap picture(QSize(size, size) * of.devicePixelRatioF());
  picture.setDevicePixelRatio(of.devicePixelRatioF());
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  renderer.render(&painter, QRectF(0, 0, size, size));
  return picture;
}

}  // namespace

SolidDialog::SolidDialog(views::Shell& shell, const model::Document& document,
                         std::function<void(const QString&)> openHelp, QWidget* parent)
    : QDialog(parent), m_shell(shell), m_document(document), m_openHelp(std::move(openHelp)) {
  setObjectName("frmDefSolid");
  setWindowTitle("Add Default Solid");
  setWindowModality(Qt::WindowModal);  // so that the help beside it can be read
  m_preview = new SectionPreview;
  m_pages = new QStackedWidget;
  m_pages->addWidget(buildShapePage());
  m_pages->addWidget(buildDimensionPage());
  m_pages->addWidget(buildFibrePage());
  for (int i = 0; i < m_pages->count(); ++i)
    m_pages->widget(i)->setObjectName(indexed("Picture1", static_cast<std::size_t>(i)));
  auto* layout = new QGridLayout(this);
  layout->addWidget(m_pages, 0, 0);
  layout->addWidget(m_preview, 0, 1);
  layout->addWidget(buildButtons(), 1, 0, 1, 2);
  layout->setColumnStretch(1, 1);
  layout->setHorizontalSpacing(12);

  load();
  loadPictures();
  for (QButtonGroup* group : {m_whole, m_hollow, m_mode}) {
    connect(group, &QButtonGroup::idToggled, this, [this] {
      enableFields();
      redraw();
    });
  }
  for (QLineEdit* box : m_boxes) connect(box, &QLineEdit::textChanged, this, &SolidDialog::redraw);
  showPage(0);
}

QWidget* SolidDialog::buildShapePage() {
  auto* page = new QWidget;
  auto* layout = new QHBoxLayout(page);
  layout->setContentsMargins(0, 0, 0, 0);
  const auto addGroup = [&](const char* title, const char* name, std::array<const char*, 3> captions) {
    auto* frame = new QGroupBox(title);
    auto* group = new QButtonGroup(this);
    auto* choices = new QVBoxLayout(frame);
    for (std::size_t i = 0; i < captions.size(); ++i) {
      auto* choice = new QRadioButton(captions.at(i));
      choice->setObjectName(indexed(name, i));
      choice->setIconSize(QSize(kChoicePixels, kChoicePixels));
      group->addButton(choice, static_cast<int>(i));
      choices->addWidget(choice);
    }
    choices->addStretch();
    layout->addWidget(frame);
    return group;
  };
  m_whole = addGroup("Select a Whole section shape group", "Option01",
                     {"&Trapezium\nor rectangle", "&Ellipse\nor circle", "Three\n&rectangles"});
  m_hollow = addGroup("Select a Hollow section shape group", "Option02",
                      {"Trape&zium\nor rectangle", "E&llipse\nor circle", "N&one"});
  return page;
}

QLineEdit* SolidDialog::addBox(std::size_t field) {
  auto* box = new widgets::EntryBox(kFields.at(field).filter);
  box->setObjectName(kFields.at(field).box);
  box->setMaxLength(254);  // what a key can hold
  box->setAlignment(Qt::AlignRight);
  box->setMaximumWidth(110);
  connect(box, &widgets::EntryBox::left, this, [this, field] {
    check(field);
    redraw();
  });
  m_boxes.push_back(box);
  return box;
}

QWidget* SolidDialog::buildDimensionPage() {
  auto* page = new QWidget;
  auto* layout = new QHBoxLayout(page);
  layout->setContentsMargins(0, 0, 0, 0);
  const auto addFrame = [&](const char* title, const char* name, std::size_t first, std::size_t end) {
    auto* frame = new QGroupBox(title);
    auto* fields = new QGridLayout(frame);
    std::array<QLabel*, 3> pictures{};
    for (std::size_t i = 0; i < pictures.size(); ++i) {
      pictures.at(i) = new QLabel;
      pictures.at(i)->setObjectName(indexed(name, i));
      fields->addWidget(pictures.at(i), 0, 0, 1, 4, Qt::AlignCenter);
    }
    for (std::size_t i = first; i < end; ++i) {
      // Alt and B, C or F press a button.
      const QString letter = kFields.at(i).letter;
      auto* label = new QLabel(QString("ADEP").contains(letter) ? "&" + letter : letter);
      QLineEdit* box = addBox(i);
      label->setBuddy(box);
      m_letters.push_back(label);
      const int row = fields->rowCount();
      fields->addWidget(label, row, 0);
      fields->addWidget(box, row, 1);
      fields->addWidget(new QLabel("mm"), row, 2);
    }
    fields->setColumnStretch(3, 1);
    fields->setRowStretch(fields->rowCount(), 1);
    layout->addWidget(frame);
    return pictures;
  };
  m_wholePictures = addFrame("Whole", "Image11", 0, 7);
  m_hollowPictures = addFrame("Hollow", "Image12", 7, kNumberField);
  return page;
}

QWidget* SolidDialog::buildFibrePage() {
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  layout->setContentsMargins(0, 0, 0, 0);
  auto* frame = new QGroupBox("Fibers");
  auto* fields = new QGridLayout(frame);
  m_mode = new QButtonGroup(this);
  constexpr std::array kCaptions = {"in Number", "in Height"};
  for (std::size_t i = 0; i < kCaptions.size(); ++i) {
    auto* choice = new QRadioButton(kCaptions.at(i));
    choice->setObjectName(indexed("Option21", i));
    choice->setFocusPolicy(Qt::TabFocus);  // a message about Text21 waits until a click is over
    m_mode->addButton(choice, static_cast<int>(i));
    const int row = static_cast<int>(i);
    fields->addWidget(choice, row, 0);
    fields->addWidget(addBox(kNumberField + i), row, 1);
  }
  auto& fibres = static_cast<widgets::EntryBox&>(*m_boxes[kNumberField]);
  m_upDown = new widgets::UpDown(fibres, {kFewestFibres, kMostFibres, kFibresStep, kFewestFibres});
  m_upDown->setObjectName("UpDown21");
  connect(&fibres, &widgets::EntryBox::arrowPressed, m_upDown, &widgets::UpDown::step);
  fields->addWidget(m_upDown, 0, 2);
  fields->addWidget(new QLabel("mm"), 1, 2);
  fields->setColumnStretch(3, 1);
  layout->addWidget(frame);
  auto* hint = new QLabel("Press Finish to add fibers to Solid.");
  hint->setObjectName("Label2");
  layout->addWidget(hint);
  layout->addStretch();
  return page;
}

QWidget* SolidDialog::buildButtons() {
  auto* bar = new QWidget;
  auto* layout = new QHBoxLayout(bar);
  layout->setContentsMargins(0, 0, 0, 0);
  constexpr std::array kCaptions = {"&Next >", "< &Back", "&Finish", "&Cancel", "&Help"};
  for (std::size_t i = 0; i < kCaptions.size(); ++i) {
    m_buttons.at(i) = new QPushButton(kCaptions.at(i));
    m_buttons.at(i)->setObjectName(indexed("Command1", i));
    // A click leaves no field, so that Cancel and Help bring no message about it.
    m_buttons.at(i)->setFocusPolicy(Qt::TabFocus);
  }
  for (const Button button : {kHelp, kBack, kNext, kFinish, kCancel}) {
    layout->addWidget(m_buttons.at(button));
    if (button == kHelp) layout->addStretch();
  }
  const auto help = [this] { m_openHelp("Solid wizard"); };
  connect(m_buttons[kNext], &QPushButton::clicked, this, [this] { turnPage(1); });
  connect(m_buttons[kBack], &QPushButton::clicked, this, [this] { turnPage(-1); });
  connect(m_buttons[kFinish], &QPushButton::clicked, this, &SolidDialog::finish);
  connect(m_buttons[kCancel], &QPushButton::clicked, this, &SolidDialog::reject);
  connect(m_buttons[kHelp], &QPushButton::clicked, this, help);
  connect(new QShortcut(QKeySequence::HelpContents, this), &QShortcut::activated, this, help);
  return bar;
}

void SolidDialog::loadPictures() {
  for (std::size_t i = 0; i < kWholePictures.size(); ++i) {
    const auto load = [&](const QButtonGroup& group, QLabel& picture, const char* name) {
      group.button(static_cast<int>(i))->setIcon(shapePicture(name, kChoicePixels, *this));
      picture.setPixmap(shapePicture(name, kPicturePixels, *this));
    };
    load(*m_whole, *m_wholePictures.at(i), kWholePictures.at(i));
    load(*m_hollow, *m_hollowPictures.at(i), kHollowPictures.at(i));
  }
}

void SolidDialog::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && m_hollowPictures.back()) loadPictures();
}

}  // namespace torvik::wizard
