#include "windows/healthcheck/GraphWidget.h"

#include "windows/widgets/Controls.h"
#include "windows/widgets/PlotAxis.h"
#include "windows/widgets/QtText.h"
#include "windows/widgets/ValueLabel.h"

#include <QEvent>
#include <QGridLayout>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace ombrix {

namespace {

constexpr int TextIndent = 6;
/// As many segments as the longest sequence draws on one surface, so that none of them costs
/// an allocation: 380 s at 50 samples a second, demand and reading.
constexpr std::size_t ExpectedSegments = 40000;

/// Traces and reference lines come in colours for light paper. On dark ground what is to be read
/// is lightened, and what is pale on paper is a little lighter than the ground.
QColor OnGround(Colour colour, const QColor& ground) {
    constexpr int middle = 128;
    constexpr int pale = 180;
    constexpr int white = 255;
    QColor given = ToQt(colour);
    if (ground.lightness() >= middle || given.lightness() < pale)
        return ReadableColour(colour, ground);
    const int lightness = std::min(white, ground.lightness() + 2 * (white - given.lightness()));
    given.setHsl(given.hslHue(), given.hslSaturation(), lightness);
    return given;
}

} // namespace

GraphMapping::GraphMapping(const GraphScale& scale, const QRectF& plot)
    : m_Origin(plot.topLeft()), m_Left(scale.Left), m_Top(scale.Top),
      m_PixelsPerX(plot.width() / (scale.Right - scale.Left)),
      m_PixelsPerY(plot.height() / (scale.Bottom - scale.Top)) {}

double GraphMapping::PixelsToY(double pixels) const {
    return std::abs(pixels / m_PixelsPerY);
}

GraphContent::GraphContent() {
    m_Segments.reserve(ExpectedSegments);
}

void GraphContent::Clear() {
    m_Pens.clear();
    m_Segments.clear();
    m_Texts.clear();
    Forget();
}

void GraphContent::SetPenWidth(int pixels) {
    m_Pen.Width = static_cast<std::uint8_t>(pixels);
}

void GraphContent::SetPenStyle(GraphSurface::Style style) {
    m_Pen.Style = style;
}

void GraphContent::AddText(double x, double y, QString text) {
    m_Texts.push_back({x, y, std::move(text)});
    m_TextsDrawn = false;
}

std::uint32_t GraphContent::PenIndexOf(Colour colour) {
    m_Pen.PenColour = colour;
    // A graph uses a handful of pens, the latest again and again.
    const auto found = std::find(m_Pens.rbegin(), m_Pens.rend(), m_Pen);
    if (found != m_Pens.rend())
        return static_cast<std::uint32_t>(std::distance(found, m_Pens.rend()) - 1);
    m_Pens.push_back(m_Pen);
    return static_cast<std::uint32_t>(m_Pens.size() - 1);
}

QRect GraphContent::AddSegment(QPointF from, QPointF to, Colour colour,
                               const GraphMapping& mapping) {
    const std::uint32_t pen = PenIndexOf(colour);
    m_Segments.push_back({static_cast<float>(from.x()), static_cast<float>(from.y()),
                          static_cast<float>(to.x()), static_cast<float>(to.y()), pen});
    const int margin = m_Pen.Width + 1;
    return QRectF(mapping.ToPixels(from.x(), from.y()), mapping.ToPixels(to.x(), to.y()))
        .normalized()
        .toAlignedRect()
        .adjusted(-margin, -margin, margin, margin);
}

QPen GraphContent::ToQt(const Pen& pen, const QColor& ground) {
    QPen result(OnGround(pen.PenColour, ground), pen.Width);
    result.setStyle(pen.Style == GraphSurface::Style::Dotted ? Qt::DotLine : Qt::SolidLine);
    return result;
}

void GraphContent::Forget() {
    m_DrawnSegments = 0;
    m_TextsDrawn = false;
}

void GraphContent::DrawNew(QPainter& painter, const GraphMapping& mapping,
                           const QPalette& colours) {
    if (!m_TextsDrawn) {
        painter.setPen(colours.color(QPalette::Text));
        DrawTexts(painter, mapping);
    }
    m_TextsDrawn = true;
    std::uint32_t pen = static_cast<std::uint32_t>(m_Pens.size());
    for (; m_DrawnSegments < m_Segments.size(); ++m_DrawnSegments) {
        const Segment& segment = m_Segments[m_DrawnSegments];
        if (pen != segment.PenIndex) {
            pen = segment.PenIndex;
            painter.setPen(ToQt(m_Pens[pen], colours.color(QPalette::Base)));
        }
        painter.drawLine(QLineF(mapping.ToPixels(segment.X1, segment.Y1),
                                mapping.ToPixels(segment.X2, segment.Y2)));
    }
}

