// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/status_panels.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QHBoxLayout>

namespace torvik::app {

namespace {

constexpr int kMargin = 2;      // of a panel, left and right
constexpr int kSpacing = 4;     // between caption and value
constexpr int kBarSpacing = 8;  // between panels

/// The keyboard's Num Lock light, where the system shows it: "NUM", else empty.
QString numLockText() {
  const QDir leds("/sys/class/leds");
  for (const QString& name : leds.entryList({"*::numlock"}, QDir::Dirs | QDir::System)) {
    QFile brightness(leds.filePath(name + "/brightness"));
    if (brightness.open(QIODevice::ReadOnly) && brightness.readAll().trimmed() != "0") return "NUM";
  }
  return {};
}

}  // namespace

StatusPanels::StatusPanels(QWidget* parent) : QStatusBar(parent) {
  setObjectName("StatusBar1");
  QFont small = font();
  small.setPointSizeF(small.pointSizeF() * 0.9);
  setFont(small);
  addPanel("Beam Top", "Top", "-0.0000E+00");
  addPanel("Beam Bottom", "Bottom", "-0.0000E+00");
  addPanel("Status", {}, "Axial force (MM)");
  addPanel("Count", "Count", "00000");
  addPanel("Max. Iteration", "Max.", "00000");
  addPanel("Mu", "Mu", "-0.0000E+00");
  addPanel("Space1", {}, "");
  addPanel("Num Lock", {}, "NUM");
  addPanel("Date", {}, "0000-00-00");
  addPanel("Time", {}, "00:00");
  setPanel("Mu", {});
  connect(&m_clock, &QTimer::timeout, this, &StatusPanels::showClock);
  m_clock.start(1000);
  showClock();
}

void StatusPanels::addPanel(const QString& key, const QString& caption, const QString& widest) {
  auto* panel = new QWidget;
  auto* layout = new QHBoxLayout(panel);
  layout->setContentsMargins(kMargin, 0, kMargin, 0);
  layout->setSpacing(kSpacing);
  panel->setToolTip(key);
  if (!caption.isEmpty()) {
    auto* title = new QLabel(caption);
    title->setFont(font());
    QPalette quiet = palette();  // set apart from the value, and still easy to read
    const QColor text = quiet.color(QPalette::WindowText);
    const QColor ground = quiet.color(QPalette::Window);
    quiet.setColor(QPalette::WindowText, QColor((text.red() * 3 + ground.red() * 2) / 5,
                                                (text.green() * 3 + ground.green() * 2) / 5,
                                                (text.blue() * 3 + ground.blue() * 2) / 5));
    title->setPalette(quiet);
    layout->addWidget(title);
    m_panels[key].caption = title;
  }
  auto* label = new QLabel;
  label->setFont(font());
  label->setObjectName(key);
  label->setTextFormat(Qt::PlainText);
  label->setSizePolicy(QSizePolicy::Ignored,
                       QSizePolicy::Preferred);  // a longer text does not widen the window
  label->setMinimumWidth(label->fontMetrics().horizontalAdvance(widest));
  layout->addWidget(label, 1);
  addPermanentWidget(panel, key == "Space1" ? 1 : 0);
  m_panels[key].value = label;
}

void StatusPanels::resizeEvent(QResizeEvent* event) {
  QStatusBar::resizeEvent(event);
  // A value that is cut would read as another number: what matters least goes whole, the captions first.
  static const QStringList kLeaving = {"Num Lock", "Time",           "Date",  "Beam Bottom",
                                       "Beam Top", "Max. Iteration", "Count", "Mu"};
  bool withCaptions = true;
  qsizetype gone = 0;
  const auto isGone = [&](const QString& key) {
    const qsizetype place = kLeaving.indexOf(key);
    return place >= 0 && place < gone;
  };
  const auto needed = [&] {
    int sum = height();  // of the size grip
    for (auto panel = m_panels.cbegin(); panel != m_panels.cend(); ++panel) {
      if (isGone(panel.key())) continue;
      sum += panel->value->minimumWidth() + 2 * kMargin + kBarSpacing;
      if (withCaptions && panel->caption) sum += panel->caption->sizeHint().width() + kSpacing;
    }
    return sum;
  };
  while (needed() > width() && gone < kLeaving.size()) {
    if (withCaptions)
      withCaptions = false;
    else
      ++gone;
  }
  for (auto panel = m_panels.cbegin(); panel != m_panels.cend(); ++panel) {
    panel->value->parentWidget()->setVisible(!isGone(panel.key()));
    if (panel->caption) panel->caption->setVisible(withCaptions);
  }
}

void StatusPanels::setPanel(const QString& key, const QString& text) {
  QLabel* label = m_panels.value(key).value;
  if (label && label->text() != text) label->setText(text);
}

QString StatusPanels::panel(const QString& key) const {
  const QLabel* label = m_panels.value(key).value;
  return label ? label->text() : QString();
}

void StatusPanels::showClock() {
  const QDateTime now = QDateTime::currentDateTime();
  setPanel("Date", now.date().toString(Qt::ISODate));
  setPanel("Time", now.time().toString("HH:mm"));
  setPanel("Num Lock", numLockText());
}

}  // namespace torvik::app
