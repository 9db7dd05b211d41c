#include "editing/dialogue_rangee.h"

#include "context/nombres.h"
#include "context/widget_nomme.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <cmath>

namespace veldra {

namespace {

// A whole number, or -1 for one no row could bear.
qint64 entier(const QString& texte) {
    const double v = nombreLu(texte);
    return std::fabs(v) < 1e15 ? qint64(std::llround(v)) : -1;
}

} // namespace

Dialogue_Rangee::Dialogue_Rangee(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialogue_Rangee"));
    setWindowTitle(QStringLiteral("Créer une rangée d'emplacements"));
    auto* champs = new QFormLayout;
    nombre_ = cree<QSpinBox>(this, "SB_Nombre");
    nombre_->setRange(1, 1000);
    nombre_->setValue(10);
    champs->addRow(QStringLiteral("Nombre d'emplacements :"), nombre_);
    ecart_ = cree<QLineEdit>(this, "T_Ecart");
    ecart_->setText(QStringLiteral("0,3"));
    champs->addRow(QStringLiteral("Écart entre deux emplacements (m) :"), ecart_);
    sens_ = cree<QComboBox>(this, "CB_Sens");
    sens_->addItems({QStringLiteral("Le long du premier côté"), QStringLiteral("En travers")});
    champs->addRow(QStringLiteral("Direction :"), sens_);
    premier_ = cree<QLineEdit>(this, "T_Premier");
    premier_->setText(QStringLiteral("1"));
    champs->addRow(QStringLiteral("Premier numéro :"), premier_);
    pas_ = cree<QLineEdit>(this, "T_Pas");
    pas_->setText(QStringLiteral("1"));
    champs->addRow(QStringLiteral("Pas de numérotation :"), pas_);
    prefixe_ = cree<QLineEdit>(this, "T_Prefixe");
    prefixe_->setPlaceholderText(QStringLiteral("par exemple « A- »"));
    champs->addRow(QStringLiteral("Préfixe :"), prefixe_);
    suffixe_ = cree<QLineEdit>(this, "T_Suffixe");
    suffixe_->setPlaceholderText(QStringLiteral("par exemple « bis »"));
    champs->addRow(QStringLiteral("Suffixe :"), suffixe_);

    auto* boutons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    boutons->button(QDialogButtonBox::Ok)->setText(QStringLiteral("Créer"));
    boutons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("Btn_Creer"));
    boutons->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("Annuler"));
    connect(boutons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(boutons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* tout = new QVBoxLayout(this);
    tout->addLayout(champs);
    tout->addWidget(boutons);
}

DemandeRangee Dialogue_Rangee::demande() const {
    DemandeRangee d;
    d.nombre = nombre_->value();
    d.ecart = nombreLu(ecart_->text());
    d.enTravers = sens_->currentIndex() == 1;
    d.premier = entier(premier_->text());
    d.pas = entier(pas_->text());
    d.prefixe = prefixe_->text();
    d.suffixe = suffixe_->text();
    return d;
}

} // namespace veldra