void GraphContent::DrawTexts(QPainter& painter, const GraphMapping& mapping) const {
    const int height = painter.fontMetrics().height();
    double freeFrom = 0.0;
    for (const Text& text : m_Texts) {
        const QPointF corner = mapping.ToPixels(text.X, text.Y);
        // On a low graph a level's label would stand on the title: it gives way downwards.
        const double top = std::max(corner.y(), freeFrom);
        freeFrom = top + height;
        painter.drawText(QPointF(corner.x() + TextIndent, top + painter.fontMetrics().ascent()),
                         text.Characters);
    }
}

namespace {

constexpr QSize HintSize(640, 120);
constexpr QSize LeastSize(240, 64);
/// Text of a level at its widest.
constexpr auto WidestLevel = "-00000";

} // namespace

GraphWidget::GraphWidget(const QString& objectName, const QString& accessibleName, QWidget* parent)
    : QWidget(parent) {
    Named(this, objectName, accessibleName);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void GraphWidget::SetAxes(const GraphAxes& axes) {
    m_Axes = axes;
    PlacePlot();
}

void GraphWidget::PlacePlot() {
    m_Plot = QRectF({}, QSizeF(size()));
    if (m_Axes) {
        const int left = fontMetrics().horizontalAdvance(QLatin1String(WidestLevel));
        m_Plot.adjust(left + PlotGap, 1, -PlotGap, -fontMetrics().height() - PlotGap / 2);
    }
    m_Picture = {};
    update();
}

void GraphWidget::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    PlacePlot();
}

QSize GraphWidget::sizeHint() const {
    return HintSize;
}

QSize GraphWidget::minimumSizeHint() const {
    return LeastSize;
}

void GraphWidget::Scale(double left, double top, double right, double bottom) {
    m_Scale = {left, top, right, bottom};
    m_Picture = {};
    update();
}

void GraphWidget::Cls() {
    m_Content.Clear();
    m_Picture = {};
    update();
}

double GraphWidget::TextHeight(std::string_view /*text*/) const {
    return Mapping().PixelsToY(fontMetrics().height());
}

void GraphWidget::Print(double x, double y, std::string_view text) {
    m_Content.AddText(x, y, ToQt(text));
    update();
}

void GraphWidget::Line(double x1, double y1, double x2, double y2, Colour colour) {
    update(m_Content.AddSegment({x1, y1}, {x2, y2}, colour, Mapping()));
}

void GraphWidget::RenewPicture() {
    m_Picture = QPixmap(size() * devicePixelRatioF());
    m_Picture.setDevicePixelRatio(devicePixelRatioF());
    m_Picture.fill(palette().color(QPalette::Base));
    m_Content.Forget();
    if (!m_Axes)
        return;
    QPainter painter(&m_Picture);
    painter.setFont(font());
    DrawAxes(painter);
}

void GraphWidget::DrawAxes(QPainter& painter) const {
    DrawTimes(painter);
    DrawLevels(painter);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawRect(m_Plot);
}

void GraphWidget::DrawTimes(QPainter& painter) const {
    constexpr int charactersApart = 12;
    constexpr double longestInSeconds = 120.0;
    const QRectF& plot = m_Plot;
    const QFontMetricsF metrics = painter.fontMetrics();
    const QString unit = m_Scale.Right < longestInSeconds ? tr("s") : tr("h:mm:ss");
    const double top = plot.bottom() + PlotGap / 4;
    const QRectF unitPlace(plot.right() - metrics.horizontalAdvance(unit), top,
                           metrics.horizontalAdvance(unit), metrics.height());
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(unitPlace, Qt::AlignRight, unit);
    const double step =
        NiceTimeStep(m_Scale.Right - m_Scale.Left,
                     std::max(2.0, plot.width() / (charactersApart * metrics.averageCharWidth())));
    for (const double tick : TicksIn(m_Scale.Left, m_Scale.Right, step)) {
        const double x = Mapping().ToPixels(tick, 0.0).x();
        const QString text = TimeTickText(tick, step, m_Scale.Right);
        const double half = metrics.horizontalAdvance(text) / 2;
        painter.setPen(FaintInk(palette()));
        painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
        painter.setPen(palette().color(QPalette::Text));
        const double left = std::max(x - half, plot.left()); // beside the unit of the levels
        if (left + 2 * half + PlotGap < unitPlace.left())
            painter.drawText(QRectF(left, top, 2 * half, metrics.height()), Qt::AlignHCenter, text);
    }
}

