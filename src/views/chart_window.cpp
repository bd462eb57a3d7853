// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/chart_window.h"

#include <QAction>
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QPointer>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <filesystem>
#include <utility>

#include "base/errors.h"
#include "base/files.h"
#include "base/number_text.h"
#include "base/title.h"
#include "chart/control.h"
#include "widgets/shown_text.h"

namespace torvik::views {

namespace {

struct Texts {
  const char* title;
  const char* xTitle;
  const char* yTitle;
};

/// By kind.
constexpr std::array<Texts, 10> kTexts = {{
    {"Figure - Beam", "Half Span", "Depth"},
    {"Figure - Section", "Width", "Depth"},
    {"Chart - Moment-Curvature", "Curvature (Micro/Length)", "Moment x1000"},
    {"Chart - Load-Displacement", "Displacement", "Load x1000"},
    {"Chart - Stress", "Compression Stress (Bar/Tendon x10)", "Depth"},
    {"Chart - Strain", "Compression Strain (Tendon x10) (%)", "Depth"},
    {"Chart - Moment", "Half Span", "Moment x1000"},
    {"Chart - Curvature", "Half Span", "Curvature (Micro/Length)"},
    {"Chart - Displacement", "Half Span", "Displacement"},
    {"Chart - Stress-Strain", "Compression/Tension Strain (%)", "Stress"},
}};

const QColor kBlue(0, 0, 255);
const QColor kRed(255, 0, 0);
const QColor kGreen(0, 255, 0);
const QColor kTeal(0, 128, 128);
const QColor kBlack(0, 0, 0);

// What the axis titles announce.
constexpr double kThousand = 1000;
constexpr double kMicro = 0.000001;
constexpr double kPercent = 100;
constexpr double kTenfold = 10;

// First columns of the series in the charts over the depth.
constexpr int kSolidColumn = 1;
constexpr int kBarColumn = 3;
constexpr int kTendonColumn = 5;

}  // namespace

ChartWindow::ChartWindow(Shell& shell, int kind, std::shared_ptr<const run::Run> run)
    : ChildWindow(shell, "frmChart", kind), m_chart(new chart::ChartControl(this)), m_run(std::move(run)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_chart);
  setFocusProxy(m_chart);

  m_automaticScale = new QAction(tr("Automatic &Scale") + "\tHome", this);
  m_automaticScale->setObjectName("mnuChartAutomaticScale");
  m_automaticScale->setEnabled(false);
  m_savePicture = new QAction(tr("Sa&ve Picture As..."), this);
  m_savePicture->setObjectName("mnuChartSavePicture");
  connect(m_automaticScale, &QAction::triggered, m_chart, &chart::ChartControl::resetView);
  connect(m_chart, &chart::ChartControl::passingViewChanged, m_automaticScale, &QAction::setEnabled);
  connect(m_savePicture, &QAction::triggered, this, &ChartWindow::savePicture);
  connect(m_chart, &chart::ChartControl::doubleClicked, this, [this] {
    constexpr int kAxisTab = 4;
    this->shell().openOptions(kAxisTab);
  });
  connect(m_chart, &chart::ChartControl::menuRequested, this, &ChartWindow::popupMenuAt);

  layOut();
  catchUp();
}

void ChartWindow::setLine(int firstColumn, const QString& name) {
  m_chart->setLineSeries(firstColumn, chart::PenStyle::Solid, kBlue);
  m_chart->setSeriesName(firstColumn, name, chart::PointName::SeriesAndRow);
}

