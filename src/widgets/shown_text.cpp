// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/shown_text.h"

#include <QByteArrayView>

namespace torvik::widgets {

QString shownText(std::string_view bytes) {
  const QByteArrayView view(bytes.data(), static_cast<qsizetype>(bytes.size()));
  return view.isValidUtf8() ? QString::fromUtf8(view) : QString::fromLatin1(view);
}

}  // namespace torvik::widgets
