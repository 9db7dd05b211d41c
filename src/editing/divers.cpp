#include "editing/divers.h"

#include "base/erreur.h"
#include "carto/model/layer.h"
#include "context/contexte.h"
#include "context/echantillon_couleur.h"
#include "context/filtre_numerique.h"
#include "context/garde.h"
#include "context/nombres.h"
#include "context/widget_nomme.h"
#include "editing/rotation.h"
#include "editing/texte_libre.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QFormLayout>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace veldra {

namespace {

QPushButton* bouton(QWidget* parent, const char* nom, const QString& texte) {
    auto* b = cree<QPushButton>(parent, nom);
    b->setText(texte);
    return b;
}

// A check box without its own text and the label that names it: a click on the label
// toggles the box.
QWidget* caseNommee(QWidget* parent, QCheckBox* box, QLabel* etiquette) {
    auto* w = new QWidget(parent);
    auto* l = new QHBoxLayout(w);
    l->setContentsMargins(0, 0, 0, 0);
    l->addWidget(box);
    l->addWidget(etiquette, 1);
    etiquette->setCursor(Qt::PointingHandCursor);
    return w;
}

QLabel* libelle(QWidget* parent, const char* nom, const QString& texte) {
    auto* l = cree<QLabel>(parent, nom);
    l->setText(texte);
    return l;
}

} // namespace

