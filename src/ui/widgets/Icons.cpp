#include "Icons.h"

#include <QColor>
#include <QLatin1String>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QPixmap>
#include <QPolygonF>
#include <QRectF>
#include <QSvgRenderer>

#include <array>
#include <initializer_list>

// Every icon is drawn on a 24 x 24 unit grid; the painter is scaled to the pixmap size, so line widths
// and shapes grow in proportion.

namespace {

constexpr qreal kGrid = 24.0;
constexpr qreal kLine = 1.9;           // normal stroke width, in grid units
constexpr qreal kDisabledAlpha = 0.32; // opacity of the disabled variant
constexpr std::array<int, 3> kSizes = {24, 32, 48};

struct Ink {
    QColor line;   // outlines and fills
    QColor accent; // the one coloured part (record)
};

using DrawFn = void (*)(QPainter&, const Ink&);

QPen linePen(const QColor& colour, qreal width = kLine) {
    QPen pen(colour, width);
    pen.setCapStyle(Qt::RoundCap);
    pen.setJoinStyle(Qt::RoundJoin);
    return pen;
}

void stroke(QPainter& p, const QPainterPath& path, const Ink& ink, qreal width = kLine) {
    p.strokePath(path, linePen(ink.line, width));
}

void fill(QPainter& p, const QPainterPath& path, const QColor& colour) {
    p.fillPath(path, colour);
}

void line(QPainter& p, const Ink& ink, QPointF from, QPointF to, qreal width = kLine) {
    p.setPen(linePen(ink.line, width));
    p.drawLine(from, to);
}

QPainterPath roundedRect(const QRectF& rect, qreal radius) {
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    return path;
}

QPainterPath circle(QPointF centre, qreal radius) {
    QPainterPath path;
    path.addEllipse(centre, radius, radius);
    return path;
}

QPainterPath polygon(std::initializer_list<QPointF> points, bool closed) {
    QPainterPath path;
    const QPolygonF poly(points);
    path.addPolygon(poly);
    if (closed)
        path.closeSubpath();
    return path;
}

// A four-pointed sparkle with concave sides.
QPainterPath sparkle(QPointF c, qreal r) {
    QPainterPath path;
    path.moveTo(c.x(), c.y() - r);
    path.quadTo(c, QPointF(c.x() + r, c.y()));
    path.quadTo(c, QPointF(c.x(), c.y() + r));
    path.quadTo(c, QPointF(c.x() - r, c.y()));
    path.quadTo(c, QPointF(c.x(), c.y() - r));
    path.closeSubpath();
    return path;
}

// Magnifying glass shared by both zoom icons; the sign goes inside the lens.
void drawMagnifier(QPainter& p, const Ink& ink, bool plus) {
    const QPointF centre(10, 10);
    stroke(p, circle(centre, 6.6), ink);
    line(p, ink, QPointF(15.0, 15.0), QPointF(20.5, 20.5), 3.0);
    line(p, ink, QPointF(7.0, 10), QPointF(13.0, 10));
    if (plus)
        line(p, ink, QPointF(10, 7.0), QPointF(10, 13.0));
}

// ---- one function per icon ----

void drawOpen(QPainter& p, const Ink& ink) {
    // Back of the folder with its tab, then the open front flap tilted forward.
    QPainterPath back = polygon({{3, 19.5}, {3, 5}, {9.5, 5}, {11.5, 7.5}, {19.5, 7.5}, {19.5, 10.5}}, false);
    stroke(p, back, ink);
    QPainterPath front = polygon({{3, 19.5}, {6.2, 11}, {22.2, 11}, {19.2, 19.5}}, true);
    fill(p, front, ink.line);
    stroke(p, front, ink);
}

void drawPlay(QPainter& p, const Ink& ink) {
    QPainterPath tri = polygon({{7.5, 5}, {19, 12}, {7.5, 19}}, true);
    fill(p, tri, ink.line);
    stroke(p, tri, ink, 1.6);
}

void drawPause(QPainter& p, const Ink& ink) {
    fill(p, roundedRect(QRectF(6, 5, 4.5, 14), 1.2), ink.line);
    fill(p, roundedRect(QRectF(13.5, 5, 4.5, 14), 1.2), ink.line);
}

void drawStop(QPainter& p, const Ink& ink) {
    fill(p, roundedRect(QRectF(6, 6, 12, 12), 1.6), ink.line);
}

void drawRecord(QPainter& p, const Ink& ink) {
    fill(p, circle(QPointF(12, 12), 7), ink.accent);
}

void drawSoundSettings(QPainter& p, const Ink& ink) {
    QPainterPath speaker =
        polygon({{3, 9.5}, {6.5, 9.5}, {11.5, 5}, {11.5, 19}, {6.5, 14.5}, {3, 14.5}}, true);
    fill(p, speaker, ink.line);
    stroke(p, speaker, ink, 1.2);
    p.setPen(linePen(ink.line));
    p.setBrush(Qt::NoBrush);
    // Two sound waves: arcs centred on the speaker's mouth, angles in 1/16 degree.
    p.drawArc(QRectF(7, 7.5, 9, 9), -45 * 16, 90 * 16);
    p.drawArc(QRectF(3, 3.5, 17, 17), -45 * 16, 90 * 16);
}

void drawZoomIn(QPainter& p, const Ink& ink) {
    drawMagnifier(p, ink, true);
}

void drawZoomOut(QPainter& p, const Ink& ink) {
    drawMagnifier(p, ink, false);
}

void drawExport(QPainter& p, const Ink& ink) {
    line(p, ink, QPointF(12, 3.5), QPointF(12, 14));
    stroke(p, polygon({{7.5, 9.5}, {12, 14}, {16.5, 9.5}}, false), ink);
    stroke(p, polygon({{4, 13.5}, {4, 20}, {20, 20}, {20, 13.5}}, false), ink);
}

// A U-turn arrow pointing left; redo is its mirror image.
void drawUndo(QPainter& p, const Ink& ink) {
    QPainterPath body;
    body.moveTo(5, 9);
    body.lineTo(14, 9);
    body.cubicTo(17.6, 9, 20, 11.6, 20, 14.5);
    body.cubicTo(20, 17.4, 17.6, 20, 14, 20);
    body.lineTo(9.5, 20);
    stroke(p, body, ink);
    stroke(p, polygon({{9, 5}, {5, 9}, {9, 13}}, false), ink);
}

void drawRedo(QPainter& p, const Ink& ink) {
    p.save();
    p.translate(kGrid, 0);
    p.scale(-1, 1);
    drawUndo(p, ink);
    p.restore();
}

void drawCopy(QPainter& p, const Ink& ink) {
    const QRectF frontRect(9.5, 8, 10.5, 13);
    // The sheet behind shows only where the front sheet does not cover it.
    QPainterPath visible;
    visible.addRect(QRectF(0, 0, kGrid, kGrid));
    QPainterPath cover;
    cover.addRect(frontRect.adjusted(-1.8, -1.8, 1.8, 1.8));
    p.save();
    p.setClipPath(visible.subtracted(cover));
    stroke(p, roundedRect(QRectF(4, 3, 10.5, 13), 1.5), ink);
    p.restore();
    stroke(p, roundedRect(frontRect, 1.5), ink);
    line(p, ink, QPointF(12.5, 12), QPointF(17, 12), 1.5);
    line(p, ink, QPointF(12.5, 15), QPointF(17, 15), 1.5);
    line(p, ink, QPointF(12.5, 18), QPointF(15.5, 18), 1.5);
}

void drawCut(QPainter& p, const Ink& ink) {
    // Two blades crossing at a pivot, with round finger rings below.
    line(p, ink, QPointF(8.9, 14.6), QPointF(16.5, 3));
    line(p, ink, QPointF(15.1, 14.6), QPointF(7.5, 3));
    stroke(p, circle(QPointF(7, 17.5), 3), ink);
    stroke(p, circle(QPointF(17, 17.5), 3), ink);
    fill(p, circle(QPointF(12, 9.9), 1.3), ink.line);
}

void drawPaste(QPainter& p, const Ink& ink) {
    stroke(p, roundedRect(QRectF(5, 4.5, 14, 17), 1.8), ink);
    fill(p, roundedRect(QRectF(8.5, 2.5, 7, 4.5), 1.3), ink.line);
    line(p, ink, QPointF(8.5, 11), QPointF(15.5, 11), 1.5);
    line(p, ink, QPointF(8.5, 14), QPointF(15.5, 14), 1.5);
    line(p, ink, QPointF(8.5, 17), QPointF(13, 17), 1.5);
}

void drawDelete(QPainter& p, const Ink& ink) {
    line(p, ink, QPointF(4, 6.5), QPointF(20, 6.5));
    stroke(p, polygon({{9.5, 6.5}, {9.5, 3.5}, {14.5, 3.5}, {14.5, 6.5}}, false), ink);
    stroke(p, polygon({{6, 6.5}, {7.2, 20.5}, {16.8, 20.5}, {18, 6.5}}, false), ink);
    line(p, ink, QPointF(10, 10), QPointF(10, 17), 1.5);
    line(p, ink, QPointF(14, 10), QPointF(14, 17), 1.5);
}

void drawTools(QPainter& p, const Ink& ink) {
    // A magic wand with its tip set apart, and sparkles around it.
    line(p, ink, QPointF(4, 20), QPointF(13.2, 10.8), 2.8);
    line(p, ink, QPointF(15.2, 8.8), QPointF(16.8, 7.2), 2.8);
    fill(p, sparkle(QPointF(18.8, 4.2), 3.4), ink.line);
    fill(p, sparkle(QPointF(20.3, 12.6), 2.7), ink.line);
    fill(p, sparkle(QPointF(10.8, 4.6), 2.7), ink.line);
}

void drawColour(QPainter& p, const Ink& ink) {
    // A painter's palette: a solid rounded shape with paint wells and a thumb hole cut out.
    QPainterPath palette;
    palette.moveTo(12, 3);
    palette.cubicTo(17.5, 3, 21.5, 6.5, 21.5, 11);
    palette.cubicTo(21.5, 14, 19, 14.8, 17, 14.5);
    palette.cubicTo(15, 14.2, 14, 15.5, 14.6, 17.2);
    palette.cubicTo(15.3, 19.3, 14, 21, 11.5, 21);
    palette.cubicTo(6, 21, 2.5, 17, 2.5, 12);
    palette.cubicTo(2.5, 7, 6.5, 3, 12, 3);
    palette.closeSubpath();
    QPainterPath holes;
    holes.addPath(circle(QPointF(7, 12), 1.7));
    holes.addPath(circle(QPointF(8.5, 7.5), 1.7));
    holes.addPath(circle(QPointF(13, 6.5), 1.7));
    holes.addPath(circle(QPointF(17, 9), 1.7));
    fill(p, palette.subtracted(holes), ink.line);
}

struct IconEntry {
    const char* name;
    DrawFn draw;
    const char* themeName; // the freedesktop icon naming's name, where one fits
};

const std::array<IconEntry, 17> kIcons = {{
    {"open", drawOpen, "document-open"},
    {"play", drawPlay, "media-playback-start"},
    {"pause", drawPause, "media-playback-pause"},
    {"stop", drawStop, "media-playback-stop"},
    {"record", drawRecord, "media-record"},
    {"sound-settings", drawSoundSettings, "audio-volume-high"},
    {"zoom-in", drawZoomIn, "zoom-in"},
    {"zoom-out", drawZoomOut, "zoom-out"},
    {"export", drawExport, "document-save-as"},
    {"undo", drawUndo, "edit-undo"},
    {"redo", drawRedo, "edit-redo"},
    {"copy", drawCopy, "edit-copy"},
    {"cut", drawCut, "edit-cut"},
    {"paste", drawPaste, "edit-paste"},
    {"delete", drawDelete, "edit-delete"},
    {"tools", drawTools, nullptr},
    {"colour", drawColour, nullptr},
}};

const IconEntry* findIcon(const QString& name) {
    for (const IconEntry& entry : kIcons) {
        if (name == QLatin1String(entry.name))
            return &entry;
    }
    return nullptr;
}

QPixmap paintPixmap(DrawFn draw, int size, const Ink& ink) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(size / kGrid, size / kGrid);
    p.setBrush(Qt::NoBrush);
    draw(p, ink);
    p.end();
    return pixmap;
}

