#include "capture_fenetre.h"

#include "base/erreur.h"
#include "carto/view/map_view.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
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

} // namespace veldra::demo
