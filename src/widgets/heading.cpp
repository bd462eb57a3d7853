// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/heading.h"

#include <QPainter>
#include <QTextLayout>
#include <cmath>
#include <memory>

namespace torvik::widgets {

namespace {

constexpr qsizetype kLongWord = 8;

/// A heading with the places at which its long words may be parted.
QString hyphenated(const QString& text) {
  QStringList words = text.split(QLatin1Char(' '));
  for (QString& word : words) {
    if (word.size() < kLongWord) continue;
    for (const char* const ending : {"ing", "ment", "meter", "ric", "sion", "tion", "ture"})
      word.replace(QLatin1String(ending), QChar(QChar::SoftHyphen) + QLatin1String(ending));
  }
  return words.join(QLatin1Char(' '));
}

struct Heading {
  std::unique_ptr<QTextLayout> layout;
  qreal height = 0;
  bool fits = false;
};

Heading layOutHeading(const QString& text, const QFont& font, const QSizeF& size,
                      QTextOption::WrapMode wrap) {
  Heading heading;
  heading.layout = std::make_unique<QTextLayout>(text, font);
  QTextOption option(Qt::AlignHCenter);
  option.setWrapMode(wrap);
  heading.layout->setTextOption(option);
  heading.layout->beginLayout();
  bool fits = true;
  for (QTextLine line = heading.layout->createLine(); line.isValid(); line = heading.layout->createLine()) {
    line.setLineWidth(size.width());
    if (heading.height + line.height() > size.height()) {
      fits = false;
      line.setPosition(QPointF(0, 2 * size.height()));  // out of sight
      break;
    }
    line.setPosition(QPointF(0, heading.height));
    heading.height += line.height();
    fits = fits && line.naturalTextWidth() <= size.width();
  }
  heading.layout->endLayout();
  heading.fits = fits;
  return heading;
}

}  // namespace

void drawHeading(QPainter& painter, const QRect& rect, const QString& text, const QFont& font) {
  const QRectF room = rect;
  if (room.width() <= 0) return;
  QFont fontToUse = font;
  Heading heading;
  const QString breakable = hyphenated(text);
  for (const qreal scale : {1.0, 0.9, 0.8, 0.7}) {
    if (font.pointSizeF() > 0)
      fontToUse.setPointSizeF(font.pointSizeF() * scale);
    else
      fontToUse.setPixelSize(static_cast<int>(std::lround(font.pixelSize() * scale)));
    heading = layOutHeading(breakable, fontToUse, room.size(), QTextOption::WordWrap);
    if (heading.fits) break;
  }
  if (!heading.fits)
    heading = layOutHeading(text, fontToUse, room.size(), QTextOption::WrapAtWordBoundaryOrAnywhere);
  painter.save();
  painter.setClipRect(rect);
  heading.layout->draw(&painter, room.topLeft() + QPointF(0, (room.height() - heading.height) / 2));
  painter.restore();
}

}  // namespace torvik::widgets
