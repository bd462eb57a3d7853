// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/arrange.h"

#include <QMdiSubWindow>
#include <QStyle>
#include <algorithm>
#include <cmath>

namespace torvik::app {

namespace {

/// Cuts [0, length) into `parts` nearly equal stretches and returns the start of one of them.
int startOf(int part, int parts, int length) {
  return static_cast<int>(static_cast<long long>(length) * part / parts);
}

}  // namespace

std::vector<QRect> tiles(const QRect& area, int count, Arrangement arrangement) {
  std::vector<QRect> rectangles;
  if (count <= 0) return rectangles;
  // Told for vertical tiling; horizontal tiling is the same with x and y changed over.
  const bool vertical = arrangement == Arrangement::TileVertical;
  const int rows = static_cast<int>(std::sqrt(static_cast<double>(count)));
  const int columns = count / rows;
  const int taller = columns - count % columns;  // from this column on, columns hold one window more
  const int across = vertical ? area.width() : area.height();
  const int down = vertical ? area.height() : area.width();
  for (int column = 0; column < columns; ++column) {
    const int inColumn = count / columns + (column >= taller ? 1 : 0);
    for (int row = 0; row < inColumn; ++row) {
      const int x = startOf(column, columns, across);
      const int y = startOf(row, inColumn, down);
      const int w = startOf(column + 1, columns, across) - x;
      const int h = startOf(row + 1, inColumn, down) - y;
      rectangles.push_back(vertical ? QRect(area.x() + x, area.y() + y, w, h)
                                    : QRect(area.x() + y, area.y() + x, h, w));
    }
  }
  return rectangles;
}

void arrange(QMdiArea& area, Arrangement arrangement) {
  QList<QMdiSubWindow*> open;
  QList<QMdiSubWindow*> icons;
  for (QMdiSubWindow* window : area.subWindowList(QMdiArea::CreationOrder))
    if (window->isVisible()) (window->isMinimized() ? icons : open).prepend(window);

  const QRect client = area.viewport()->rect();
  switch (arrangement) {
    case Arrangement::Cascade: {
      // Each two thirds of the room, a title bar further down; back at the top before one would leave it.
      const QSize size = client.size() * 2 / 3;
      const int offset = area.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &area);
      const int places = std::max((client.height() - size.height()) / std::max(offset, 1), 1);
      for (qsizetype i = 0; i < open.size(); ++i) {
        QMdiSubWindow* window = open[open.size() - 1 - i];
        if (window->isMaximized()) window->showNormal();
        const int at = static_cast<int>(i % places) * offset;
        window->setGeometry(QRect(client.topLeft() + QPoint(at, at), size));
        window->raise();
      }
      break;
    }
    case Arrangement::TileHorizontal:
    case Arrangement::TileVertical: {
      QRect room = client;
      for (const QMdiSubWindow* icon : icons)
        room.setBottom(std::max(std::min(room.bottom(), icon->y() - 1), 1));
      const std::vector<QRect> places = tiles(room, static_cast<int>(open.size()), arrangement);
      for (qsizetype i = 0; i < open.size(); ++i) {
        if (open[i]->isMaximized()) open[i]->showNormal();
        open[i]->setGeometry(places[static_cast<std::size_t>(i)]);
      }
      break;
    }
    case Arrangement::Nothing:
      break;
    case Arrangement::ArrangeIcons: {
      int x = client.left();
      for (auto icon = icons.crbegin(); icon != icons.crend(); ++icon) {
        (*icon)->move(x, client.bottom() + 1 - (*icon)->height());
        x += (*icon)->width();
      }
      break;
    }
  }
}

}  // namespace torvik::app
