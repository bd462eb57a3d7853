// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <string_view>

namespace torvik::widgets {

/// Bytes of a file, a path or a message as text for the eye: read as UTF-8, and as Latin-1 where they are
/// not.
QString shownText(std::string_view bytes);

}  // namespace torvik::widgets
