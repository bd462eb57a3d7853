// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QLabel>
#include <QStatusBar>
#include <QString>
#include <QTimer>

namespace torvik::app {

/// The status bar `StatusBar1` with its panels by key: "Beam Top", "Beam Bottom", "Status", "Count",
/// "Max. Iteration", "Mu", "Space1", Num Lock, "Date", "Time". A panel's label bears its key as object name.
class StatusPanels : public QStatusBar {
  Q_OBJECT

 public:
  explicit StatusPanels(QWidget* parent = nullptr);

  /// Shows the text at the next paint.
  void setPanel(const QString& key, const QString& text);
  [[nodiscard]] QString panel(const QString& key) const;

  /// The panels do not keep the frame from becoming narrow.
  [[nodiscard]] QSize minimumSizeHint() const override { return {0, QStatusBar::minimumSizeHint().height()}; }

 protected:
  /// Where room is short, captions and then whole panels leave.
  void resizeEvent(QResizeEvent* event) override;

 private:
  void addPanel(const QString& key, const QString& caption, const QString& widest);
  void showClock();

  struct Panel {
    QLabel* caption = nullptr;  ///< null where the panel has none
    QLabel* value = nullptr;
  };
  QHash<QString, Panel> m_panels;
  QTimer m_clock;
};

}  // namespace torvik::app
