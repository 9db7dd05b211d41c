#include "plan/nouveau_cimetiere.h"

#include "context/contexte.h"
#include "context/filtre_numerique.h"
#include "plan/ouverture.h"
#include "recordset/value.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace veldra {

New_Cim::New_Cim(Contexte& ctx, QString nom, QString chemin, Creation creation, QWidget* parent)
    : QDialog(parent), ctx_(ctx), nom_(std::move(nom)), chemin_(std::move(chemin)),
      creation_(std::move(creation)) {
    setObjectName(QStringLiteral("New_Cim"));
    setWindowTitle(QStringLiteral("Nouveau cimetière"));
    auto* l = new QVBoxLayout(this);
    Titre = new QLabel(QStringLiteral("Création du cimetière ") + nom_, this);
    Titre->setObjectName(QStringLiteral("Titre"));
    QFont gras = Titre->font();
    gras.setBold(true);
    Titre->setFont(gras);
    l->addWidget(Titre);

    auto* taille = new QGroupBox(QStringLiteral("Taille approximative"), this);
    auto* g = new QGridLayout(taille);
    TB_Longueur = new QLineEdit(taille);
    TB_Longueur->setObjectName(QStringLiteral("TB_Longueur"));
    TB_Largeur = new QLineEdit(taille);
    TB_Largeur->setObjectName(QStringLiteral("TB_Largeur"));
    g->addWidget(new QLabel(QStringLiteral("Longueur (m) :"), taille), 0, 0);
    g->addWidget(TB_Longueur, 0, 1);
    g->addWidget(new QLabel(QStringLiteral("Largeur (m) :"), taille), 1, 0);
    g->addWidget(TB_Largeur, 1, 1);
    l->addWidget(taille);
    // Whole metres: digits only, no sign, no separator.
    FiltreClavierNumerique::installe(*TB_Longueur, true, false, QString());
    FiltreClavierNumerique::installe(*TB_Largeur, true, false, QString());

    Btn_Valider = new QPushButton(QStringLiteral("Valider"), this);
    Btn_Valider->setObjectName(QStringLiteral("Btn_Valider"));
    Btn_Valider->setDefault(true);
    l->addWidget(Btn_Valider, 0, Qt::AlignRight);
    connect(Btn_Valider, &QPushButton::clicked, this, &New_Cim::valide);
}

void New_Cim::valide() {
    if (TB_Longueur->text().isEmpty() || TB_Largeur->text().isEmpty()) {
        ctx_.prompter().message(QStringLiteral("Vous devez saisir la longueur et la largeur !"));
        return;
    }
    double longueur = recordset::leadingNumber(TB_Longueur->text());
    double largeur = recordset::leadingNumber(TB_Largeur->text());
    creation_(chemin_, nom_, longueur, largeur);
    accept();
}

void nouveauCimetiere(Contexte& ctx, const QString& chemin, const QString& nom, double longueur,
                      double largeur) {
    ctx.etat.longueurPlan = longueur;
    ctx.etat.largeurPlan = largeur;
    ouvrePlan(ctx, chemin, nom, true, true);
}

void demandeTailleCimetiere(Contexte& ctx, const QString& chemin, const QString& nom,
                            New_Cim::Creation creation) {
    New_Cim dialogue(ctx, nom, chemin, std::move(creation), &ctx.controle);
    dialogue.setWindowModality(Qt::WindowModal);
    ctx.montreModal(dialogue);
}

} // namespace veldra
