#include "PlotWidget.h"

#include <QMouseEvent>
#include <QPainter>
#include <utility>

#include "qt_text.h"
#include "report_lines.h"

namespace velmora {

namespace {

constexpr int marksAcross = 6;
constexpr int marksUp = 5;
constexpr double reach = 12.0; // pixels from the cursor to a point
constexpr double pointSize = 3.0;
constexpr double markSize = 6.0;

} // namespace

PlotWidget::PlotWidget(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("plot"));
    setAccessibleName(tr("Plot of the curve"));
    setMouseTracking(true);
    setMinimumSize(160, 120);
}

void PlotWidget::showPlot(CurvePlot plot) {
    plot_ = std::move(plot);
    marked_ = -1;
    update();
}

void PlotWidget::mark(std::int32_t point) {
    if (point != marked_) {
        marked_ = point;
        update();
    }
}

/// Room for the numbers at the left and below.
PlotFrame PlotWidget::frame() const {
    const QFontMetrics letters = fontMetrics();
    const double left = letters.horizontalAdvance(QStringLiteral("-0.000000")) + 8.0;
    const double below = letters.height() + 8.0;
    const double margin = 8.0;
    return {left, margin, std::max(1.0, width() - left - margin), std::max(1.0, height() - below - margin)};
}

QString PlotWidget::hint() const {
    return plot_.hasCurve ? tr("%1 has no value here").arg(QLatin1String(nameOf(plot_.quantity)))
                          : tr("Capture a section or a line");
}

// ---- Drawing --------------------------------------------------------------------------------------------------------

void PlotWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    if (plot_.curve.pieces.empty()) {
        painter.setPen(palette().color(QPalette::Disabled, QPalette::Text));
        painter.drawText(rect(), Qt::AlignCenter, hint());
        return;
    }
    drawAxes(painter);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const PlotCurve& neighbour : plot_.neighbours) {
        drawCurve(painter, neighbour, Qt::gray, false);
    }
    drawCurve(painter, plot_.curve, palette().color(QPalette::Highlight), true);
}

void PlotWidget::drawAxes(QPainter& painter) const {
    const PlotFrame in = frame();
    constexpr int faint = 45; // of 255: on a light ground and on a dark one
    QColor grid = palette().color(QPalette::Text);
    grid.setAlpha(faint);
    const QFontMetrics letters = fontMetrics();
    const auto text = [](double mark) { return qtText(shortNumber(mark)); };
    for (const double mark : axisMarks(plot_.lowest, plot_.highest, marksUp)) {
        const FramePlace at = placeIn(in, plot_, 0.0, mark);
        painter.setPen(grid);
        painter.drawLine(QPointF(at.x, at.y), QPointF(at.x + in.width, at.y));
        painter.setPen(palette().color(QPalette::Text));
        painter.drawText(QRectF(0.0, at.y - letters.height() / 2.0, in.left - 4.0, letters.height()),
                         Qt::AlignRight | Qt::AlignVCenter, text(mark));
    }
    for (const double mark : axisMarks(0.0, plot_.alongEnd, marksAcross)) {
        const FramePlace at = placeIn(in, plot_, mark, plot_.lowest);
        painter.setPen(grid);
        painter.drawLine(QPointF(at.x, in.top), QPointF(at.x, in.top + in.height));
        painter.setPen(palette().color(QPalette::Text));
        painter.drawText(QRectF(at.x - 60.0, in.top + in.height + 4.0, 120.0, letters.height()), Qt::AlignHCenter,
                         text(mark));
    }
    painter.setPen(palette().color(QPalette::Text));
    painter.drawRect(QRectF(in.left, in.top, in.width, in.height));
}

void PlotWidget::drawCurve(QPainter& painter, const PlotCurve& curve, const QColor& colour, bool points) const {
    const PlotFrame in = frame();
    for (const auto& piece : curve.pieces) {
        QPolygonF line;
        for (const PlotPoint& point : piece) {
            const FramePlace at = placeIn(in, plot_, point.along, point.value);
            line.append({at.x, at.y});
        }
        painter.setPen(colour);
        painter.drawPolyline(line);
        for (qsizetype i = 0; points && i < line.size(); ++i) {
            const bool marked = piece[static_cast<std::size_t>(i)].point == marked_;
            const double size = marked ? markSize : pointSize;
            painter.setBrush(marked ? QBrush(Qt::red) : QBrush(colour));
            painter.drawEllipse(line[i], size / 2.0 + 0.5, size / 2.0 + 0.5);
        }
    }
}

// ---- The mouse ------------------------------------------------------------------------------------------------------

std::optional<PlotPoint> PlotWidget::pointAt(const QPointF& position) const {
    return nearestIn(frame(), plot_, {position.x(), position.y()}, reach);
}

void PlotWidget::mouseMoveEvent(QMouseEvent* event) {
    const auto found = pointAt(event->position());
    const std::int32_t point = found ? found->point : -1;
    if (point != marked_) {
        mark(point);
        emit pointedAt(point);
    }
    setToolTip(found ? tr("Point %1: %2").arg(found->point + 1).arg(qtText(shortNumber(found->value))) : QString());
}

void PlotWidget::mousePressEvent(QMouseEvent* event) {
    if (const auto found = pointAt(event->position()); found && event->button() == Qt::LeftButton) {
        emit pointChosen(found->point);
    }
}

void PlotWidget::leaveEvent(QEvent*) {
    mark(-1);
    emit pointedAt(-1);
}

} // namespace velmora
