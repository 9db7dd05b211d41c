#include "editing/menu_surgissant.h"

#include "base/erreur.h"

#include <QAction>
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>

namespace veldra {

MenuSurgissant::MenuSurgissant() = default;
MenuSurgissant::~MenuSurgissant() = default;
MenuSurgissant::MenuSurgissant(MenuSurgissant&&) noexcept = default;
MenuSurgissant& MenuSurgissant::operator=(MenuSurgissant&&) noexcept = default;

int MenuSurgissant::ajouteEntete(const QString& libelle) {
    entrees_.push_back({libelle, {}, {}, 0, true, true, false});
    return nombre();
}

int MenuSurgissant::ajoute(const QString& libelle, const QString& cle, const QString& etiquette,
                           int parent, bool actif, bool coche) {
    if (parent < 0 || parent > nombre())
        throw Erreur(err::AppelIncorrect,
                     QStringLiteral("Entrée parente %1 inconnue dans le menu.").arg(parent));
    entrees_.push_back({libelle, cle, etiquette, parent, false, actif, coche});
    return nombre();
}

const MenuSurgissant::Entree& MenuSurgissant::entree(int numero) const {
    if (numero < 1 || numero > nombre())
        throw Erreur(err::AppelIncorrect,
                     QStringLiteral("Entrée %1 inconnue dans le menu.").arg(numero));
    return entrees_[size_t(numero - 1)];
}

void MenuSurgissant::setActif(int numero, bool actif) {
    entree(numero);
    entrees_[size_t(numero - 1)].actif = actif;
}

void MenuSurgissant::setCoche(int numero, bool coche) {
    entree(numero);
    entrees_[size_t(numero - 1)].coche = coche;
}

void MenuSurgissant::vide() {
    entrees_.clear();
    menu_.reset();
    etiquetteChoisie_.clear();
}

bool MenuSurgissant::disponible(int numero) const {
    for (int n = numero; n > 0; n = entree(n).parent)
        if (!entree(n).actif || (n == numero && entree(n).entete))
            return false;
    return true;
}

QMenu& MenuSurgissant::construit() {
    menu_ = std::make_unique<QMenu>();
    menu_->setObjectName(QStringLiteral("MenuSurgissant"));
    // Where each entry's children go: the menu itself for headers and the top level, a
    // sub-menu for any other entry that has children.
    std::vector<QMenu*> contenant(entrees_.size() + 1, nullptr);
    contenant[0] = menu_.get();
    std::vector<bool> aDesEnfants(entrees_.size() + 1, false);
    for (const Entree& e : entrees_)
        aDesEnfants[size_t(e.parent)] = true;
    for (size_t i = 0; i < entrees_.size(); ++i) {
        const Entree& e = entrees_[i];
        const int numero = int(i) + 1;
        QMenu* ici = contenant[size_t(e.parent)] ? contenant[size_t(e.parent)] : menu_.get();
        QAction* a = nullptr;
        if (e.entete) {
            if (!ici->isEmpty())
                ici->addSeparator();
            a = ici->addAction(e.libelle);
            QFont gras = a->font();
            gras.setBold(true);
            a->setFont(gras);
            a->setEnabled(false);
            contenant[size_t(numero)] = ici;
        } else if (aDesEnfants[size_t(numero)]) {
            QMenu* sous = ici->addMenu(e.libelle);
            sous->setEnabled(e.actif);
            a = sous->menuAction();
            contenant[size_t(numero)] = sous;
        } else {
            a = ici->addAction(e.libelle);
            a->setEnabled(e.actif);
            a->setCheckable(e.coche);
            a->setChecked(e.coche);
        }
        a->setData(numero);
        a->setObjectName(e.cle);
    }
    return *menu_;
}

int MenuSurgissant::montre(const QPoint& ecran, const std::optional<QRect>& eviter,
                           const Afficheur& afficheur) {
    etiquetteChoisie_.clear();
    QMenu& m = construit();
    QPoint ou = ecran;
    if (eviter) {
        const QRect place(ou, m.sizeHint());
        if (place.intersects(*eviter))
            ou = {eviter->right() + 1, ou.y()};
    }
    QAction* choisie = afficheur ? afficheur(m, ou) : m.exec(ou);
    const int numero = choisie ? choisie->data().toInt() : 0;
    if (numero < 1 || numero > nombre() || !disponible(numero))
        return 0;
    etiquetteChoisie_ = entrees_[size_t(numero - 1)].etiquette;
    return numero;
}

} // namespace veldra