void GraphWidget::DrawLevels(QPainter& painter) const {
    constexpr double linesApart = 1.8;
    const QRectF& plot = m_Plot;
    const double line = painter.fontMetrics().height();
    const double right = plot.left() - PlotGap / 2;
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(QRectF(0, plot.bottom() + PlotGap / 4, right - PlotGap / 2, line),
                     Qt::AlignRight, m_Axes->Unit);
    const double least = std::min(m_Scale.Top, m_Scale.Bottom) / m_Axes->UnitSize;
    const double largest = std::max(m_Scale.Top, m_Scale.Bottom) / m_Axes->UnitSize;
    const double step =
        NiceStep(largest - least, std::max(2.0, plot.height() / (linesApart * line)));
    for (const double tick : TicksIn(least, largest, step)) {
        const double y = Mapping().ToPixels(0.0, tick * m_Axes->UnitSize).y();
        painter.setPen(FaintInk(palette()));
        painter.drawLine(QPointF(plot.left(), y), QPointF(plot.right(), y));
        painter.setPen(palette().color(QPalette::Text));
        // Above the unit, and not beyond the graph.
        if (y - line / 2 >= 0 && y + line / 2 <= plot.bottom() + line / 3)
            painter.drawText(QRectF(0, y - line / 2, right, line), Qt::AlignRight,
                             TickText(tick, step));
    }
}

void GraphWidget::paintEvent(QPaintEvent* event) {
    if (m_Picture.size() != size() * devicePixelRatioF())
        RenewPicture();
    {
        QPainter onto(&m_Picture);
        onto.setFont(font());
        onto.setRenderHint(QPainter::Antialiasing);
        if (m_Axes)
            onto.setClipRect(m_Plot);
        m_Content.DrawNew(onto, Mapping(), palette());
    }
    QPainter painter(this);
    const QRectF shown = event->rect();
    painter.drawPixmap(
        shown, m_Picture,
        QRectF(shown.topLeft() * devicePixelRatioF(), shown.size() * devicePixelRatioF()));
}

void GraphWidget::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange)
        PlacePlot();
}

GraphColumn::GraphColumn(QWidget* parent) : QWidget(parent) {
    const std::array<QString, 5> names = {tr("Channel 1"), tr("Channel 2"), tr("Pressure"),
                                          tr("Channel 1 difference"), tr("Channel 2 difference")};
    const std::array<QString, 5> kinds = {tr("Output : Reading, bits"),
                                          tr("Output : Reading, bits"), tr("Pressure, bits"),
                                          tr("Difference, bits"), tr("Difference, bits")};
    constexpr double percent = 655.35;
    const GraphAxes flow{tr("%"), percent};
    const GraphAxes bits{tr("bits"), 1.0};
    const std::array<GraphAxes, 5> axes = {flow, flow, bits, bits, bits};
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    for (std::size_t index = 0; index < names.size(); ++index) {
        const int row = static_cast<int>(index);
        auto* graph =
            new GraphWidget(ElementName("picGraph", row), tr("Graph: ") + names.at(index), this);
        graph->SetAxes(axes.at(index));
        auto* value = new ValueLabel(ElementName("lblValue", row), names.at(index), this);
        // A label of a fixed size changes its text without laying the window out anew.
        value->ReserveFor(QStringLiteral("65535  :  65535"));
        m_Graphs.at(index) = graph;
        m_Values.at(index) = value;
        auto* values = new QVBoxLayout;
        values->addStretch(1);
        values->addWidget(MakeCaption(kinds.at(index), this));
        values->addWidget(value);
        values->addStretch(1);
        grid->addWidget(graph, row, 0);
        grid->addLayout(values, row, 1);
        grid->setRowStretch(row, 1);
    }
    grid->setColumnStretch(0, 1);
}

GraphSurfaces GraphColumn::Surfaces() const {
    GraphSurfaces surfaces{};
    for (std::size_t index = 0; index < surfaces.size(); ++index)
        surfaces.at(index) = m_Graphs.at(index);
    return surfaces;
}

void GraphColumn::SetCaption(std::size_t label, std::string_view text) {
    m_Values.at(label)->ShowValue(ToQt(text));
}

} // namespace ombrix
