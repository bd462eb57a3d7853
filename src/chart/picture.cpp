// SPDX-License-Identifier: GPL-3.0-or-later
// The chart on other devices.
#include <QBuffer>
#include <QImage>
#include <QPageSize>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <cmath>

#include "chart/impl.h"

namespace torvik::chart {

void ChartControl::paint(QPainter& painter, const QRectF& target) {
  const double scaleX = painter.device()->logicalDpiX() / static_cast<double>(logicalDpiX());
  const double scaleY = painter.device()->logicalDpiY() / static_cast<double>(logicalDpiY());
  const QSize size = QSizeF(target.width() / scaleX, target.height() / scaleY).toSize();
  if (size.isEmpty()) return;
  QPicture picture;
  m_impl->drawInto(picture, size);
  painter.save();
  painter.setClipRect(target, Qt::IntersectClip);
  painter.translate(target.topLeft());
  // A painted picture adapts itself to the device's resolution.
  painter.scale(target.width() / size.width() * picture.logicalDpiX() / painter.device()->logicalDpiX(),
                target.height() / size.height() * picture.logicalDpiY() / painter.device()->logicalDpiY());
  painter.drawPicture(0, 0, picture);
  painter.restore();
}

QImage ChartControl::picture() {
  constexpr int kPixelRatio = 2;
  constexpr double kInchesPerMetre = 1000 / 25.4;
  QImage image(size() * kPixelRatio, QImage::Format_RGB32);
  image.setDevicePixelRatio(kPixelRatio);
  image.setDotsPerMeterX(static_cast<int>(std::lround(logicalDpiX() * kInchesPerMetre)));
  image.setDotsPerMeterY(static_cast<int>(std::lround(logicalDpiY() * kInchesPerMetre)));
  image.fill(Qt::white);
  QPainter painter(&image);
  paint(painter, QRectF(QPointF(), QSizeF(size())));
  return image;
}

QByteArray ChartControl::png() {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  picture().save(&buffer, "PNG");
  return buffer.data();
}

QByteArray ChartControl::svg(const QString& title) {
  QBuffer buffer;
  QSvgGenerator generator;
  generator.setOutputDevice(&buffer);
  generator.setResolution(logicalDpiX());
  generator.setSize(size());
  generator.setViewBox(QRect(QPoint(), size()));
  generator.setTitle(title);
  QPainter painter(&generator);
  paint(painter, QRectF(QPointF(), QSizeF(size())));
  painter.end();
  return buffer.data();
}

QByteArray ChartControl::pdf(const QString& title) {
  constexpr int kResolution = 1200;
  constexpr double kPointsPerInch = 72;
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  QPdfWriter writer(&buffer);
  writer.setResolution(kResolution);
  writer.setTitle(title);
  writer.setPageSize(
      QPageSize(QSizeF(width() * kPointsPerInch / logicalDpiX(), height() * kPointsPerInch / logicalDpiY()),
                QPageSize::Point, QString(), QPageSize::ExactMatch));
  writer.setPageMargins(QMarginsF());
  QPainter painter(&writer);
  paint(painter, QRectF(0, 0, writer.width(), writer.height()));
  painter.end();
  return buffer.data();
}

}  // namespace torvik::chart
