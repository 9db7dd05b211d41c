#include "sorties_demo.h"

#include "control/veldra.h"
#include "registre.h"

#include <QDialog>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QVBoxLayout>

namespace veldra::demo {

namespace {

struct PageHote {
    QImage carte;
    QString titre, commentaires, echelle;
};

// The host's own page: the title, the map as large as the page allows, the comments and
// the scale below it.
void dessine(QPrinter& printer, const PageHote& page) {
    QPainter p(&printer);
    const QRectF zone = printer.pageLayout().paintRectPixels(printer.resolution());
    const double pt = printer.resolution() / 72.0;
    QFont titre(QStringLiteral("DejaVu Sans"));
    titre.setPixelSize(int(16 * pt));
    titre.setBold(true);
    QFont texte(QStringLiteral("DejaVu Sans"));
    texte.setPixelSize(int(9 * pt));
    p.setFont(titre);
    const double hTitre = QFontMetricsF(titre).height() * 1.5;
    p.drawText(QRectF(0, 0, zone.width(), hTitre), Qt::AlignLeft | Qt::AlignTop, page.titre);
    const QString echelle = page.echelle.trimmed() == QLatin1String("Echelle courante")
                                ? page.echelle.trimmed()
                                : QStringLiteral("Échelle : 1/") + page.echelle;
    const QString pied =
        page.commentaires.isEmpty() ? echelle : page.commentaires + u'\n' + echelle;
    const double hPied = QFontMetricsF(texte).lineSpacing() * (pied.count(u'\n') + 2);
    const QRectF place(0, hTitre, zone.width(), zone.height() - hTitre - hPied);
    double bas = place.top();
    if (!page.carte.isNull()) {
        const QSizeF taille = QSizeF(page.carte.size()).scaled(place.size(), Qt::KeepAspectRatio);
        const QRectF cible(place.left() + (place.width() - taille.width()) / 2, place.top(),
                           taille.width(), taille.height());
        p.drawImage(cible, page.carte);
        p.drawRect(cible);
        bas = cible.bottom();
    }
    // The comments and the scale just under the map.
    p.setFont(texte);
    p.drawText(QRectF(0, bas + QFontMetricsF(texte).lineSpacing() / 2, zone.width(), hPied),
               Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, pied);
}

} // namespace

void brancheImpression(Veldra& plan, QObject& lien) {
    Veldra* c = &plan;
    QObject::connect(&plan, &Veldra::DemandeImpressionCarte, &lien,
                     [c](QString& chemin, QString& titre, QString& commentaires, QString& echelle) {
                         // The file is written again by the next print: read it now.
                         const PageHote page{QImage(chemin), titre, commentaires, echelle};
                         auto* apercu = new QPrintPreviewDialog(c->window());
                         apercu->setObjectName(QStringLiteral("ApercuCarte"));
                         apercu->setAttribute(Qt::WA_DeleteOnClose);
                         apercu->setWindowTitle(
                             QStringLiteral("Impression — ") +
                             (titre.isEmpty() ? QStringLiteral("carte") : titre));
                         QObject::connect(apercu, &QPrintPreviewDialog::paintRequested, apercu,
                                          [page](QPrinter* printer) { dessine(*printer, page); });
                         apercu->resize(820, 640);
                         apercu->show();
                     });
}

void etiquetteTitulaires(Veldra& plan, const Registre& registre) {
    RecordsetPtr noms = registre.etiquettesTitulaires();
    QString champ = QStringLiteral("Titulaire");
    plan.SetEtiquette(noms, champ);
}

QDialog* montreImageLocalisation(Veldra& plan, QWidget* parent, const QString& id) {
    QString cle = id;
    plan.ImageLocalisation(cle);
    const QString chemin = plan.ImageLocalisationTerminee();
    if (chemin == QLatin1String("-1") || chemin.isEmpty())
        return nullptr;
    auto* fenetre = new QDialog(parent);
    fenetre->setObjectName(QStringLiteral("ImageLocalisation"));
    fenetre->setAttribute(Qt::WA_DeleteOnClose);
    fenetre->setWindowTitle(QStringLiteral("Localisation de la concession %1").arg(id));
    auto* image = new QLabel(fenetre);
    const QPixmap pixmap(chemin);
    image->setPixmap(pixmap.scaled(QSize(640, 480), Qt::KeepAspectRatio, Qt::SmoothTransformation));
    auto* legende = new QLabel(QDir::toNativeSeparators(chemin), fenetre);
    legende->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* l = new QVBoxLayout(fenetre);
    l->addWidget(image);
    l->addWidget(legende);
    fenetre->show();
    return fenetre;
}

} // namespace veldra::demo
