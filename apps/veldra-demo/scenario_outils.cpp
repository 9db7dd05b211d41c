#include "scenario_outils.h"

#include "capture_fenetre.h"
#include "carto/view/map_view.h"
#include "context/surface.h"
#include "control/veldra.h"
#include "fenetre_principale.h"

#include <QAction>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>

namespace veldra::demo {

int PrompterBandeau::message(const QString& texte, int, const QString& titre) {
    f_.signale(titre.isEmpty() ? texte : QStringLiteral("%1 — %2").arg(titre, texte));
    return reponse::Ok;
}

Album::Album(FenetrePrincipale& fenetre, const QString& dossier)
    : fenetre_(fenetre), dossier_(dossier) {}

QString Album::suivante(const QString& nom) {
    const QString image = dossier_.filePath(
        QStringLiteral("%1-%2.png").arg(++numero_, 2, 10, QLatin1Char('0')).arg(nom));
    images_ << image;
    return image;
}

void Album::fenetre(const QString& nom, QSize taille) {
    captureFenetre(fenetre_, fenetre_.plan().surface().Map1, suivante(nom), taille);
}

void Album::menu(QWidget& m, QPoint ecran, const QString& nom, QSize taille) {
    captureMenu(fenetre_, m, ecran, fenetre_.plan().surface().Map1, suivante(nom), taille);
}

void Album::dialogue(QDialog& d, const QString& nom, QSize taille) {
    captureDialogue(fenetre_, d, fenetre_.plan().surface().Map1, suivante(nom), taille);
}

void souris(carto::MapView& carte, QEvent::Type type, carto::Point p, Qt::MouseButton bouton) {
    const QPointF ecran = carte.toScreen(p);
    const Qt::MouseButtons tenus = type == QEvent::MouseMove ? Qt::MouseButtons(Qt::LeftButton)
                                   : type == QEvent::MouseButtonRelease ? Qt::MouseButtons()
                                                                        : Qt::MouseButtons(bouton);
    QMouseEvent e(type, ecran, carte.mapToGlobal(ecran), bouton, tenus, Qt::NoModifier);
    QCoreApplication::sendEvent(&carte, &e);
}

void glisse(carto::MapView& carte, carto::Point de, carto::Point a) {
    souris(carte, QEvent::MouseButtonPress, de);
    for (int i = 1; i <= 4; ++i)
        souris(carte, QEvent::MouseMove,
               {de.x + (a.x - de.x) * i / 4, de.y + (a.y - de.y) * i / 4});
    souris(carte, QEvent::MouseButtonRelease, a);
}

void clique(carto::MapView& carte, carto::Point p) {
    souris(carte, QEvent::MouseButtonPress, p);
    souris(carte, QEvent::MouseButtonRelease, p);
}

void survole(carto::MapView& carte, carto::Point p) {
    const QPointF ecran = carte.toScreen(p);
    QMouseEvent e(QEvent::MouseMove, ecran, carte.mapToGlobal(ecran), Qt::NoButton, Qt::NoButton,
                  Qt::NoModifier);
    QCoreApplication::sendEvent(&carte, &e);
}

void polygone(carto::MapView& carte, const std::vector<carto::Point>& coins) {
    for (const carto::Point& p : coins)
        clique(carte, p);
    souris(carte, QEvent::MouseButtonDblClick, coins.back());
    souris(carte, QEvent::MouseButtonRelease, coins.back());
}

void touche(carto::MapView& carte, int cle, Qt::KeyboardModifiers modificateurs) {
    QKeyEvent e(QEvent::KeyPress, cle, modificateurs);
    QCoreApplication::sendEvent(&carte, &e);
}

void choisitCalque(const Surface& s, const QString& nom) {
    const int i = s.Combo_Calque->findText(nom);
    s.Combo_Calque->setCurrentIndex(i);
    emit s.Combo_Calque->activated(i);
}

QString copieExemple(const QString& exemple, const QString& dossier) {
    const QFileInfo source(exemple);
    for (const QFileInfo& f : source.dir().entryInfoList(
             {source.completeBaseName() + QStringLiteral(".*")}, QDir::Files))
        if (!f.fileName().contains(QLatin1String(".registre.")))
            QFile::copy(f.filePath(), QDir(dossier).filePath(f.fileName()));
    return QDir(dossier).filePath(source.fileName());
}

void attends(const std::function<bool()>& fini) {
    const QDeadlineTimer fin(2000);
    while (!fini() && !fin.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
}

QAction* entreeDe(QMenu& menu, const QString& texte) {
    for (QAction* a : menu.actions()) {
        if (a->text() == texte)
            return a;
        if (a->menu())
            if (QAction* b = entreeDe(*a->menu(), texte))
                return b;
    }
    return nullptr;
}

} // namespace veldra::demo
