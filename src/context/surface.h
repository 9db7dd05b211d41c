#pragma once
// The child widgets of the control, each with the objectName a host or a test finds it
// by. Qt's parent chain owns them; this structure only points at them. Button arrays are
// a container named after the array holding buttons named "<array>_<index>".

#include "carto/view/map_view.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QTabBar>
#include <QTimer>
#include <QToolButton>
#include <QUndoStack>
#include <array>

namespace veldra {

struct Surface {
    carto::MapView* Map1 = nullptr;

    // Top band
    QFrame* Panel_Haut = nullptr;
    QLabel* L_NomCimetiere = nullptr;
    QFrame* B_Outils = nullptr;
    std::array<QToolButton*, 9> B_Outils_ = {};
    QToolButton* B_OutilsInfo = nullptr;
    QToolButton* Echelle = nullptr; // the preset scales' drop-down
    QMenu* MenuEchelle = nullptr;   // its entries: a caption, then 1/50 to 1/1000
    QLineEdit* L_echelle = nullptr; // the scale's denominator, typed or shown
    QToolButton* b_rafraichir = nullptr;
    QLabel* L_echelle2 = nullptr;
    QToolButton* Btn_Pref = nullptr;

    // Right band
    QFrame* Panel_Droite = nullptr;
    QTabBar* TabStrip1 = nullptr;
    std::array<QFrame*, 2> pages = {}; // Frame_Onglet1, Frame_Onglet2
    QComboBox* Combo_Calque = nullptr;
    QCheckBox* CB_ModeEdition = nullptr;
    QPushButton* Btn_Synchro = nullptr;
    QLabel* L_NB_Tombes = nullptr;
    QPushButton* Btn_Traitements = nullptr;
    QToolButton* Btn_Fleche = nullptr;

    // Display check boxes
    QCheckBox* C_AffSections = nullptr;
    QCheckBox* C_AffAllees = nullptr;
    QCheckBox* CB_PlanNumerise = nullptr;
    QCheckBox* CB_QUE_PlanNumerise = nullptr;
    QCheckBox* CB_PlanSitue = nullptr;
    QCheckBox* CB_Bibliotheque = nullptr;
    QCheckBox* Check1 = nullptr;
    QCheckBox* Check2 = nullptr;
    // Drawing aids (beyond the original, off by default)
    QCheckBox* CB_Accrochage = nullptr;
    QSpinBox* SB_ToleranceAccrochage = nullptr;
    QCheckBox* CB_EviterChevauchements = nullptr;
    QCheckBox* CB_Rangees = nullptr;

    // Information panel: the selected feature
    QFrame* Panel_Infos = nullptr;
    QWidget* corpsInfos = nullptr; // what folding the panel hides
    QLabel* Num_Selec = nullptr;
    QFrame* b_selec = nullptr; // browses the selection: first, previous, next, last
    std::array<QToolButton*, 4> b_selec_ = {};
    QFrame* Frame_Numero = nullptr;
    QLineEdit* SaisieNum = nullptr;
    QToolButton* Btn_RotationNumero = nullptr;
    QToolButton* Btn_ModifierTailleNumero = nullptr;
    QFrame* Frame_Nom = nullptr;
    QLineEdit* Label_Nom = nullptr;
    QPushButton* Btn_Sauver = nullptr;
    QPushButton* Btn_Visu = nullptr;
    QPushButton* Btn_ModifStyle = nullptr;
    QPushButton* Btn_DeplaceEtiquette = nullptr;
    QPushButton* HLBBttn2 = nullptr; // the selected plots' file card
    QPushButton* Btn_InfosRapides = nullptr;

    // Bottom band: plot search
    QFrame* Panel_Bas = nullptr;
    QLabel* LrechercheSection = nullptr;
    QComboBox* Combo_section = nullptr;
    QLabel* L_RechEmp = nullptr;
    QLineEdit* TB_SaisieEmplacement = nullptr;
    QPushButton* Btn_Rechercher = nullptr;

