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
#include <functional>

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

ChartWindow::ChartWindow(Shell& shell, int kind, const JobExtent& extent)
    : ChildWindow(shell, "frmChart", kind), m_chart(new chart::ChartControl(this)) {
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

  layOut(extent);
}

void ChartWindow::setLine(int firstColumn, const QString& name) {
  m_chart->setLineSeries(firstColumn, chart::PenStyle::Solid, kBlue);
  m_chart->setSeriesName(firstColumn, name, chart::PointName::SeriesAndRow);
}

void ChartWindow::layOut(const JobExtent& extent) {
  if (kind() < 0 || kind() >= static_cast<int>(kTexts.size()))
    throw base::InternalError(base::kImpossibleCase, "kind of a chart: " + base::plainText(kind()));
  const Texts& texts = kTexts[static_cast<std::size_t>(kind())];
  setWindowTitle(texts.title);
  m_chart->setAccessibleName(texts.title);
  m_chart->clear();
  m_chart->setAxisTitle(chart::kAxisX, texts.xTitle);
  m_chart->setAxisTitle(chart::kAxisY, texts.yTitle);
  const int mark = m_chart->markHeight();

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
      const std::size_t rows = std::max({extent.Solids, extent.Bars, extent.Tendons});
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
      m_chart->setRowCount(std::max(extent.HalfSpanFiberNumber, 0));
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
  QGuiApplication::clipboard()->setImage(m_chart->picture());
}

void ChartWindow::unload() {
  shell().changeSettings([this](base::ProfileFile& settings) { saveLayout(settings); });
}

void ChartWindow::require(bool isKind) const {
  if (!isKind)
    throw base::InternalError(base::kImpossibleCase, "feed of a chart of kind " + base::plainText(kind()));
}

void ChartWindow::setObjectPair(int firstColumn, const analysis::SectionState::Rows& rows,
                                double (*xOf)(double)) {
  const std::vector<double>& values =
      chartKind() == ChartKind::Stress ? rows.CurrentStress : rows.CurrentStrain;
  m_x.resize(rows.size());
  m_y.resize(rows.size());
  std::transform(values.begin(), values.end(), m_x.begin(), xOf);
  std::transform(rows.Depth.begin(), rows.Depth.end(), m_y.begin(), std::negate<>());
  m_chart->setPair(firstColumn, m_x, m_y);
}

void ChartWindow::currentValues(const analysis::SectionState& state) {
  const bool isStress = chartKind() == ChartKind::Stress;
  require(isStress || chartKind() == ChartKind::Strain);
  // Compression is positive on the chart, of all three.
  if (isStress) {
    setObjectPair(kSolidColumn, state.solids(), [](double stress) { return stress; });
    setObjectPair(kBarColumn, state.bars(), [](double stress) { return -stress / kTenfold; });
    setObjectPair(kTendonColumn, state.tendons(), [](double stress) { return -stress / kTenfold; });
  } else {
    setObjectPair(kSolidColumn, state.solids(), [](double strain) { return strain * kPercent; });
    setObjectPair(kBarColumn, state.bars(), [](double strain) { return -strain * kPercent; });
    setObjectPair(kTendonColumn, state.tendons(),
                  [](double strain) { return -strain * kPercent / kTenfold; });
  }
}

void ChartWindow::loadStep(const analysis::LoadStep& step) {
  switch (chartKind()) {
    case ChartKind::MomentCurvature:
      appendMomentCurvature(step.Moment, step.Curvature);
      return;
    case ChartKind::LoadDisplacement:
      appendLoadDisplacement(step.beam.Load(), step.beam.Displacement());
      return;
    default:
      break;
  }
  std::vector<double> place(step.beam.pieceCount());
  for (std::size_t i = 0; i < place.size(); ++i) place[i] = step.beam.place(i);
  if (chartKind() == ChartKind::Moment)
    setPieces(place, step.beam.pieceMoments());
  else if (chartKind() == ChartKind::Curvature)
    setPieces(place, step.beam.pieceCurvatures());
  else
    setPieces(place, step.beam.Deflection());
}

void ChartWindow::appendMomentCurvature(double Moment, double Curvature) {
  require(chartKind() == ChartKind::MomentCurvature);
  m_chart->appendPoint(Curvature / kMicro, Moment / kThousand);
}

void ChartWindow::appendLoadDisplacement(double Load, double Displacement) {
  require(chartKind() == ChartKind::LoadDisplacement);
  m_chart->appendPoint(Displacement, Load / kThousand);
}

void ChartWindow::setPieces(std::span<const double> place, std::span<const double> values) {
  double divisor = 1;
  switch (chartKind()) {
    case ChartKind::Moment:
      divisor = kThousand;
      break;
    case ChartKind::Curvature:
      divisor = kMicro;
      break;
    case ChartKind::Displacement:
      break;
    default:
      require(false);
  }
  // The rule negates the number of the text of 15 digits. Its text is that of the negated value itself:
  // either way the same 15 digits remain.
  m_y.resize(values.size());
  std::transform(values.begin(), values.end(), m_y.begin(),
                 [divisor](double value) { return -(value / divisor); });
  m_chart->setPair(1, place, m_y);
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
