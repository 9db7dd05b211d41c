#include "session_sans_ecran.h"

#include <QDialog>

namespace veldra::demo {

int reponseSansEcran(int style) {
    switch (style & 0x0F) {
    case boutons::OkAnnuler:
    case boutons::OuiNonAnnuler:
        return reponse::Annuler;
    case boutons::OuiNon:
        return reponse::Non;
    default:
        return reponse::Ok;
    }
}

int PrompterSansEcran::message(const QString& texte, int style, const QString& titre) {
    sortie_ << QStringLiteral("Message du contrôle");
    if (!titre.isEmpty())
        sortie_ << QStringLiteral(" (") << titre << u')';
    sortie_ << QStringLiteral(" : ") << texte << Qt::endl;
    return reponseSansEcran(style);
}

int refuseDialogue(QTextStream& sortie, QDialog& dialogue) {
    sortie << QStringLiteral("Dialogue refusé sans écran : ") << dialogue.windowTitle() << Qt::endl;
    return QDialog::Rejected;
}

} // namespace veldra::demo
