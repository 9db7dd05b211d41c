#pragma once
// The surface's own behaviour: the display check boxes, the information panel's arrow,
// the tab strip, the preferences and processing panels, the close buttons and the
// floating panels the user drags by their titles.

#include <QHash>
#include <QObject>
#include <QPoint>

namespace veldra {

class Contexte;

// Connects the widgets' signals to their behaviour.
void connecteAffichage(Contexte& ctx);

// Folds the information panel when it is shown, unfolds it otherwise.
void basculePanelInfos(Contexte& ctx);

// Moves floating panels with the mouse when they, or their title, are dragged.
class DeplaceurDePanneaux : public QObject {
public:
    explicit DeplaceurDePanneaux(QObject* parent) : QObject(parent) {}
    // `prise` is the panel itself or its title label.
    void ajoute(QWidget* panneau, QWidget* prise);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* panneauDe(QObject* prise) const;
    QHash<QObject*, QWidget*> prises_;
    QPoint ecart_;
};

} // namespace veldra
