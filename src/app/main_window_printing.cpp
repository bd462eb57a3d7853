// SPDX-License-Identifier: GPL-3.0-or-later
#include <QFileInfo>
#include <QPrinter>

#include "app/main_window.h"
#include "base/errors.h"
#include "printing/printing.h"
#include "views/table_window.h"
#include "widgets/shown_text.h"

namespace torvik::app {

namespace {
const QMarginsF kMargins(15, 15, 15, 15);
}

QPrinter& MainWindow::printer() {
  if (!m_printer) {
    m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    m_printer->setPageMargins(kMargins, QPageLayout::Millimeter);
    printing::readPrinter(*m_printer, readSettings());
  }
  return *m_printer;
}

void MainWindow::mnuFilePrint_Click(int index) {
  const QPointer<views::ChildWindow> child = index == 0 ? nullptr : m_active;
  const auto then = [this, index, child] {
    const auto act = [&] {
      changeSettings([this](base::ProfileFile& settings) { printing::writePrinter(printer(), settings); });
      if (child && !child->isUnloaded()) print(*child);
    };
    guarded(index == 0 ? "Printer Setup" : "Print", act, Box::Beside);
  };
  if (index == 0)
    m_program.dialogs->setUpPage(printer(), then);
  else
    m_program.dialogs->choosePrinter(printer(), then);
}

void MainWindow::print(views::ChildWindow& child) {
  child.catchUp();
  const QString file = QFileInfo(widgets::shownText(m_program.document.currentFile)).fileName();
  showWaitCursor(true);
  const int pages = printing::print(child, printer(), file);
  showWaitCursor(false);
  if (pages == 0) throw base::InputError("The printer can not be written to.");
}

}  // namespace torvik::app
