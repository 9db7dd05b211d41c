#include "capture_fenetre.h"

#include "base/erreur.h"
#include "carto/view/map_view.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QPainter>
#include <QPixmap>
#include <QThread>
#include <QWidget>

namespace veldra::demo {

namespace {

// Lets layouts, timers and queued renders run for `duree`.
void laisseTourner(std::chrono::milliseconds duree) {
    const QDeadlineTimer fin(duree);
    while (!fin.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
        QThread::msleep(20);
    }
}

} // namespace

void captureFenetre(QWidget& fenetre, carto::MapView* carte, const QString& fichier, QSize taille) {
    using namespace std::chrono_literals;
    fenetre.resize(taille);
    fenetre.show();
    laisseTourner(1000ms);
    if (carte)
        carte->waitForRender();
    QCoreApplication::processEvents();

    const QPixmap image = fenetre.grab();
    if (image.isNull() || !image.save(fichier, "PNG"))
        throw Erreur(err::AccesRefuse,
                     QStringLiteral("Impossible d'enregistrer la capture « %1 ».")
                         .arg(QDir::toNativeSeparators(QFileInfo(fichier).absoluteFilePath())));
}

void captureDialogue(QWidget& fenetre, QWidget& dialogue, carto::MapView* carte,
                     const QString& fichier, QSize taille) {
    using namespace std::chrono_literals;
    fenetre.resize(taille);
    fenetre.show();
    dialogue.show();
    dialogue.adjustSize();
    laisseTourner(800ms);
    if (carte)
        carte->waitForRender();
    QCoreApplication::processEvents();

    QPixmap image = fenetre.grab();
    const QPixmap boite = dialogue.grab();
    dialogue.hide();
    constexpr int barre = 26;
    QPainter p(&image);
    p.fillRect(image.rect(), QColor(0, 0, 0, 60));
    const QPoint coin((image.width() - boite.width()) / 2,
                      std::max(barre, (image.height() - boite.height() - barre) / 2 + barre));
    const QRect cadre(coin.x() - 1, coin.y() - barre - 1, boite.width() + 2,
                      boite.height() + barre + 2);
    p.fillRect(cadre, QColor(52, 80, 107));
    p.setPen(Qt::white);
    QFont f = dialogue.font();
    f.setBold(true);
    p.setFont(f);
    p.drawText(
        QRect(coin.x() + 8, coin.y() - barre, boite.width() - 16, barre),
        Qt::AlignVCenter | Qt::AlignLeft,
        p.fontMetrics().elidedText(dialogue.windowTitle(), Qt::ElideMiddle, boite.width() - 16));
    p.drawPixmap(coin, boite);
    p.end();
    if (!image.save(fichier, "PNG"))
        throw Erreur(err::AccesRefuse,
                     QStringLiteral("Impossible d'enregistrer la capture « %1 ».")
                         .arg(QDir::toNativeSeparators(QFileInfo(fichier).absoluteFilePath())));
}

void captureMenu(QWidget& fenetre, QWidget& menu, QPoint ecran, carto::MapView* carte,
                 const QString& fichier, QSize taille) {
    using namespace std::chrono_literals;
    fenetre.resize(taille);
    fenetre.show();
    laisseTourner(600ms);
    if (carte)
        carte->waitForRender();
    menu.adjustSize();
    QPixmap image = fenetre.grab();
    const QPixmap boite = menu.grab();
    const QPoint coin = ecran - fenetre.mapToGlobal(QPoint(0, 0));
    QPainter p(&image);
    p.fillRect(QRect(coin + QPoint(3, 3), boite.size()), QColor(0, 0, 0, 70));
    p.drawPixmap(coin, boite);
    p.setPen(QColor(120, 120, 120));
    p.drawRect(QRect(coin, boite.size()).adjusted(0, 0, -1, -1));
    p.end();
    if (!image.save(fichier, "PNG"))
        throw Erreur(err::AccesRefuse,
                     QStringLiteral("Impossible d'enregistrer la capture « %1 ».")
                         .arg(QDir::toNativeSeparators(QFileInfo(fichier).absoluteFilePath())));
}

} // namespace veldra::demo
