#pragma once
// The pop-up menu the control's commands are chosen from: entries numbered from 1 in the
// order they are added, group headers included, each with a caption, a key, a tag and a
// parent (0 at the top; a header for the entries listed under it; any other entry for
// those of its sub-menu), enabled or not, ticked or not. Shown at a point, away from an
// optional rectangle; the result is the chosen entry's number, 0 for none, and its tag.

#include <QPoint>
#include <QRect>
#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QAction;
class QMenu;

namespace veldra {

class MenuSurgissant {
public:
    struct Entree {
        QString libelle;
        QString cle;
        QString etiquette;
        int parent = 0;
        bool entete = false;
        bool actif = true;
        bool coche = false;
    };
    // How a built menu is shown: QMenu::exec by default; tests and scripted sessions pick
    // an entry themselves. Returns the action chosen, nullptr for none.
    using Afficheur = std::function<QAction*(QMenu&, const QPoint&)>;

    MenuSurgissant();
    ~MenuSurgissant();
    MenuSurgissant(MenuSurgissant&&) noexcept;
    MenuSurgissant& operator=(MenuSurgissant&&) noexcept;

    // A header (a caption in capitals) whose entries follow it. Its number.
    int ajouteEntete(const QString& libelle);
    // An entry under `parent`. Its number.
    int ajoute(const QString& libelle, const QString& cle = {}, const QString& etiquette = {},
               int parent = 0, bool actif = true, bool coche = false);
    void setActif(int numero, bool actif);
    void setCoche(int numero, bool coche);
    void vide();

    int nombre() const { return int(entrees_.size()); }
    const Entree& entree(int numero) const; // 1-based; Erreur out of range
    // An entry the user can choose: enabled, not a header, in enabled groups.
    bool disponible(int numero) const;

    // Builds the menu and shows it at `ecran` (global coordinates), moved off `eviter` when
    // it would cover it. The number of the entry chosen, 0 when none.
    int montre(const QPoint& ecran, const std::optional<QRect>& eviter = std::nullopt,
               const Afficheur& afficheur = {});
    // The tag of the entry chosen by the last montre(), "" when none.
    const QString& etiquetteChoisie() const { return etiquetteChoisie_; }

    // The menu as it would be shown: one action per entry except headers' children placed
    // in their sub-menus; each action's data() is its entry's number. Owned by this.
    QMenu& construit();

private:
    std::vector<Entree> entrees_;
    std::unique_ptr<QMenu> menu_;
    QString etiquetteChoisie_;
};

} // namespace veldra