void ChartWindow::layOut() {
  if (kind() < 0 || kind() >= static_cast<int>(kTexts.size()))
    throw base::InternalError(base::kImpossibleCase, "kind of a chart: " + base::plainText(kind()));
  const Texts& texts = kTexts[static_cast<std::size_t>(kind())];
  setWindowTitle(texts.title);
  m_chart->setAccessibleName(texts.title);
  m_chart->clear();
  m_chart->setAxisTitle(chart::kAxisX, texts.xTitle);
  m_chart->setAxisTitle(chart::kAxisY, texts.yTitle);
  const int mark = m_chart->markHeight();
  static const model::ObjectTables kNone;
  const model::ObjectTables& job = m_run ? m_run->job() : kNone;

  switch (chartKind()) {
    case ChartKind::FigureBeam:
      m_chart->setRowCount(5);
      m_chart->setColumnCount(8);
      layOutFigure();
      setLine(1);
      m_chart->setMarkerSeries(3, chart::MarkerStyle::UpTriangle, 2 * mark, kGreen);
      m_chart->setSeriesName(3, "Support", chart::PointName::Series);
      m_chart->setMarkerSeries(5, chart::MarkerStyle::DownTriangle, 2 * mark, kGreen);
      m_chart->setSeriesName(5, "Load", chart::PointName::Series);
      m_chart->setMarkerSeries(7, chart::MarkerStyle::None, 2 * mark, kBlack);
      return;
    case ChartKind::FigureSection:
      m_chart->setRowCount(1);
      m_chart->setColumnCount(4);
      layOutFigure();
      setLine(1);
      m_chart->setLineSeries(3, chart::PenStyle::Solid, kTeal);
      return;
    case ChartKind::MomentCurvature:
    case ChartKind::LoadDisplacement:
      m_chart->setRowCount(1);
      m_chart->setColumnCount(2);
      setLine(1);
      return;
    case ChartKind::Stress:
    case ChartKind::Strain: {
      const std::size_t rows = std::max({job.Solids.size(), job.Bars.size(), job.Tendons.size()});
      m_chart->setRowCount(static_cast<int>(rows));
      m_chart->setColumnCount(6);
      setLine(kSolidColumn, "Solid");
      m_chart->setMarkerSeries(kBarColumn, chart::MarkerStyle::Square, mark, kRed);
      m_chart->setSeriesName(kBarColumn, "Bar", chart::PointName::SeriesAndRow);
      m_chart->setMarkerSeries(kTendonColumn, chart::MarkerStyle::Circle, mark, kGreen);
      m_chart->setSeriesName(kTendonColumn, "Tendon", chart::PointName::SeriesAndRow);
      return;
    }
    case ChartKind::Moment:
    case ChartKind::Curvature:
    case ChartKind::Displacement:
      m_chart->setRowCount(job.Beams.empty() ? 0 : std::max<int>(job.Beams.front().HalfSpanFiberNumber, 0));
      m_chart->setColumnCount(2);
      setLine(1, "Piece");
      return;
    case ChartKind::StressStrain:
      m_chart->setRowCount(1);
      m_chart->setColumnCount(4);
      setLine(1);
      m_chart->setMarkerSeries(3, chart::MarkerStyle::Circle, mark, kRed);
      m_chart->setSeriesName(3, "Watch Strain", chart::PointName::Series);
      return;
  }
}

void ChartWindow::layOutFigure() {
  m_chart->setUniformAxis(true);
  for (const int axis : {chart::kAxisX, chart::kAxisY}) {
    m_chart->setAxisPen(axis, chart::PenStyle::None);
    m_chart->setGridPen(axis, chart::PenStyle::Dotted);
  }
}

ChildCommands ChartWindow::commands() const {
  ChildCommands commands;
  commands.print = true;
  commands.copy = true;
  return commands;
}

QList<QAction*> ChartWindow::ownActions() {
  return {m_automaticScale, m_savePicture};
}

void ChartWindow::copy() {
  catchUp();
  QGuiApplication::clipboard()->setImage(m_chart->picture());
}

void ChartWindow::unload() {
  shell().changeSettings([this](base::ProfileFile& settings) { saveLayout(settings); });
}

// ---- Following the run

void ChartWindow::showEvent(QShowEvent* event) {
  ChildWindow::showEvent(event);
  catchUp();
}

void ChartWindow::catchUp() {
  if (!m_run) return;
  switch (chartKind()) {
    case ChartKind::MomentCurvature:
    case ChartKind::LoadDisplacement:
      appendSteps(*m_run);
      return;
    case ChartKind::Stress:
    case ChartKind::Strain:
      showRows();
      return;
    case ChartKind::Moment:
    case ChartKind::Curvature:
    case ChartKind::Displacement:
      showPieces();
      return;
    default:
      throw base::InternalError(base::kImpossibleCase, "run of a chart of kind " + base::plainText(kind()));
  }
}

void ChartWindow::drawSteps(const run::Run& run) {
  if (chartKind() != ChartKind::MomentCurvature && chartKind() != ChartKind::LoadDisplacement)
    throw base::InternalError(base::kImpossibleCase, "steps of a chart of kind " + base::plainText(kind()));
  m_chart->setRowCount(0);
  m_chart->setRowCount(1);
  m_steps = 0;
  appendSteps(run);
  // Of a job whose result file failed: a row that the table has and that became no step.
  const auto& row = run.rowAtWork();
  if (!row || !row->isWhole) return;
  const std::vector<double>& cells = row->cells;
  if (chartKind() == ChartKind::MomentCurvature)
    m_chart->appendPoint(cells[run::kCurvature] / kMicro, cells[run::kMoment] / kThousand);
  else
    m_chart->appendPoint(cells[run::kDisplacement], cells[run::kLoad] / kThousand);
}

