#include "context/surface.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QSpinBox>
#include <QVBoxLayout>

namespace veldra {

namespace {

template <typename W, typename... Args> W* cree(QWidget* parent, const char* nom, Args&&... args) {
    auto* w = new W(std::forward<Args>(args)..., parent);
    w->setObjectName(QString::fromUtf8(nom));
    return w;
}

QFrame* panneau(QWidget* parent, const char* nom, QFrame::Shape forme = QFrame::StyledPanel) {
    auto* f = cree<QFrame>(parent, nom);
    f->setFrameShape(forme);
    f->setAutoFillBackground(true);
    return f;
}

QToolButton* bouton(QWidget* parent, const QString& nom, const QString& texte,
                    const QString& bulle) {
    auto* b = new QToolButton(parent);
    b->setObjectName(nom);
    b->setText(texte);
    b->setToolTip(bulle);
    b->setAutoRaise(true);
    b->setMinimumSize(26, 26);
    return b;
}

QCheckBox* caseACocher(QWidget* parent, const char* nom, const QString& libelle) {
    auto* c = cree<QCheckBox>(parent, nom, libelle);
    return c;
}

// A floating panel: a title bar label the user drags it by, and a body.
QFrame* flottant(QWidget* parent, const char* nom, QLabel*& titre, const char* nomTitre,
                 const QString& texteTitre) {
    QFrame* f = panneau(parent, nom, QFrame::Box);
    auto* l = new QVBoxLayout(f);
    l->setContentsMargins(2, 2, 2, 2);
    l->setSpacing(2);
    titre = cree<QLabel>(f, nomTitre, texteTitre);
    titre->setAutoFillBackground(true);
    titre->setStyleSheet(QStringLiteral("background:#34506b;color:white;padding:2px;"));
    titre->setCursor(Qt::SizeAllCursor);
    l->addWidget(titre);
    f->hide();
    return f;
}

void bandeHaut(Surface& s, QWidget& c) {
    s.Panel_Haut = panneau(&c, "Panel_Haut", QFrame::NoFrame);
    s.B_Outils = cree<QFrame>(s.Panel_Haut, "B_Outils");
    auto* outils = new QHBoxLayout(s.B_Outils);
    outils->setContentsMargins(0, 0, 0, 0);
    outils->setSpacing(1);
    const QString glyphes[9] = {QStringLiteral("⊕"), QStringLiteral("⊖"), QStringLiteral("✥"),
                                QStringLiteral("➚"), QStringLiteral("▭"), QStringLiteral("⬠"),
                                QStringLiteral("◯"), QStringLiteral("⟷"), QStringLiteral("▣")};
    const QString bulles[9] = {QStringLiteral("Zoom +"),
                               QStringLiteral("Zoom -"),
                               QStringLiteral("Déplacer"),
                               QStringLiteral("Sélection simple"),
                               QStringLiteral("Sélection rectangle"),
                               QStringLiteral("Sélection polygone"),
                               QStringLiteral("Sélection cercle"),
                               QStringLiteral("Mesurer une distance"),
                               QStringLiteral("Voir tout le plan")};
    for (int i = 0; i < 9; ++i) {
        s.B_Outils_[size_t(i)] =
            bouton(s.B_Outils, QStringLiteral("B_Outils_%1").arg(i), glyphes[i], bulles[i]);
        s.B_Outils_[size_t(i)]->setCheckable(i < 8);
        s.B_Outils_[size_t(i)]->setAutoExclusive(i < 8);
        outils->addWidget(s.B_Outils_[size_t(i)]);
    }
    s.B_OutilsInfo = bouton(s.B_Outils, QStringLiteral("B_OutilsInfo"), QStringLiteral("ℹ"),
                            QStringLiteral("Informations sur l'emplacement sélectionné"));
    outils->addWidget(s.B_OutilsInfo);
    s.B_Outils->adjustSize();
    s.L_NomCimetiere = cree<QLabel>(s.Panel_Haut, "L_NomCimetiere");
    s.L_NomCimetiere->setAlignment(Qt::AlignCenter);
    QFont grand = s.L_NomCimetiere->font();
    grand.setBold(true);
    grand.setPointSizeF(grand.pointSizeF() * 1.25);
    s.L_NomCimetiere->setFont(grand);
    s.Echelle = bouton(s.Panel_Haut, QStringLiteral("Echelle"), QStringLiteral("Échelle 1 / ▾"),
                       QStringLiteral("Échelles prédéfinies"));
    s.Echelle->setToolButtonStyle(Qt::ToolButtonTextOnly);
    s.MenuEchelle = new QMenu(s.Echelle);
    s.MenuEchelle->setObjectName(QStringLiteral("MenuEchelle"));
    s.MenuEchelle->addAction(QStringLiteral("Échelles prédéfinies"))->setEnabled(false);
    for (const int n : {50, 100, 200, 500, 1000})
        s.MenuEchelle->addAction(QStringLiteral("1/%1").arg(n))->setCheckable(true);
    s.L_echelle = cree<QLineEdit>(s.Panel_Haut, "L_echelle");
    s.L_echelle->setToolTip(QStringLiteral("Échelle de la carte (1/N) : tapez N puis Entrée"));
    s.b_rafraichir = bouton(s.Panel_Haut, QStringLiteral("b_rafraichir"), QStringLiteral("↻"),
                            QStringLiteral("Appliquer l'échelle saisie"));
    s.L_echelle2 = cree<QLabel>(s.Panel_Haut, "L_echelle2");
    s.Btn_Pref = bouton(s.Panel_Haut, QStringLiteral("Btn_Pref"), QStringLiteral("⚙"),
                        QStringLiteral("Préférences"));
}

void panneauInfos(Surface& s, QWidget* parent) {
    s.Panel_Infos = panneau(parent, "Panel_Infos");
    auto* l = new QVBoxLayout(s.Panel_Infos);
    l->setContentsMargins(6, 6, 6, 6);
    auto* entete = new QHBoxLayout;
    s.Btn_Fleche = bouton(s.Panel_Infos, QStringLiteral("Btn_Fleche"), QStringLiteral("◀"),
                          QStringLiteral("Masquer les informations"));
    entete->addWidget(s.Btn_Fleche);
    s.Num_Selec = cree<QLabel>(s.Panel_Infos, "Num_Selec");
    entete->addWidget(s.Num_Selec, 1);
    s.b_selec = cree<QFrame>(s.Panel_Infos, "b_selec");
    auto* parcours = new QHBoxLayout(s.b_selec);
    parcours->setContentsMargins(0, 0, 0, 0);
    parcours->setSpacing(0);
    const QString fleches[4] = {QStringLiteral("«"), QStringLiteral("‹"), QStringLiteral("›"),
                                QStringLiteral("»")};
    const QString sens[4] = {QStringLiteral("Premier élément sélectionné"),
                             QStringLiteral("Élément précédent"), QStringLiteral("Élément suivant"),
                             QStringLiteral("Dernier élément sélectionné")};
    for (int i = 0; i < 4; ++i) {
        s.b_selec_[size_t(i)] =
            bouton(s.b_selec, QStringLiteral("b_selec_%1").arg(i), fleches[i], sens[i]);
        s.b_selec_[size_t(i)]->setMinimumSize(22, 22);
        parcours->addWidget(s.b_selec_[size_t(i)]);
    }
    entete->addWidget(s.b_selec);
    l->addLayout(entete);
    s.corpsInfos = new QWidget(s.Panel_Infos);
    l->addWidget(s.corpsInfos, 1);
    l = new QVBoxLayout(s.corpsInfos);
    l->setContentsMargins(0, 0, 0, 0);

    s.Frame_Numero = panneau(s.corpsInfos, "Frame_Numero", QFrame::NoFrame);
    auto* num = new QHBoxLayout(s.Frame_Numero);
    num->setContentsMargins(0, 0, 0, 0);
    num->addWidget(new QLabel(QStringLiteral("Numéro :"), s.Frame_Numero));
    s.SaisieNum = cree<QLineEdit>(s.Frame_Numero, "SaisieNum");
    s.SaisieNum->setEnabled(false);
    num->addWidget(s.SaisieNum, 1);
    s.Btn_RotationNumero = bouton(s.Frame_Numero, QStringLiteral("Btn_RotationNumero"),
                                  QStringLiteral("↻"), QStringLiteral("Rotation du numéro"));
    s.Btn_RotationNumero->hide();
    num->addWidget(s.Btn_RotationNumero);
    s.Btn_ModifierTailleNumero =
        bouton(s.Frame_Numero, QStringLiteral("Btn_ModifierTailleNumero"), QStringLiteral("A±"),
               QStringLiteral("Taille et couleur des numéros"));
    s.Btn_ModifierTailleNumero->hide();
    num->addWidget(s.Btn_ModifierTailleNumero);
    l->addWidget(s.Frame_Numero);

    s.Frame_Nom = panneau(s.corpsInfos, "Frame_Nom", QFrame::NoFrame);
    auto* nom = new QHBoxLayout(s.Frame_Nom);
    nom->setContentsMargins(0, 0, 0, 0);
    nom->addWidget(new QLabel(QStringLiteral("Nom :"), s.Frame_Nom));
    s.Label_Nom = cree<QLineEdit>(s.Frame_Nom, "Label_Nom");
    s.Label_Nom->setReadOnly(true);
    nom->addWidget(s.Label_Nom, 1);
    s.Frame_Nom->hide();
    l->addWidget(s.Frame_Nom);

    auto* actions = new QGridLayout;
    s.Btn_Sauver = cree<QPushButton>(s.corpsInfos, "Btn_Sauver", QStringLiteral("Enregistrer"));
    s.Btn_Sauver->setEnabled(false);
    s.Btn_Visu = cree<QPushButton>(s.corpsInfos, "Btn_Visu", QStringLiteral("Voir"));
    s.Btn_Visu->hide();
    s.Btn_ModifStyle = cree<QPushButton>(s.corpsInfos, "Btn_ModifStyle", QStringLiteral("Style…"));
    s.Btn_ModifStyle->hide();
    s.Btn_DeplaceEtiquette =
        cree<QPushButton>(s.corpsInfos, "Btn_DeplaceEtiquette", QStringLiteral("Étiquette"));
    s.Btn_DeplaceEtiquette->hide();
    s.HLBBttn2 = cree<QPushButton>(s.corpsInfos, "HLBBttn2", QStringLiteral("Fiche"));
    s.HLBBttn2->setToolTip(QStringLiteral("Fiche des concessions sélectionnées"));
    actions->addWidget(s.HLBBttn2, 2, 0);
    s.Btn_InfosRapides =
        cree<QPushButton>(s.corpsInfos, "Btn_InfosRapides", QStringLiteral("Infos rapides"));
    s.Btn_InfosRapides->setToolTip(
        QStringLiteral("Qui est concerné par l'emplacement sélectionné"));
    actions->addWidget(s.Btn_InfosRapides, 2, 1);
    actions->addWidget(s.Btn_Sauver, 0, 0);
    actions->addWidget(s.Btn_Visu, 0, 1);
    actions->addWidget(s.Btn_ModifStyle, 1, 0);
    actions->addWidget(s.Btn_DeplaceEtiquette, 1, 1);
    l->addLayout(actions);
    l->addStretch(1);
}

void bandeDroite(Surface& s, QWidget& c) {
    s.Panel_Droite = panneau(&c, "Panel_Droite", QFrame::NoFrame);
    auto* l = new QVBoxLayout(s.Panel_Droite);
    l->setContentsMargins(4, 0, 4, 4);
    l->setSpacing(4);
    s.TabStrip1 = cree<QTabBar>(s.Panel_Droite, "TabStrip1");
    s.TabStrip1->addTab(QStringLiteral("Plan"));
    s.TabStrip1->addTab(QStringLiteral("Affichage"));
    s.TabStrip1->setExpanding(true);
    l->addWidget(s.TabStrip1);

    // Page 1: the current layer, edit mode, the link with the host, the selected feature.
    QFrame* p1 = panneau(s.Panel_Droite, "Frame_Onglet1", QFrame::NoFrame);
    auto* l1 = new QVBoxLayout(p1);
    l1->setContentsMargins(0, 0, 0, 0);
    l1->addWidget(new QLabel(QStringLiteral("Calque courant :"), p1));
    s.Combo_Calque = cree<QComboBox>(p1, "Combo_Calque");
    for (const char* nom : {"Enceinte", "Décor", "Sections", "Allées", "Tombes", "Texte"})
        s.Combo_Calque->addItem(QString::fromUtf8(nom));
    l1->addWidget(s.Combo_Calque);
    s.CB_ModeEdition = caseACocher(p1, "CB_ModeEdition", QStringLiteral("Mode Edition"));
    l1->addWidget(s.CB_ModeEdition);
    s.Btn_Synchro = cree<QPushButton>(p1, "Btn_Synchro", QStringLiteral("Synchroniser"));
    l1->addWidget(s.Btn_Synchro);
    panneauInfos(s, p1);
    l1->addWidget(s.Panel_Infos, 1);

    // Page 2: what is shown.
    QFrame* p2 = panneau(s.Panel_Droite, "Frame_Onglet2", QFrame::NoFrame);
    auto* l2 = new QVBoxLayout(p2);
    l2->setContentsMargins(0, 4, 0, 0);
    s.C_AffSections = caseACocher(p2, "C_AffSections", QStringLiteral("Afficher les Sections"));
    s.C_AffAllees = caseACocher(p2, "C_AffAllees", QStringLiteral("Afficher les Allées"));
    s.CB_PlanNumerise =
        caseACocher(p2, "CB_PlanNumerise", QStringLiteral("Afficher le plan Numérisé"));
    s.CB_QUE_PlanNumerise =
        caseACocher(p2, "CB_QUE_PlanNumerise", QStringLiteral("N'afficher que le plan Numérisé"));
    s.CB_PlanSitue =
        caseACocher(p2, "CB_PlanSitue", QStringLiteral("Afficher le Plan de Situation"));
    s.CB_Bibliotheque =
        caseACocher(p2, "CB_Bibliotheque", QStringLiteral("Afficher la Bibliothèque"));
    s.Check1 = caseACocher(p2, "Check1", QStringLiteral("Afficher les Repères"));
    s.Check2 = caseACocher(p2, "Check2", QStringLiteral("Afficher les nom"));
    for (QCheckBox* b : {s.C_AffSections, s.C_AffAllees, s.CB_PlanNumerise, s.CB_QUE_PlanNumerise,
                         s.CB_PlanSitue, s.CB_Bibliotheque, s.Check1, s.Check2})
        l2->addWidget(b);
    // Drawing aids beyond the original, off until the clerk ticks them.
    auto* aides = new QLabel(QStringLiteral("Aides au dessin"), p2);
    aides->setObjectName(QStringLiteral("L_AidesDessin"));
    l2->addSpacing(8);
    l2->addWidget(aides);
    s.CB_Accrochage = caseACocher(p2, "CB_Accrochage", QStringLiteral("Accrochage"));
    s.CB_Accrochage->setToolTip(
        QStringLiteral("Le pointeur s'accroche aux sommets et aux bords voisins (Maj : libre)"));
    s.SB_ToleranceAccrochage = cree<QSpinBox>(p2, "SB_ToleranceAccrochage");
    s.SB_ToleranceAccrochage->setRange(1, 50);
    s.SB_ToleranceAccrochage->setValue(8);
    s.SB_ToleranceAccrochage->setSuffix(QStringLiteral(" pixels"));
    s.SB_ToleranceAccrochage->setToolTip(QStringLiteral("Distance d'accrochage"));
    auto* accroche = new QHBoxLayout;
    accroche->addWidget(s.CB_Accrochage);
    accroche->addWidget(s.SB_ToleranceAccrochage);
    l2->addLayout(accroche);
    s.CB_EviterChevauchements =
        caseACocher(p2, "CB_EviterChevauchements", QStringLiteral("Éviter les chevauchements"));
    s.CB_Rangees = caseACocher(p2, "CB_Rangees", QStringLiteral("Rangées d'emplacements"));
    l2->addWidget(s.CB_EviterChevauchements);
    l2->addWidget(s.CB_Rangees);
    l2->addStretch(1);
    s.CB_PlanNumerise->hide();
    s.CB_QUE_PlanNumerise->hide();
    s.CB_Bibliotheque->hide();
    p2->hide();
    s.pages = {p1, p2};
    l->addWidget(p1, 1);
    l->addWidget(p2, 1);

    s.L_NB_Tombes = cree<QLabel>(s.Panel_Droite, "L_NB_Tombes");
    s.L_NB_Tombes->setWordWrap(true);
    l->addWidget(s.L_NB_Tombes);
    s.Btn_Traitements =
        cree<QPushButton>(s.Panel_Droite, "Btn_Traitements", QStringLiteral("Traitements"));
    l->addWidget(s.Btn_Traitements);
}

void bandeBas(Surface& s, QWidget& c) {
    s.Panel_Bas = panneau(&c, "Panel_Bas", QFrame::NoFrame);
    s.Panel_Bas->setFixedHeight(34);
    s.LrechercheSection =
        cree<QLabel>(s.Panel_Bas, "LrechercheSection", QStringLiteral("Section :"));
    s.Combo_section = cree<QComboBox>(s.Panel_Bas, "Combo_section");
    s.Combo_section->setMinimumWidth(110);
    s.Combo_section->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    s.L_RechEmp = cree<QLabel>(s.Panel_Bas, "L_RechEmp", QStringLiteral("Emplacement :"));
    s.TB_SaisieEmplacement = cree<QLineEdit>(s.Panel_Bas, "TB_SaisieEmplacement");
    s.TB_SaisieEmplacement->setFixedWidth(90);
    s.Btn_Rechercher =
        cree<QPushButton>(s.Panel_Bas, "Btn_Rechercher", QStringLiteral("Rechercher"));
    for (QWidget* w :
         std::initializer_list<QWidget*>{s.LrechercheSection, s.Combo_section, s.L_RechEmp,
                                         s.TB_SaisieEmplacement, s.Btn_Rechercher})
        w->adjustSize();
}

void panneauxFlottants(Surface& s, QWidget& c) {
    // Gauge
    s.Panel_Jauge = panneau(&c, "Panel_Jauge", QFrame::Box);
    s.Panel_Jauge->resize(320, 96);
    auto* j = new QVBoxLayout(s.Panel_Jauge);
    s.Titre_Jauge = cree<QLabel>(s.Panel_Jauge, "Titre_Jauge");
    QFont gras = s.Titre_Jauge->font();
    gras.setBold(true);
    s.Titre_Jauge->setFont(gras);
    s.L_Message = cree<QLabel>(s.Panel_Jauge, "L_Message");
    s.ProgressBar1 = cree<QProgressBar>(s.Panel_Jauge, "ProgressBar1");
    j->addWidget(s.Titre_Jauge);
    j->addWidget(s.L_Message);
    j->addWidget(s.ProgressBar1);
    s.Panel_Jauge->hide();

    // Distance
    s.Panel_Dist = flottant(&c, "Panel_Dist", s.Label9, "Label9", QStringLiteral("Distance"));
    s.Btn_FemerPanelDist = bouton(s.Panel_Dist, QStringLiteral("Btn_FemerPanelDist"),
                                  QStringLiteral("✕"), QStringLiteral("Fermer"));
    auto* d = new QGridLayout;
    d->addWidget(new QLabel(QStringLiteral("Segment :"), s.Panel_Dist), 0, 0);
    s.L_Distance = cree<QLabel>(s.Panel_Dist, "L_Distance");
    d->addWidget(s.L_Distance, 0, 1);
    d->addWidget(new QLabel(QStringLiteral("Total :"), s.Panel_Dist), 1, 0);
    s.L_DistTotale = cree<QLabel>(s.Panel_Dist, "L_DistTotale");
    d->addWidget(s.L_DistTotale, 1, 1);
    d->addWidget(s.Btn_FemerPanelDist, 0, 2);
    static_cast<QVBoxLayout*>(s.Panel_Dist->layout())->addLayout(d);
    s.Panel_Dist->resize(180, 70);

    // Drawing tools
    s.Panel_Outils = flottant(&c, "Panel_Outils", s.Label7, "Label7", QStringLiteral("Dessin"));
    s.Btn_OutilsDessin = cree<QFrame>(s.Panel_Outils, "Btn_OutilsDessin");
    auto* g = new QGridLayout(s.Btn_OutilsDessin);
    g->setContentsMargins(0, 0, 0, 0);
    g->setSpacing(1);
    const QString glyphes[8] = {QStringLiteral("↻"), QStringLiteral("◇"), QStringLiteral("⤡"),
                                QStringLiteral("⬠"), QStringLiteral("▭"), QStringLiteral("◯"),
                                QStringLiteral("✚"), QStringLiteral("╱")};
    const QString bulles[8] = {
        QStringLiteral("Appliquer un angle de Rotation à un objet sélectionné"),
        QStringLiteral("Modifier les Noeuds"),
        QStringLiteral("Déplacer, modifier la taille"),
        QStringLiteral("Dessiner un Polygone"),
        QStringLiteral("Dessiner un Rectangle"),
        QStringLiteral("Dessiner un Cercle"),
        QStringLiteral("Ajouter un Noeud"),
        QStringLiteral("Dessiner une Ligne")};
    for (int i = 0; i < 8; ++i) {
        s.Btn_OutilsDessin_[size_t(i)] =
            bouton(s.Btn_OutilsDessin, QStringLiteral("Btn_OutilsDessin_%1").arg(i), glyphes[i],
                   bulles[i]);
        g->addWidget(s.Btn_OutilsDessin_[size_t(i)], i / 2, i % 2);
    }
    s.Btn_Texte = bouton(s.Btn_OutilsDessin, QStringLiteral("Btn_Texte"), QStringLiteral("T"),
                         QStringLiteral("Insérer un Texte sur la carte"));
    g->addWidget(s.Btn_Texte, 4, 0);
    s.Btn_AnnulerEdition = bouton(s.Btn_OutilsDessin, QStringLiteral("Btn_AnnulerEdition"),
                                  QStringLiteral("↶"), QStringLiteral("Annuler"));
    s.Btn_RetablirEdition = bouton(s.Btn_OutilsDessin, QStringLiteral("Btn_RetablirEdition"),
                                   QStringLiteral("↷"), QStringLiteral("Rétablir"));
    s.Btn_Rangee = bouton(s.Btn_OutilsDessin, QStringLiteral("Btn_Rangee"), QStringLiteral("⋯"),
                          QStringLiteral("Créer une rangée d'emplacements…"));
    s.Btn_Rangee->hide();
    g->addWidget(s.Btn_Rangee, 4, 1);
    g->addWidget(s.Btn_AnnulerEdition, 5, 0);
    g->addWidget(s.Btn_RetablirEdition, 5, 1);
    s.Btn_AnnulerEdition->hide();
    s.Btn_RetablirEdition->hide();
    s.Panel_Outils->layout()->addWidget(s.Btn_OutilsDessin);
    s.Panel_Outils->adjustSize();

    // Overview map
    s.Panel_Localisation =
        flottant(&c, "Panel_Localisation", s.Label8, "Label8", QStringLiteral("Plan de situation"));
    s.HLBBttn1 =
        bouton(s.Label8, QStringLiteral("HLBBttn1"), QStringLiteral("✕"), QStringLiteral("Fermer"));
    auto* titreSituation = new QHBoxLayout(s.Label8);
    titreSituation->setContentsMargins(0, 0, 0, 0);
    titreSituation->addStretch(1);
    titreSituation->addWidget(s.HLBBttn1);
    s.HLBBttn1->setStyleSheet(QStringLiteral("color:white;"));
    s.HLBBttn1->setMinimumSize(18, 18);
    s.MapLocalisation = cree<carto::MapView>(s.Panel_Localisation, "MapLocalisation");
    static_cast<QVBoxLayout*>(s.Panel_Localisation->layout())->addWidget(s.MapLocalisation, 1);
    s.Panel_Localisation->resize(260, 200);

    // Symbol library: the categories, the element on show, browsing and inserting it
    s.Panel_Bibli = flottant(&c, "Panel_Bibli", s.Label1, "Label1", QStringLiteral("Bibliothèque"));
    s.Btn_FermerBibli = bouton(s.Label1, QStringLiteral("Btn_FermerBibli"), QStringLiteral("✕"),
                               QStringLiteral("Fermer la bibliothèque"));
    auto* titreBibli = new QHBoxLayout(s.Label1);
    titreBibli->setContentsMargins(0, 0, 0, 0);
    titreBibli->addStretch(1);
    titreBibli->addWidget(s.Btn_FermerBibli);
    s.Btn_FermerBibli->setStyleSheet(QStringLiteral("color:white;"));
    s.Btn_FermerBibli->setMinimumSize(18, 18);
    s.Btn_Biblio = cree<QFrame>(s.Panel_Bibli, "Btn_Biblio");
    auto* categories = new QGridLayout(s.Btn_Biblio);
    categories->setContentsMargins(0, 0, 0, 0);
    categories->setSpacing(2);
    const QString libelles[5] = {QStringLiteral("Arbre(s)"), QStringLiteral("Banc(s)"),
                                 QStringLiteral("Point(s) d'Eau"), QStringLiteral("Poteau(x)"),
                                 QStringLiteral("Poubelle(s)")};
    for (int i = 0; i < 5; ++i) {
        auto* b = new QPushButton(libelles[i], s.Btn_Biblio);
        b->setObjectName(QStringLiteral("Btn_Biblio_%1").arg(i));
        b->setAutoFillBackground(true);
        s.Btn_Biblio_[size_t(i)] = b;
        categories->addWidget(b, i / 2, i % 2);
    }
    s.Panel_Bibli->layout()->addWidget(s.Btn_Biblio);
    s.MapBibli = cree<carto::MapView>(s.Panel_Bibli, "MapBibli");
    s.MapBibli->setMinimumSize(200, 130);
    static_cast<QVBoxLayout*>(s.Panel_Bibli->layout())->addWidget(s.MapBibli, 1);
    s.Nb_EltsCategorie = cree<QLabel>(s.Panel_Bibli, "Nb_EltsCategorie");
    s.Nb_EltsCategorie->setWordWrap(true);
    s.Panel_Bibli->layout()->addWidget(s.Nb_EltsCategorie);
    auto* parcoursBibli = new QHBoxLayout;
    s.Btn_EltBibliPrec = bouton(s.Panel_Bibli, QStringLiteral("Btn_EltBibliPrec"),
                                QStringLiteral("◀"), QStringLiteral("Élément précédent"));
    s.Btn_EltBibliSuivant = bouton(s.Panel_Bibli, QStringLiteral("Btn_EltBibliSuivant"),
                                   QStringLiteral("▶"), QStringLiteral("Élément suivant"));
    s.Btn_BiblioInserer =
        cree<QPushButton>(s.Panel_Bibli, "Btn_BiblioInserer", QStringLiteral("Insérer"));
    s.Btn_BiblioInserer->setToolTip(QStringLiteral("Insérer l'élément au centre de la carte"));
    parcoursBibli->addWidget(s.Btn_EltBibliPrec);
    parcoursBibli->addStretch(1);
    parcoursBibli->addWidget(s.Btn_BiblioInserer);
    parcoursBibli->addStretch(1);
    parcoursBibli->addWidget(s.Btn_EltBibliSuivant);
    static_cast<QVBoxLayout*>(s.Panel_Bibli->layout())->addLayout(parcoursBibli);
    s.Btn_EltBibliPrec->hide();
    s.Btn_EltBibliSuivant->hide();
    s.Panel_Bibli->resize(240, 320);

    // Quick information
    s.PInfos = panneau(&c, "PInfos", QFrame::Box);
    auto* pi = new QGridLayout(s.PInfos);
    s.HLBBttn6 =
        bouton(s.PInfos, QStringLiteral("HLBBttn6"), QStringLiteral("✕"), QStringLiteral("Fermer"));
    s.HLBBttn5 = bouton(s.PInfos, QStringLiteral("HLBBttn5"), QStringLiteral("Fiche"),
                        QStringLiteral("Fiche de la concession"));
    s.L_Tombes = cree<QLabel>(s.PInfos, "L_Tombes");
    s.L_Section = cree<QLabel>(s.PInfos, "L_Section");
    s.L_Allee = cree<QLabel>(s.PInfos, "L_Allee");
    pi->addWidget(new QLabel(QStringLiteral("Emplacement :"), s.PInfos), 0, 0);
    pi->addWidget(s.L_Tombes, 0, 1);
    pi->addWidget(s.HLBBttn6, 0, 2);
    pi->addWidget(new QLabel(QStringLiteral("Section :"), s.PInfos), 1, 0);
    pi->addWidget(s.L_Section, 1, 1);
    pi->addWidget(new QLabel(QStringLiteral("Allée :"), s.PInfos), 2, 0);
    pi->addWidget(s.L_Allee, 2, 1);
    pi->addWidget(s.HLBBttn5, 2, 2);
    const auto liste = [&s, pi](QLabel*& titre, const char* nomTitre, const QString& texte,
                                QListWidget*& l, const char* nom, int ligne) {
        titre = cree<QLabel>(s.PInfos, nomTitre, texte);
        l = cree<QListWidget>(s.PInfos, nom);
        l->setSelectionMode(QAbstractItemView::NoSelection);
        l->setMinimumHeight(44);
        pi->addWidget(titre, ligne, 0, 1, 3);
        pi->addWidget(l, ligne + 1, 0, 1, 3);
        pi->setRowStretch(ligne + 1, 1);
    };
    liste(s.Label_List1, "Label_List1", QStringLiteral("Liste des concessionaires :"), s.List1,
          "List1", 3);
    liste(s.Label_List3, "Label_List3", QStringLiteral("Liste des ayants droits :"), s.List3,
          "List3", 5);
    liste(s.Label_List2, "Label_List2", QStringLiteral("Liste des inhumés"), s.List2, "List2", 7);
    pi->setColumnStretch(1, 1);
    s.PInfos->resize(260, 330);
    s.PInfos->hide();
    s.picMore = panneau(&c, "picMore", QFrame::Box);
    s.picMore->setCursor(Qt::PointingHandCursor);
    s.picMore->hide();
    s.picStandard = panneau(&c, "picStandard", QFrame::Box);
    s.picStandard->hide();

    // Preferences and processing, against the map's right edge
    s.P_preferences = panneau(&c, "P_preferences", QFrame::Box);
    auto* pr = new QVBoxLayout(s.P_preferences);
    pr->addWidget(new QLabel(QStringLiteral("Couleur de fond du plan"), s.P_preferences));
    s.PCouleur = panneau(s.P_preferences, "PCouleur", QFrame::Box);
    s.PCouleur->setFixedSize(60, 24);
    // The sample shows the map's background, white until the user's settings say otherwise.
    QPalette blanc = s.PCouleur->palette();
    blanc.setColor(QPalette::Window, Qt::white);
    s.PCouleur->setPalette(blanc);
    pr->addWidget(s.PCouleur);
    pr->addStretch(1);
    s.P_preferences->hide();
    s.P_traitements = panneau(&c, "P_traitements", QFrame::Box);
    auto* tr = new QVBoxLayout(s.P_traitements);
    s.Btn_AnalysePlan =
        cree<QPushButton>(s.P_traitements, "Btn_AnalysePlan", QStringLiteral("Analyser le plan"));
    s.Btn_AnalysePlan->setToolTip(
        QStringLiteral("Vérifier le plan et écrire le rapport d'analyse"));
    s.Btn_VoirMemorisation = cree<QPushButton>(s.P_traitements, "Btn_VoirMemorisation",
                                               QStringLiteral("Voir la sélection mémorisée"));
    tr->addWidget(s.Btn_AnalysePlan);
    tr->addWidget(s.Btn_VoirMemorisation);
    tr->addWidget(new QLabel(QStringLiteral("Thématiques"), s.P_traitements));
    s.BTN_Themes = cree<QPushButton>(s.P_traitements, "BTN_Themes", QStringLiteral("Thèmes…"));
    s.BTN_Themes->setToolTip(QStringLiteral("Colorer les concessions selon un thème"));
    tr->addWidget(s.BTN_Themes);
    s.Btn_SuppTheme =
        cree<QPushButton>(s.P_traitements, "Btn_SuppTheme", QStringLiteral("Supprimer le thème"));
    s.Btn_SuppTheme->setToolTip(QStringLiteral("Revenir au plan sans thème"));
    tr->addWidget(s.Btn_SuppTheme);
    tr->addWidget(new QLabel(QStringLiteral("Sorties"), s.P_traitements));
    s.Btn_Imprimer =
        cree<QPushButton>(s.P_traitements, "Btn_Imprimer", QStringLiteral("Imprimer…"));
    s.Btn_Imprimer->setToolTip(QStringLiteral("Imprimer la carte"));
    tr->addWidget(s.Btn_Imprimer);
    tr->addStretch(1);
    s.P_traitements->hide();

    // The analysis' faults
    s.Panel_Anomalies = flottant(&c, "Panel_Anomalies", s.Label_Anomalies, "Label_Anomalies",
                                 QStringLiteral("Anomalies du plan"));
    s.Btn_FermerAnomalies = bouton(s.Label_Anomalies, QStringLiteral("Btn_FermerAnomalies"),
                                   QStringLiteral("✕"), QStringLiteral("Fermer"));
    auto* titreAnomalies = new QHBoxLayout(s.Label_Anomalies);
    titreAnomalies->setContentsMargins(0, 0, 0, 0);
    titreAnomalies->addStretch(1);
    titreAnomalies->addWidget(s.Btn_FermerAnomalies);
    s.Btn_FermerAnomalies->setStyleSheet(QStringLiteral("color:white;"));
    s.Liste_Anomalies = cree<QListWidget>(s.Panel_Anomalies, "Liste_Anomalies");
    s.Liste_Anomalies->setWordWrap(true);
    s.Liste_Anomalies->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    s.Panel_Anomalies->layout()->addWidget(s.Liste_Anomalies);
    s.Panel_Anomalies->resize(360, 220);

    // Ruler guides
    s.Regle = panneau(&c, "Regle", QFrame::NoFrame);
    s.RegleV = panneau(&c, "RegleV", QFrame::NoFrame);
    for (QFrame* r : {s.Regle, s.RegleV}) {
        QPalette p = r->palette();
        p.setColor(QPalette::Window, QColor(0, 120, 215));
        r->setPalette(p);
        r->setToolTip(QStringLiteral("Faites glisser le repère sur la carte"));
    }
    s.Regle->setCursor(Qt::SplitVCursor);
    s.RegleV->setCursor(Qt::SplitHCursor);
    s.Regle->hide();
    s.RegleV->hide();
}

} // namespace

Surface construireSurface(QWidget& controle) {
    Surface s;
    bandeHaut(s, controle);
    s.Map1 = cree<carto::MapView>(&controle, "Map1");
    bandeDroite(s, controle);
    bandeBas(s, controle);
    panneauxFlottants(s, controle);
    s.Timer1 = cree<QTimer>(&controle, "Timer1");
    s.Timer1->setInterval(100);
    s.Historique = cree<QUndoStack>(&controle, "Historique");
    s.Historique->setUndoLimit(200); // a day's edits, without holding a plan's worth
    // Floating panels and the gauge stay above the map.
    for (QWidget* w : std::initializer_list<QWidget*>{
             s.Panel_Localisation, s.Panel_Bibli, s.Panel_Dist, s.Panel_Outils, s.PInfos,
             s.Panel_Anomalies, s.P_preferences, s.P_traitements, s.picMore, s.picStandard,
             s.Panel_Jauge})
        w->raise();
    return s;
}

} // namespace veldra
