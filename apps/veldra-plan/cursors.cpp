#include "veldra-plan/cursors.h"

#include "base/erreur.h"
#include "veldra-plan/output_file.h"
#include "veldra-plan/symbol_library.h"

#include <QDir>
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <functional>

namespace veldra::plantool {

namespace {

constexpr int Size = 32;

QImage drawn(const std::function<void(QPainter&)>& draw) {
    QImage image(Size, Size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing, false);
    draw(p);
    return image;
}

// A cross-hair whose centre is the measured point, with a small graduated rule below it.
QImage ruler() {
    return drawn([](QPainter& p) {
        p.setPen(QPen(Qt::white, 3));
        p.drawLine(16, 4, 16, 28);
        p.drawLine(4, 16, 28, 16);
        p.setPen(QPen(Qt::black, 1));
        p.drawLine(16, 4, 16, 28);
        p.drawLine(4, 16, 28, 16);
        p.fillRect(18, 22, 13, 6, QColor(255, 230, 120));
        p.drawRect(18, 22, 12, 5);
        for (int x = 20; x < 30; x += 2)
            p.drawLine(x, 22, x, x % 4 == 0 ? 25 : 24);
    });
}

// An arrow with a blue "i" beside it.
QImage information() {
    return drawn([](QPainter& p) {
        const QPolygon arrow({{0, 0}, {0, 16}, {4, 12}, {7, 19}, {9, 18}, {6, 11}, {11, 11}});
        p.setPen(QPen(Qt::black, 1));
        p.setBrush(Qt::white);
        p.drawPolygon(arrow);
        p.setBrush(QColor(30, 80, 200));
        p.setPen(Qt::NoPen);
        p.drawEllipse(QRect(15, 13, 16, 16));
        p.setBrush(Qt::white);
        p.drawRect(22, 19, 3, 7);
        p.drawRect(22, 15, 3, 3);
    });
}

void write(const QImage& image, const QString& path) {
    StagedFile file(path, QStringLiteral("cur"));
    QImageWriter writer(file.stagePath(), "cur");
    if (!writer.write(image))
        throw Erreur(err::AccesRefuse,
                     QStringLiteral("Le curseur « %1 » ne peut pas être écrit : %2")
                         .arg(path, writer.errorString()));
    file.commit();
}

} // namespace

QString writeCursors(const QString& folder) {
    const QString target = prepareFolder(QDir(folder).filePath(QStringLiteral("Images/Curseurs")));
    write(ruler(), QDir(target).filePath(QStringLiteral("CurRegle.cur")));
    write(information(), QDir(target).filePath(QStringLiteral("Infos.cur")));
    return target;
}

QString writeControlResources(const QString& folder) {
    writeCursors(folder);
    buildSymbolLibrary(folder);
    return prepareFolder(folder);
}

} // namespace veldra::plantool