// Drawn whole and then faded, so overlapping strokes do not show darker seams.
QPixmap fade(const QPixmap& source) {
    QPixmap pixmap(source.size());
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setOpacity(kDisabledAlpha);
    p.drawPixmap(0, 0, source);
    p.end();
    return pixmap;
}

} // namespace

QIcon toolbarIcon(const QString& name, const QPalette& palette) {
    const IconEntry* entry = findIcon(name);
    if (!entry)
        return {};
    if (entry->themeName && QIcon::hasThemeIcon(QLatin1String(entry->themeName)))
        return QIcon::fromTheme(QLatin1String(entry->themeName));
    // Drawn in the colour of the window's text, so a dark theme shows them light.
    const QColor ink = palette.color(QPalette::Active, QPalette::WindowText);
    const Ink normal{ink, QColor(0xd3, 0x2f, 0x2f)};
    const Ink disabled{ink, ink}; // the record dot turns to the ink too
    QIcon icon;
    for (int size : kSizes) {
        icon.addPixmap(paintPixmap(entry->draw, size, normal), QIcon::Normal);
        icon.addPixmap(fade(paintPixmap(entry->draw, size, disabled)), QIcon::Disabled);
    }
    return icon;
}

QIcon applicationIcon() {
    QSvgRenderer renderer(QStringLiteral(":/icons/org.tanselo.Tanselo.svg"));
    QIcon icon;
    if (!renderer.isValid())
        return icon;
    for (int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        renderer.render(&painter);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}
