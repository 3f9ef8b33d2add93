#include "common/Icons.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace Icons {

namespace {
constexpr int kSize = 64;

// A small timetable: a header band over a 3 x 3 grid.
void drawSheet(QPainter& p, const QColor& band) {
    p.setPen(QPen(QColor(70, 80, 95), 3));
    p.setBrush(Qt::white);
    p.drawRoundedRect(QRectF(8, 10, 48, 44), 4, 4);
    p.fillRect(QRectF(10, 12, 45, 10), band);
    p.setPen(QPen(QColor(150, 160, 175), 2));
    for (int x : {24, 40})
        p.drawLine(x, 22, x, 52);
    for (int y : {32, 42})
        p.drawLine(10, y, 54, y);
}

void drawBadge(QPainter& p, const QColor& colour, const QString& glyph) {
    p.setPen(Qt::NoPen);
    p.setBrush(colour);
    p.drawEllipse(QRectF(34, 34, 28, 28));
    p.setPen(QPen(Qt::white, 4, Qt::SolidLine, Qt::RoundCap));
    if (glyph == QLatin1String("+")) {
        p.drawLine(48, 40, 48, 56);
        p.drawLine(40, 48, 56, 48);
    } else if (glyph == QLatin1String("x")) {
        p.drawLine(42, 42, 54, 54);
        p.drawLine(54, 42, 42, 54);
    }
}

QPixmap paint(const QString& key) {
    QPixmap pm(kSize, kSize);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    const QColor blue(52, 120, 198), green(46, 150, 90), orange(230, 140, 40), red(205, 60, 60);

    if (key == QLatin1String("New")) {
        drawSheet(p, blue);
        drawBadge(p, green, QStringLiteral("+"));
    } else if (key == QLatin1String("View")) {
        drawSheet(p, blue);
        p.setPen(QPen(QColor(40, 40, 40), 5, Qt::SolidLine, Qt::RoundCap));
        p.setBrush(QColor(255, 255, 255, 200));
        p.drawEllipse(QRectF(30, 28, 20, 20));
        p.drawLine(48, 46, 58, 56);
    } else if (key == QLatin1String("AutoFill")) {
        drawSheet(p, blue);
        QPainterPath bolt;
        bolt.moveTo(44, 26);
        bolt.lineTo(30, 46);
        bolt.lineTo(40, 46);
        bolt.lineTo(34, 62);
        bolt.lineTo(54, 38);
        bolt.lineTo(43, 38);
        bolt.closeSubpath();
        p.setPen(QPen(QColor(120, 80, 0), 2));
        p.setBrush(QColor(250, 200, 40));
        p.drawPath(bolt);
    } else if (key == QLatin1String("Blank")) {
        drawSheet(p, blue);
        p.save();
        p.translate(42, 44);
        p.rotate(-35);
        p.setPen(QPen(QColor(60, 60, 60), 2));
        p.setBrush(QColor(240, 120, 150));
        p.drawRoundedRect(QRectF(-14, -7, 20, 14), 2, 2);
        p.setBrush(QColor(230, 230, 235));
        p.drawRoundedRect(QRectF(6, -7, 10, 14), 2, 2);
        p.restore();
    } else if (key == QLatin1String("Lunch")) {
        // A plate with knife and fork.
        p.setPen(QPen(QColor(90, 90, 90), 3));
        p.setBrush(Qt::white);
        p.drawEllipse(QRectF(14, 14, 36, 36));
        p.setBrush(QColor(230, 236, 242));
        p.drawEllipse(QRectF(22, 22, 20, 20));
        p.setPen(QPen(QColor(90, 90, 90), 4, Qt::SolidLine, Qt::RoundCap));
        p.drawLine(6, 12, 6, 54);
        p.drawLine(58, 12, 58, 54);
        p.setPen(QPen(QColor(90, 90, 90), 2, Qt::SolidLine, Qt::RoundCap));
        for (int x : {3, 9})
            p.drawLine(x, 12, x, 24);
    } else if (key == QLatin1String("Break")) {
        // A cup with steam.
        p.setPen(QPen(QColor(110, 70, 40), 3));
        p.setBrush(QColor(250, 245, 235));
        p.drawRoundedRect(QRectF(12, 26, 32, 28), 5, 5);
        p.setBrush(Qt::NoBrush);
        p.drawEllipse(QRectF(40, 32, 14, 14));
        p.setPen(QPen(QColor(150, 150, 150), 3, Qt::SolidLine, Qt::RoundCap));
        for (int x : {20, 28, 36}) {
            QPainterPath steam;
            steam.moveTo(x, 22);
            steam.cubicTo(x - 4, 16, x + 4, 12, x, 6);
            p.drawPath(steam);
        }
    } else if (key == QLatin1String("Unavailable")) {
        drawSheet(p, blue);
        drawBadge(p, red, QStringLiteral("x"));
    } else if (key == QLatin1String("Manage")) {
        // Two people.
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(120, 150, 190));
        p.drawEllipse(QRectF(36, 10, 18, 18));
        p.drawRoundedRect(QRectF(30, 30, 30, 24), 10, 10);
        p.setBrush(blue);
        p.drawEllipse(QRectF(12, 14, 20, 20));
        p.drawRoundedRect(QRectF(4, 36, 36, 24), 11, 11);
    } else if (key == QLatin1String("Undo") || key == QLatin1String("Redo")) {
        // A curved arrow turning back (Undo) or, mirrored, forward (Redo).
        if (key == QLatin1String("Redo")) {
            p.translate(kSize, 0);
            p.scale(-1, 1);
        }
        p.setPen(QPen(blue, 7, Qt::SolidLine, Qt::RoundCap));
        QPainterPath arc;
        arc.moveTo(18, 26);
        arc.cubicTo(36, 12, 58, 22, 54, 40);
        arc.cubicTo(51, 50, 42, 54, 32, 54);
        p.drawPath(arc);
        p.setPen(Qt::NoPen);
        p.setBrush(blue);
        p.drawPolygon(QPolygonF({QPointF(6, 30), QPointF(26, 12), QPointF(28, 38)}));
    } else if (key == QLatin1String("Timetables")) {
        drawSheet(p, green);
    } else {
        drawSheet(p, orange);
    }
    return pm;
}
} // namespace

QIcon Toolbar(const QString& key) {
    return QIcon(paint(key));
}

QImage AppImage(int size) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    // Drawn on a 64-unit square, whatever the size.
    p.scale(size / double(kSize), size / double(kSize));
    drawSheet(p, QColor(52, 120, 198));
    p.fillRect(QRectF(26, 34, 13, 7), QColor(250, 200, 40));
    p.fillRect(QRectF(11, 44, 12, 7), QColor(46, 150, 90));
    return image;
}

QIcon App() {
    QIcon icon;
    for (const int size : {16, 32, 64, 128})
        icon.addPixmap(QPixmap::fromImage(AppImage(size)));
    return icon;
}

} // namespace Icons
