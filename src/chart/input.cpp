// SPDX-License-Identifier: GPL-3.0-or-later
// Mouse, keys and the other events of the chart.
#include <QApplication>
#include <cmath>
#include <utility>

#include "chart/impl.h"

namespace torvik::chart {

namespace {

constexpr double kWheelStep = 120;
constexpr double kZoomOfWheelStep = 0.8;
constexpr double kPanOfKey = 0.1;

}  // namespace

void ChartControl::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange && m_impl) m_impl->takeFont();
}

void ChartControl::contextMenuEvent(QContextMenuEvent* event) {
  // The mouse has its menu from the press of the button.
  if (event->reason() == QContextMenuEvent::Keyboard) emit menuRequested(event->globalPos());
}

bool ChartControl::eventFilter(QObject* watched, QEvent* event) {
  // A part of the chart came into sight.
  if (event->type() == QEvent::Paint && m_impl->isDirty()) m_impl->touch();
  return QWidget::eventFilter(watched, event);
}

void ChartControl::keyPressEvent(QKeyEvent* event) {
  const auto pan = [this](double x, double y) {
    m_impl->makeSureDrawn();
    const Mapping map = m_impl->mapping();
    m_impl->pan(map, {-x * kPanOfKey * map.area.width(), y * kPanOfKey * map.area.height()});
  };
  const auto zoom = [this](double factor) {
    m_impl->makeSureDrawn();
    m_impl->zoom(m_impl->mapping().area.center(), factor);
  };
  switch (event->key()) {
    case Qt::Key_Home:
      resetView();
      break;
    case Qt::Key_Left:
      pan(-1, 0);
      break;
    case Qt::Key_Right:
      pan(1, 0);
      break;
    case Qt::Key_Up:
      pan(0, 1);
      break;
    case Qt::Key_Down:
      pan(0, -1);
      break;
    case Qt::Key_Plus:
      zoom(kZoomOfWheelStep);
      break;
    case Qt::Key_Minus:
      zoom(1 / kZoomOfWheelStep);
      break;
    default:
      QWidget::keyPressEvent(event);
  }
}

void ChartControl::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  m_impl->setPointer(std::nullopt);
}

void ChartControl::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) emit doubleClicked();
}

void ChartControl::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    m_impl->makeSureDrawn();
    m_impl->pressed = event->position();
    m_impl->shownAtPress = m_impl->mapping();
  } else if (event->button() == Qt::RightButton) {
    m_impl->setPointer(std::nullopt);  // it leaves the chart for the menu
    emit menuRequested(event->globalPosition().toPoint());
  }
}

void ChartControl::mouseMoveEvent(QMouseEvent* event) {
  if (m_impl->pressed && (event->buttons() & Qt::LeftButton)) {
    const QPointF step = event->position() - *m_impl->pressed;
    if (!m_impl->panning && step.manhattanLength() >= QApplication::startDragDistance()) {
      m_impl->panning = true;
      setCursor(Qt::ClosedHandCursor);
    }
    if (m_impl->panning) m_impl->pan(m_impl->shownAtPress, step);
  }
  m_impl->setPointer(event->position());
}

void ChartControl::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  m_impl->pressed.reset();
  if (std::exchange(m_impl->panning, false)) unsetCursor();
}

void ChartControl::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  m_impl->resize(event->size());
}

void ChartControl::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (m_impl->isDirty()) m_impl->touch();
}

void ChartControl::wheelEvent(QWheelEvent* event) {
  const double steps = event->angleDelta().y() / kWheelStep;
  if (steps != 0) m_impl->zoom(event->position(), std::pow(kZoomOfWheelStep, steps));
  event->accept();
}

}  // namespace torvik::chart
