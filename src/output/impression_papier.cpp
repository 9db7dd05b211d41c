#include "output/impression_papier.h"

#include "base/erreur.h"
#include "context/contexte.h"
#include "context/dossier_controle.h"
#include "context/sablier.h"
#include "output/mise_en_page.h"

#include <QDir>
#include <QFileDialog>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QSaveFile>

namespace veldra {

namespace {

// Paints the page on a device already set to the page's paper and resolution.
void peint(const Contexte& ctx, QPagedPaintDevice& device, const MiseEnPage& m) {
    QPainter p;
    if (!p.begin(&device))
        throw Erreur(err::EcritureImpossible,
                     QStringLiteral("L'impression ne peut pas commencer."));
    dessinePage(ctx, p, m);
    p.end();
}

} // namespace

void ecritPdf(const Contexte& ctx, const QString& chemin, const MiseEnPage& m) {
    const Sablier sablier;
    QSaveFile fichier(chemin);
    if (!fichier.open(QIODevice::WriteOnly))
        throw Erreur(err::EcritureImpossible,
                     QStringLiteral("Le fichier « %1 » ne peut pas être écrit : %2")
                         .arg(QDir::toNativeSeparators(chemin), fichier.errorString()));
    {
        QPdfWriter pdf(&fichier);
        pdf.setTitle(m.titre);
        pdf.setCreator(QStringLiteral("Veldra"));
        pdf.setResolution(kResolution);
        pdf.setPageLayout(disposition(m));
        peint(ctx, pdf, m);
    }
    if (!fichier.commit())
        throw Erreur(err::EcritureImpossible,
                     QStringLiteral("Le fichier « %1 » ne peut pas être écrit : %2")
                         .arg(QDir::toNativeSeparators(chemin), fichier.errorString()));
}

void preparePrinter(QPrinter& printer, const MiseEnPage& m) {
    printer.setResolution(kResolution);
    printer.setFullPage(true);
    printer.setPageLayout(disposition(m));
    printer.setDocName(m.titre.isEmpty() ? QStringLiteral("Plan") : m.titre);
}

bool imprimeSurPapier(Contexte& ctx, const MiseEnPage& m) {
    QPrinter printer(QPrinter::HighResolution);
    preparePrinter(printer, m);
    QPrintDialog choix(&printer, &ctx.controle);
    choix.setObjectName(QStringLiteral("ChoixImprimante"));
    choix.setWindowTitle(QStringLiteral("Imprimer"));
    if (ctx.montreModal(choix) != QDialog::Accepted)
        return false;
    // The clerk may have changed the paper: the page follows what the printer holds.
    MiseEnPage choisie = m;
    choisie.papier = printer.pageLayout().pageSize().id();
    choisie.orientation = printer.pageLayout().orientation();
    preparePrinter(printer, choisie);
    const Sablier sablier;
    peint(ctx, printer, choisie);
    return true;
}

void apercu(Contexte& ctx, const MiseEnPage& m) {
    QPrinter printer(QPrinter::HighResolution);
    preparePrinter(printer, m);
    QPrintPreviewDialog vue(&printer, &ctx.controle);
    vue.setObjectName(QStringLiteral("ApercuImpression"));
    vue.setWindowTitle(QStringLiteral("Aperçu avant impression"));
    const Contexte* c = &ctx;
    QObject::connect(&vue, &QPrintPreviewDialog::paintRequested, &vue, [c, m](QPrinter* p) {
        try {
            peint(*c, *p, m);
        } catch (const Erreur&) {
            // The preview stays empty; printing from it says nothing more.
        }
    });
    vue.resize(900, 700);
    ctx.montreModal(vue);
}

QString enregistrePdf(Contexte& ctx, const MiseEnPage& m) {
    QFileDialog choix(&ctx.controle, QStringLiteral("Enregistrer la carte en PDF"),
                      dossierInscriptible(ctx.etat.repertoireExport.isEmpty()
                                              ? ctx.dossierControle
                                              : ctx.etat.repertoireExport),
                      QStringLiteral("Documents PDF (*.pdf)"));
    choix.setObjectName(QStringLiteral("ChoixPdf"));
    choix.setAcceptMode(QFileDialog::AcceptSave);
    choix.setDefaultSuffix(QStringLiteral("pdf"));
    choix.selectFile(QStringLiteral("carte.pdf"));
    if (ctx.montreModal(choix) != QDialog::Accepted || choix.selectedFiles().isEmpty())
        return {};
    const QString chemin = choix.selectedFiles().constFirst();
    ecritPdf(ctx, chemin, m);
    return chemin;
}

} // namespace veldra