void ChartWindow::appendSteps(const run::Run& run) {
  const bool isMoment = chartKind() == ChartKind::MomentCurvature;
  for (; m_steps < run.steps(); ++m_steps) {
    const run::Step step = run.step(m_steps);
    if (isMoment)
      m_chart->appendPoint(step.Curvature / kMicro, step.Moment / kThousand);
    else
      m_chart->appendPoint(step.Displacement, step.Load / kThousand);
  }
}

void ChartWindow::setObjectPair(int firstColumn, const std::vector<double>& values, const auto& objects,
                                double (*xOf)(double)) {
  std::vector<double> x(values.size());
  std::vector<double> y(values.size());
  std::transform(values.begin(), values.end(), x.begin(), xOf);
  std::transform(objects.begin(), objects.end(), y.begin(), [](const auto& object) { return -object.Depth; });
  m_chart->setPair(firstColumn, x, y);
}

void ChartWindow::showRows() {
  if (m_rowsAt == m_run->presentVersion()) return;
  m_rowsAt = m_run->presentVersion();
  const section::State* present = m_run->present();
  if (!present) return;
  const model::ObjectTables& job = m_run->job();
  // Compression is positive on the chart, of all three.
  if (chartKind() == ChartKind::Stress) {
    setObjectPair(kSolidColumn, present->solids.stress, job.Solids, [](double stress) { return stress; });
    setObjectPair(kBarColumn, present->bars.stress, job.Bars,
                  [](double stress) { return -stress / kTenfold; });
    setObjectPair(kTendonColumn, present->tendons.stress, job.Tendons,
                  [](double stress) { return -stress / kTenfold; });
  } else {
    setObjectPair(kSolidColumn, present->solids.strain, job.Solids,
                  [](double strain) { return strain * kPercent; });
    setObjectPair(kBarColumn, present->bars.strain, job.Bars,
                  [](double strain) { return -strain * kPercent; });
    setObjectPair(kTendonColumn, present->tendons.strain, job.Tendons,
                  [](double strain) { return -strain * kPercent / kTenfold; });
  }
}

void ChartWindow::showPieces() {
  if (m_steps == m_run->steps()) return;
  m_steps = m_run->steps();
  const run::BeamLines& beam = m_run->beam(m_steps - 1);
  const bool isMoment = chartKind() == ChartKind::Moment;
  const bool isCurvature = chartKind() == ChartKind::Curvature;
  const std::vector<double>& values = isMoment ? beam.Moment : isCurvature ? beam.Curvature : beam.Deflection;
  const double divisor = isMoment ? kThousand : isCurvature ? kMicro : 1;
  // The rule negates the number of the text of 15 digits. Its text is that of the negated value itself:
  // either way the same 15 digits remain.
  std::vector<double> y(values.size());
  std::transform(values.begin(), values.end(), y.begin(),
                 [divisor](double value) { return -(value / divisor); });
  m_chart->setPair(1, beam.place, y);
}

void ChartWindow::savePicture() {
  const QString kind = windowTitle().section(" - ", 1).replace('/', '_');  // of "Chart - Moment-Curvature"
  shell().askSaveFile(QString(base::kTitle) + " - Save Picture As", kind + ".png",
                      tr("Pictures (*.png);;Vector Pictures (*.svg);;Documents (*.pdf)"),
                      [window = QPointer<ChartWindow>(this)](const QString& path) {
                        if (window && !window->isUnloaded()) window->writePicture(path);
                      });
}

void ChartWindow::writePicture(const QString& path) {
  catchUp();
  const QString lower = path.toLower();
  const auto write = [this](const QString& name, const QByteArray& content) {
    try {
      base::replaceWholeFile(std::filesystem::path(QFile::encodeName(name).toStdString()),
                             std::string_view(content.constData(), static_cast<std::size_t>(content.size())));
    } catch (const base::InputError& error) {
      shell().notice(widgets::shownText(error.what()));
    }
  };
  if (lower.endsWith(".svg"))
    write(path, m_chart->svg(windowTitle()));
  else if (lower.endsWith(".pdf"))
    write(path, m_chart->pdf(windowTitle()));
  else if (lower.endsWith(".png"))
    write(path, m_chart->png());
  else if (const QString name = path + ".png"; !QFile::exists(name))
    write(name, m_chart->png());
  else
    shell().notice(tr("The name of a picture ends in .png, .svg or .pdf."));
}

}  // namespace torvik::views
