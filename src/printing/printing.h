// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPagedPaintDevice>
#include <QString>

#include "base/profile.h"
#include "views/child_window.h"

class QPrinter;

/// Printing of a child window: a chart fills one page, a table or grid goes over as many as it needs, with
/// its header row and its fixed column on each.
namespace torvik::printing {

/// Prints what the child shows.
/// @param footer  at the left end of the bottom line, the page number stands at its right end
/// @return the number of pages; 0 where the child has nothing that can be printed, or the device can not be
///         painted on
int print(const views::ChildWindow& child, QPagedPaintDevice& device, const QString& footer);

/// What the printer dialogs chose, in section `Printer` of the settings. Keys `PageSize` (a name such as
/// "A4") and `Orientation` (1 portrait, 2 landscape); other texts leave the printer as it is.
void readPrinter(QPrinter& printer, const base::ProfileFile& settings);
void writePrinter(const QPrinter& printer, base::ProfileFile& settings);

}  // namespace torvik::printing