Divers::Divers(Contexte& ctx, QWidget* parent) : QDialog(parent), ctx_(ctx) {
    setObjectName(QStringLiteral("Divers"));
    setWindowTitle(QStringLiteral("Divers"));
    auto* tout = new QVBoxLayout(this);

    // ---- free text
    Panel_Texte = cree<QFrame>(this, "Panel_Texte");
    auto* ft = new QFormLayout(Panel_Texte);
    L_NomCalque = libelle(Panel_Texte, "L_NomCalque", QString());
    ft->addRow(L_NomCalque);
    Text = cree<QLineEdit>(Panel_Texte, "Text");
    Text->setMinimumWidth(260);
    ft->addRow(QStringLiteral("Texte :"), Text);
    Taille = cree<QLineEdit>(Panel_Texte, "Taille");
    FiltreClavierNumerique::installe(*Taille, true, false);
    ft->addRow(QStringLiteral("Taille :"), Taille);
    cb_Gras = cree<QCheckBox>(Panel_Texte, "cb_Gras");
    CB_Souligne = cree<QCheckBox>(Panel_Texte, "CB_Souligne");
    cb_Ombre = cree<QCheckBox>(Panel_Texte, "cb_Ombre");
    Cb_Sauvegarde = cree<QCheckBox>(Panel_Texte, "Cb_Sauvegarde");
    const std::pair<QCheckBox*, QLabel*> cases[] = {
        {cb_Gras, libelle(Panel_Texte, "L_Gras", QStringLiteral("Gras"))},
        {CB_Souligne, libelle(Panel_Texte, "L_Souligne", QStringLiteral("Souligné"))},
        {cb_Ombre, libelle(Panel_Texte, "L_Ombre", QStringLiteral("Ombré"))},
        {Cb_Sauvegarde, libelle(Panel_Texte, "L_Sauvegarder",
                                QStringLiteral("Garder ce style pour les textes suivants"))}};
    for (const auto& [box, etiquette] : cases) {
        ft->addRow(caseNommee(Panel_Texte, box, etiquette));
        etiquette->installEventFilter(this);
    }
    CB_Fond = cree<QComboBox>(Panel_Texte, "CB_Fond");
    CB_Fond->addItems({QStringLiteral("Sans fond"), QStringLiteral("Contour (halo)"),
                       QStringLiteral("Fond opaque")});
    ft->addRow(QStringLiteral("Fond :"), CB_Fond);
    PCouleur = new EchantillonCouleur(ctx, Panel_Texte, "PCouleur");
    PCouleurFond = new EchantillonCouleur(ctx, Panel_Texte, "PCouleurFond");
    ft->addRow(QStringLiteral("Couleur du texte :"), PCouleur);
    ft->addRow(QStringLiteral("Couleur du fond :"), PCouleurFond);
    Btn_Valider = bouton(Panel_Texte, "Btn_Valider", QStringLiteral("Valider"));
    Btn_Annuler = bouton(Panel_Texte, "Btn_Annuler", QStringLiteral("Annuler"));
    auto* bt = new QHBoxLayout;
    bt->addStretch();
    bt->addWidget(Btn_Annuler);
    bt->addWidget(Btn_Valider);
    ft->addRow(bt);
    tout->addWidget(Panel_Texte);

    // ---- turning
    Panel_Rotation = cree<QFrame>(this, "Panel_Rotation");
    auto* fr = new QFormLayout(Panel_Rotation);
    Angle = cree<QLineEdit>(Panel_Rotation, "Angle");
    Angle->setText(QStringLiteral("0"));
    FiltreClavierNumerique::installe(*Angle, true, true);
    fr->addRow(QStringLiteral("Angle (degrés) :"), Angle);
    Btn_ValiderRotation = bouton(Panel_Rotation, "Btn_ValiderRotation", QStringLiteral("Tourner"));
    Btn_Horizontal = bouton(Panel_Rotation, "Btn_Horizontal", QStringLiteral("Horizontal"));
    Btn_AnnulerRot = bouton(Panel_Rotation, "Btn_AnnulerRot", QStringLiteral("Fermer"));
    auto* br = new QHBoxLayout;
    br->addWidget(Btn_ValiderRotation);
    br->addWidget(Btn_Horizontal);
    br->addWidget(Btn_AnnulerRot);
    fr->addRow(br);
    tout->addWidget(Panel_Rotation);

    // ---- plot numbers
    Panel_TailleNumeroTerrain = cree<QFrame>(this, "Panel_TailleNumeroTerrain");
    auto* fn = new QFormLayout(Panel_TailleNumeroTerrain);
    T_Taille = cree<QLineEdit>(Panel_TailleNumeroTerrain, "T_Taille");
    FiltreClavierNumerique::installe(*T_Taille, true, false);
    fn->addRow(QStringLiteral("Taille des numéros :"), T_Taille);
    CB_NumeroGras = cree<QCheckBox>(Panel_TailleNumeroTerrain, "CB_NumeroGras");
    auto* label8 = libelle(Panel_TailleNumeroTerrain, "Label8", QStringLiteral("Gras"));
    label8->installEventFilter(this);
    fn->addRow(caseNommee(Panel_TailleNumeroTerrain, CB_NumeroGras, label8));
    P_CouleurNumero = new EchantillonCouleur(ctx, Panel_TailleNumeroTerrain, "P_CouleurNumero");
    fn->addRow(QStringLiteral("Couleur :"), P_CouleurNumero);
    Btn_ValiderTailleNumero = bouton(Panel_TailleNumeroTerrain, "Btn_ValiderTailleNumero",
                                     QStringLiteral("Appliquer à tous les numéros"));
    fn->addRow(Btn_ValiderTailleNumero);
    tout->addWidget(Panel_TailleNumeroTerrain);

    PCouleur->setCouleur(0);
    PCouleurFond->setCouleur(0xFFFFFF);
    P_CouleurNumero->setCouleur(0);
    montrePanneau(nullptr);

    // Closing the dialog in any way leaves the plan as the buttons left it.
    connect(Btn_Annuler, &QPushButton::clicked, this, &QDialog::reject);
    connect(Btn_AnnulerRot, &QPushButton::clicked, this, &QDialog::reject);
    connect(Btn_Valider, &QPushButton::clicked, this, garde(ctx, [this] { valideTexte(); }));
    connect(Btn_ValiderRotation, &QPushButton::clicked, this,
            garde(ctx, [this] { Rotation(Angle->text()); }));
    connect(Btn_Horizontal, &QPushButton::clicked, this, garde(ctx, [this] {
                Rotation(QStringLiteral("H"));
                accept();
            }));
    connect(Btn_ValiderTailleNumero, &QPushButton::clicked, this,
            garde(ctx, [this] { valideTailleNumero(); }));
}

