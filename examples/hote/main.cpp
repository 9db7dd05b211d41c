// The smallest host: opens the plan named on the command line, asks the control for its
// plots as the host's synchronisation does, and prints how many it holds.
#include "control/veldra.h"

#include <QApplication>
#include <QMainWindow>
#include <cstdio>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage : hote PLAN.gpkg | PG:...\n");
        return 2;
    }
    QMainWindow fenetre;
    auto* plan = new veldra::Veldra(&fenetre);
    fenetre.setCentralWidget(plan);
    fenetre.resize(1000, 700);
    fenetre.show();
    QString chemin = QString::fromLocal8Bit(argv[1]), nom = QStringLiteral("Exemple");
    bool nouveau = false, droitEdition = true;
    plan->OuvreCimetiere(chemin, nouveau, nom, droitEdition);
    QString type = QStringLiteral("C"), p1, p2, message;
    bool jauge = false;
    const RecordsetPtr rs = plan->GetInfo(type, p1, p2, jauge, message);
    std::printf("%d emplacements\n", rs ? rs->recordCount() : -1);
    if (QGuiApplication::platformName() == QLatin1String("offscreen"))
        return rs ? 0 : 1;
    return app.exec();
}
