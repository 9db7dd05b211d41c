#include "context/prompter.h"

#include <QMessageBox>

namespace veldra {

int BoitePrompter::message(const QString& texte, int style, const QString& titre) {
    QMessageBox box(parent_);
    box.setWindowTitle(titre);
    box.setText(texte);
    switch (style & 0x0F) {
    case boutons::OkAnnuler:
        box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        break;
    case boutons::OuiNonAnnuler:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        break;
    case boutons::OuiNon:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        break;
    default:
        box.setStandardButtons(QMessageBox::Ok);
        break;
    }
    switch (style & 0x70) {
    case boutons::Critique:
        box.setIcon(QMessageBox::Critical);
        break;
    case boutons::Question:
        box.setIcon(QMessageBox::Question);
        break;
    case boutons::Exclamation:
        box.setIcon(QMessageBox::Warning);
        break;
    case boutons::Information:
        box.setIcon(QMessageBox::Information);
        break;
    default:
        break;
    }
    switch (box.exec()) {
    case QMessageBox::Cancel:
        return reponse::Annuler;
    case QMessageBox::Yes:
        return reponse::Oui;
    case QMessageBox::No:
        return reponse::Non;
    default:
        return reponse::Ok;
    }
}

} // namespace veldra
