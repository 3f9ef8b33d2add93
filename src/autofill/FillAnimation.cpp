#include "autofill/FillAnimation.h"

#include <QPainter>
#include <QTimerEvent>

namespace {
constexpr int kDays = 5;
constexpr int kPeriods = 6;
constexpr int kCells = kDays * kPeriods;
// Frames a lesson takes to drop into its cell, and the pause when full.
constexpr int kDrop = 4;
constexpr int kPause = 12;

// A fixed, pleasant order of filling, so the week does not fill row by row.
int cellAt(int step) {
    return (step * 7) % kCells;
}

QColor lessonColour(int cell) {
    static const QColor colours[] = {QColor(0x4a, 0x86, 0xc5), QColor(0x6a, 0xa8, 0x4f),
                                     QColor(0xe0, 0x9b, 0x3d), QColor(0xb3, 0x5d, 0x9b),
                                     QColor(0x3d, 0xa5, 0xa5)};
    return colours[(cell * 3 + cell / kDays) % 5];
}
} // namespace

FillAnimation::FillAnimation(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("Animation1"));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize FillAnimation::sizeHint() const {
    return {kDays * 34 + 1, kPeriods * 16 + 1};
}

void FillAnimation::play() {
    m_timer.start(40, this);
}

void FillAnimation::stop() {
    m_timer.stop();
}

void FillAnimation::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_timer.timerId())
        return QWidget::timerEvent(event);
    m_frame = (m_frame + 1) % (kCells * kDrop + kPause);
    update();
}

void FillAnimation::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal w = (width() - 1) / qreal(kDays);
    const qreal h = (height() - 1) / qreal(kPeriods);
    auto cellRect = [&](int cell) {
        return QRectF(0.5 + (cell % kDays) * w, 0.5 + (cell / kDays) * h, w, h);
    };
    painter.fillRect(rect(), palette().base());
    const int filled = std::min(m_frame / kDrop, kCells);
    for (int step = 0; step <= filled && step < kCells; ++step) {
        const int cell = cellAt(step);
        QRectF r = cellRect(cell).adjusted(2, 2, -2, -2);
        if (step == filled) {
            // The lesson on its way in slides down from above its cell.
            const qreal t = qreal(m_frame % kDrop + 1) / kDrop;
            r.translate(0, -(1 - t) * h);
            painter.setOpacity(t);
        }
        painter.setBrush(lessonColour(cell));
        painter.setPen(Qt::NoPen);
        painter.drawRoundedRect(r, 3, 3);
        painter.setOpacity(1);
    }
    painter.setPen(palette().color(QPalette::Mid));
    painter.setBrush(Qt::NoBrush);
    for (int cell = 0; cell < kCells; ++cell)
        painter.drawRect(cellRect(cell));
}