void Divers::montrePanneau(QFrame* panneau) {
    for (QFrame* p : {Panel_Texte, Panel_Rotation, Panel_TailleNumeroTerrain})
        p->setVisible(p == panneau);
    adjustSize();
}

void Divers::Coordonnees(double X1, double Y1, double, double) {
    point_ = {X1, Y1};
    texte_.reset();
    mode_ = QStringLiteral("Texte");
    // The lettering kept from the last text, else the plan's first text's, else 1 m high.
    carto::Style s = ctx_.carte().defaultStyle;
    s.textSize = 100;
    if (ctx_.etat.styleTexte)
        s = *ctx_.etat.styleTexte;
    else if (ctx_.v.Calque_Texte && ctx_.v.Calque_Texte->featureCount() > 0)
        s = ctx_.v.Calque_Texte->firstFeature().style();
    const SaisieTexte e = saisieDe(carto::Feature::textAt(point_, QString(), s));
    Text->clear();
    Taille->setText(nombreSimple(e.taille));
    cb_Gras->setChecked(e.gras);
    CB_Souligne->setChecked(e.souligne);
    cb_Ombre->setChecked(e.ombre);
    CB_Fond->setCurrentIndex(int(e.fond));
    PCouleur->setCouleur(e.couleur);
    PCouleurFond->setCouleur(e.couleurFond);
    Cb_Sauvegarde->setChecked(ctx_.etat.styleTexte.has_value());
    montrePanneau(Panel_Texte);
    Panel_Texte->move(15, 15);
    L_NomCalque->hide();
}

void Divers::Texte(const carto::Feature& texte) {
    texte_ = texte;
    mode_ = QStringLiteral("Texte");
    const SaisieTexte e = saisieDe(texte);
    Text->setText(e.texte);
    Taille->setText(nombreSimple(e.taille));
    cb_Gras->setChecked(e.gras);
    CB_Souligne->setChecked(e.souligne);
    cb_Ombre->setChecked(e.ombre);
    CB_Fond->setCurrentIndex(int(e.fond));
    PCouleur->setCouleur(e.couleur);
    PCouleurFond->setCouleur(e.couleurFond);
    L_NomCalque->setText(QStringLiteral("Calque : ") +
                         (texte.layer() ? texte.layer()->name() : QString()));
    montrePanneau(Panel_Texte);
    L_NomCalque->show();
}

void Divers::Etiquette() {
    mode_ = QStringLiteral("Etiquette");
    setWindowTitle(QStringLiteral("Propriétés des étiquettes"));
    // The lettering of the plots' labels; their texts come from the host.
    const carto::Style s =
        ctx_.v.Calque_Tombe ? ctx_.v.Calque_Tombe->labels().style : carto::defaultLabelStyle();
    const SaisieTexte e = saisieDe(carto::Feature::textAt({}, QString(), s));
    Taille->setText(nombreSimple(e.taille));
    cb_Gras->setChecked(e.gras);
    CB_Souligne->setChecked(e.souligne);
    cb_Ombre->setChecked(e.ombre);
    CB_Fond->setCurrentIndex(int(e.fond));
    PCouleur->setCouleur(e.couleur);
    PCouleurFond->setCouleur(e.couleurFond);
    auto* champs = static_cast<QFormLayout*>(Panel_Texte->layout());
    champs->setRowVisible(Text, false);
    champs->setRowVisible(Cb_Sauvegarde->parentWidget(), false);
    L_NomCalque->setText(QStringLiteral("Étiquettes des emplacements (taille en points)"));
    L_NomCalque->show();
    montrePanneau(Panel_Texte);
}

void Divers::PRotation() {
    mode_ = QStringLiteral("Rotation");
    setWindowTitle(QStringLiteral("Rotation"));
    montrePanneau(Panel_Rotation);
}

void Divers::PRotationNumero() {
    mode_ = QStringLiteral("RotationNumero");
    setWindowTitle(QStringLiteral("Rotation des numéros"));
    montrePanneau(Panel_Rotation);
}