    // Gauge
    QFrame* Panel_Jauge = nullptr;
    QLabel* Titre_Jauge = nullptr;
    QLabel* L_Message = nullptr;
    QProgressBar* ProgressBar1 = nullptr;

    // Distance
    QFrame* Panel_Dist = nullptr;
    QLabel* Label9 = nullptr;
    QLabel* L_Distance = nullptr;
    QLabel* L_DistTotale = nullptr;
    QToolButton* Btn_FemerPanelDist = nullptr;

    // Rulers along the map
    QFrame* Regle = nullptr;
    QFrame* RegleV = nullptr;

    // Preferences and processing
    QFrame* P_preferences = nullptr;
    QFrame* PCouleur = nullptr;
    QFrame* P_traitements = nullptr;
    QPushButton* Btn_AnalysePlan = nullptr;
    QPushButton* Btn_VoirMemorisation = nullptr;
    QPushButton* BTN_Themes = nullptr;    // the theme list
    QPushButton* Btn_SuppTheme = nullptr; // the theme on show removed
    QPushButton* Btn_Imprimer = nullptr;  // the print settings, then the printed map

    // Floating panels
    QFrame* Panel_Outils = nullptr;
    QLabel* Label7 = nullptr;
    std::array<QToolButton*, 8> Btn_OutilsDessin_ = {};
    QFrame* Btn_OutilsDessin = nullptr;
    QToolButton* Btn_Texte = nullptr;
    QToolButton* Btn_Rangee = nullptr; // a row of plots from a model (with CB_Rangees)
    // Undo and redo of the user's edits; shown only while the host turns the history on.
    QToolButton* Btn_AnnulerEdition = nullptr;
    QToolButton* Btn_RetablirEdition = nullptr;
    QFrame* Panel_Localisation = nullptr;
    QLabel* Label8 = nullptr;
    QToolButton* HLBBttn1 = nullptr;
    carto::MapView* MapLocalisation = nullptr;
    QFrame* Panel_Bibli = nullptr;
    QLabel* Label1 = nullptr;
    QToolButton* Btn_FermerBibli = nullptr;
    QFrame* Btn_Biblio = nullptr; // one button per category
    std::array<QPushButton*, 5> Btn_Biblio_ = {};
    carto::MapView* MapBibli = nullptr;
    QLabel* Nb_EltsCategorie = nullptr;
    QToolButton* Btn_EltBibliPrec = nullptr;
    QToolButton* Btn_EltBibliSuivant = nullptr;
    QPushButton* Btn_BiblioInserer = nullptr;
    QFrame* PInfos = nullptr;
    QToolButton* HLBBttn6 = nullptr;
    QToolButton* HLBBttn5 = nullptr; // the file card
    QLabel* L_Tombes = nullptr;
    QLabel* L_Section = nullptr;
    QLabel* L_Allee = nullptr;
    QLabel* Label_List1 = nullptr;
    QListWidget* List1 = nullptr; // holders
    QLabel* Label_List3 = nullptr;
    QListWidget* List3 = nullptr; // right holders
    QLabel* Label_List2 = nullptr;
    QListWidget* List2 = nullptr;  // buried persons
    QFrame* picMore = nullptr;     // the 40 background colours
    QFrame* picStandard = nullptr; // the 16 standard colours beside them
    // The faults the analysis found, each selecting its feature when clicked.
    QFrame* Panel_Anomalies = nullptr;
    QLabel* Label_Anomalies = nullptr;
    QToolButton* Btn_FermerAnomalies = nullptr;
    QListWidget* Liste_Anomalies = nullptr;

    QTimer* Timer1 = nullptr;
    QUndoStack* Historique = nullptr; // the open plan's edits, when the history is on
};

// Builds the widgets inside `controle`, in their design state (hidden panels hidden,
// check boxes clear).
Surface construireSurface(QWidget& controle);

} // namespace veldra