void Divers::PTailleNumeroTerrain() {
    setWindowTitle(QStringLiteral("Numéros des emplacements"));
    // The lettering of the plan's first number, to start from.
    if (ctx_.v.Calque_Numero && ctx_.v.Calque_Numero->featureCount() > 0) {
        const carto::Style s = ctx_.v.Calque_Numero->firstFeature().style();
        T_Taille->setText(nombreSimple(s.textSize));
        CB_NumeroGras->setChecked(s.textBold);
        P_CouleurNumero->setCouleur(s.textColor);
    }
    montrePanneau(Panel_TailleNumeroTerrain);
}

void Divers::Rotation(const QString& angle) {
    if (mode_ == QLatin1String("Rotation")) {
        if (angle != QLatin1String("H"))
            tourneSelection(ctx_, nombreLu(VirguleP(angle)));
    } else if (mode_ == QLatin1String("RotationNumero")) {
        tourneNumeros(ctx_, angle);
    }
}

void Divers::valideTexte() {
    if (mode_ == QLatin1String("Texte")) {
        SaisieTexte e;
        e.texte = Text->text();
        e.taille = nombreLu(Taille->text());
        e.gras = cb_Gras->isChecked();
        e.souligne = CB_Souligne->isChecked();
        e.ombre = cb_Ombre->isChecked();
        e.fond = FondTexte(CB_Fond->currentIndex());
        e.couleur = PCouleur->couleur();
        e.couleurFond = PCouleurFond->couleur();
        enregistreTexte(ctx_, texte_, point_, e);
        if (Cb_Sauvegarde->isChecked()) {
            carto::Style s = ctx_.carte().defaultStyle;
            s.textSize = e.taille;
            s.textBold = e.gras;
            s.textUnderline = e.souligne;
            s.textShadow = e.ombre;
            s.textHalo = e.fond == FondTexte::Halo;
            s.textBox = e.fond == FondTexte::Cadre;
            s.textColor = e.couleur;
            s.textBackColor = e.couleurFond;
            ctx_.etat.styleTexte = s;
        } else {
            ctx_.etat.styleTexte.reset();
        }
    } else if (mode_ == QLatin1String("Etiquette")) {
        carto::Style s =
            ctx_.v.Calque_Tombe ? ctx_.v.Calque_Tombe->labels().style : carto::defaultLabelStyle();
        s.textSize = nombreLu(Taille->text());
        s.textBold = cb_Gras->isChecked();
        s.textUnderline = CB_Souligne->isChecked();
        s.textShadow = cb_Ombre->isChecked();
        s.textHalo = FondTexte(CB_Fond->currentIndex()) == FondTexte::Halo;
        s.textBox = FondTexte(CB_Fond->currentIndex()) == FondTexte::Cadre;
        s.textColor = PCouleur->couleur();
        s.textBackColor = PCouleurFond->couleur();
        if (ctx_.crochets.styleEtiquettes)
            ctx_.crochets.styleEtiquettes(s);
    }
    accept();
}

void Divers::valideTailleNumero() {
    const double taille = nombreLu(T_Taille->text());
    if (!(taille > 0))
        throw Erreur(err::ArgumentsIncorrects,
                     QStringLiteral("La taille des numéros doit être un nombre positif."));
    styleNumeros(ctx_, taille, CB_NumeroGras->isChecked(), P_CouleurNumero->couleur());
    accept();
}

bool Divers::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonRelease) {
        // A label toggles the box beside it.
        if (auto* l = qobject_cast<QLabel*>(watched)) {
            const QString nom = l->objectName();
            QCheckBox* box = nom == QLatin1String("L_Gras")          ? cb_Gras
                             : nom == QLatin1String("L_Souligne")    ? CB_Souligne
                             : nom == QLatin1String("L_Ombre")       ? cb_Ombre
                             : nom == QLatin1String("L_Sauvegarder") ? Cb_Sauvegarde
                             : nom == QLatin1String("Label8")        ? CB_NumeroGras
                                                                     : nullptr;
            if (box) {
                box->toggle();
                return true;
            }
        }
    }
    return QDialog::eventFilter(watched, event);
}

void ouvreDivers(Contexte& ctx, const std::function<void(Divers&)>& prepare) {
    Divers d(ctx, &ctx.controle);
    prepare(d);
    ctx.montreModal(d);
}

} // namespace veldra
