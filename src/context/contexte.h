#pragma once
// What the modules of the control share: the public variables (hosts may write them at
// any time, so modules read them at each operation), the widgets, the control's own
// state, the prompter, the modal-dialog hook, the events raised to the host and the hooks
// through which one domain module calls another. The control owns it and wires the hooks;
// modules receive a reference and never include each other.

#include "base/erreur.h"
#include "carto/model/map.h"
#include "context/ini_file/ini_file.h"
#include "context/prompter.h"
#include "context/surface.h"
#include "recordset/recordset.h"

#include <QDesktopServices>
#include <QDialog>
#include <QElapsedTimer>
#include <QMenu>
#include <QStringList>
#include <QUrl>
#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace veldra {

// The public variables of the control, in their declaration order.
struct VariablesPubliques {
    carto::Layer* Calque_Tombe = nullptr;
    carto::Layer* Calque_Decor = nullptr;
    carto::Layer* Calque_Numero = nullptr;
    carto::Layer* Calque_Texte = nullptr;
    carto::Layer* Calque_Sections = nullptr;
    carto::Layer* Calque_Allees = nullptr;
    carto::Layer* Calque_Courant = nullptr;
    carto::Layer* Calque_Enceinte = nullptr;
    carto::Layer* Calque_Raster = nullptr;
    QString CheminCimetiere;
    QObject* gMap = nullptr;
    carto::Features ObjSel;
    bool ModeEdition = false;
    carto::Dataset* DataSetTombes = nullptr;
    qint16 mintCurFrame = 0;
};

// What the overlap guard knows of the gesture under way: the plots the last tool added
// or changed, and the shapes of the selected plots before it.
struct EtatChevauchements {
    std::vector<qint64> ajoutes;
    std::vector<qint64> modifies;
    std::map<qint64, carto::Parts> avant;
};

// What the pointer is doing on the map, for measuring and for renumbering moved plots.
struct EtatPointeur {
    bool mesure = false;             // a distance is being measured (tool 105)
    carto::Point dernierClic;        // map point of the last left-button press
    double longueurMesuree = 0;      // the closed segments of the measurement
    double segment = 0;              // from the last click to the pointer
    bool gaucheTenu = false;         // the left button is down
    bool glisse = false;             // the left button moved while held
    bool renumerotation = false;     // moved plots must get their numbers again
    bool sauvegardeDifferee = false; // Timer1 has that to do
};

// The themes: the host's catalogue, kept for the life of the control, and the theme on
// show, which is applied again when the plots change.
struct EtatThemes {
    static constexpr int kLignes = 100;
    std::array<std::array<QString, 2>, kLignes> TableauThemes; // label, code
    qint16 NbThemes = 0;
    enum class Affiche { Aucun, Hote, Photo };
    Affiche affiche = Affiche::Aucun;
    QString sParam; // the host theme's legend mapping, its final "@" dropped
};

// The symbol library shown in Panel_Bibli: its map, opened when first needed, and the
// element on show.
struct EtatBibliotheque {
    bool ouverte = false;           // an attempt was made for the current control folder
    QString erreur;                 // why the library could not be opened, empty when it was
    carto::Layer* calque = nullptr; // the library's elements, in MapBibli
    int boutonSurligne = -1;        // the highlighted category button
    QString libelle, categorie;     // the category on show
    qint16 numero = 0;              // its element on show, 1..
    qint16 nombre = 0;              // its count of elements
    qint64 element = -1;            // the element on show, -1 for none
};

// The ruler guides: where the clerk dropped them (control coordinates), and the last one
// the pointer went over ("H" or "V").
struct EtatReperes {
    std::optional<int> yH, xV;
    QString survole;
};

struct EtatControle {
    carto::Layer* calquePrecedent = nullptr;
    bool droitEdition = false;
    bool planOuvert = false;
    double longueurPlan = 0; // metres, for a new plan
    double largeurPlan = 0;
    carto::Layer* calqueTemp = nullptr; // the scratch layer of Map1
    QStringList couleursTheme;          // ten colours as decimal text
    QString etatPanelInfos = QStringLiteral("Visible");
    bool chargement = false;           // settings being applied: nothing is saved meanwhile
    qint16 indexOutil = 0;             // the last B_Outils button pressed
    carto::Style marqueur1, marqueur2; // red marks of the overview map
    int pointeurCarte = 0;             // the map's pointer before the gauge started
    bool sablierJauge = false;         // the gauge set the screen's hourglass
    QElapsedTimer jaugeDessinee;       // since the gauge was last drawn
    bool fontMax = false;              // FontMax: new number labels bold and sized to the plot
    EtatPointeur pointeur;
    // The control's clipboard: shapes and styles of the features copied, and their layer.
    std::vector<carto::Feature> copies;
    QString calqueCopie;
    EtatChevauchements chevauchements;
    // The lettering kept for the next free texts (Divers' Cb_Sauvegarde).
    std::optional<carto::Style> styleTexte;
    RecordsetPtr memorisation; // the memorised selection ("IdGCF N"); none before the first
    qint32 nbMemorises = 0;    // its record count at the last memorisation
    // Beyond the original, off by default: the analysis lists and marks its faults and
    // checks overlaps and repeated numbers; the number box completes existing numbers.
    bool analyseDetaillee = false;
    bool completionNumeros = false;
    EtatThemes themes;
    // Output: the folder of the printed map (Repertoire_Export), the result of the last
    // localisation image (read once by the host), the symbol library.
    QString repertoireExport;
    QString imageLocalisationTerminee;
    EtatBibliotheque bibliotheque;
    EtatReperes reperes;
    // Beyond the original, off by default: the print dialog also prints on paper and
    // writes PDF files; the localisation image is written as PNG instead of JPEG.
    bool impressionPapier = false;
    bool imageLocalisationPng = false;
};

// The events a module raises to the host, wired by the control to its signals.
struct Evenements {
    std::function<void(RecordsetPtr&, QString&)> Synchro;
    std::function<void(QString&)> InfoTombes;
    std::function<void(QString&)> FicheTombe;
    std::function<void(QString&)> AffecterUneConcession;
    std::function<void(QString&)> SuppressionSection;
    std::function<void(QString&)> SuppressionAllee;
    std::function<void(QString&)> SuppressionTerrain;
    std::function<void(QString&, QString&)> ChargeTheme;
    std::function<void(QString&, QString&, QString&, QString&)> DemandeImpressionCarte;
};

// Calls from one domain module into another, wired by the control. An unset hook does
// nothing, so a module can be driven on its own.
struct Crochets {
    // Editing: the custom tools of the main map view (plan opening).
    std::function<void()> creeOutilsPersonnalises;
    // Editing: the drawing tools that suit the current layer (edit mode).
    std::function<void()> activeOutilsDessin;
    // Editing: the map set-up of edit mode.
    std::function<void()> prepareOutilsCarte;
    // Exchange: the search panel's section list (plan opening).
    std::function<void()> creeComboSection;
    // Exchange: the file card of the selected plots, and a concession for the first one
    // (context menu).
    std::function<void()> ouvreFicheTombes;
    std::function<void()> affecteConcession;
    // Output: the style of the selection (context menu).
    std::function<void()> styleSelection;
    // Exchange: the selected plot's labels, then Synchro and InfoTombes to the host.
    std::function<void()> infosTerrainSelectionne;
    // Plan: Combo_Calque's layer becomes the current layer.
    std::function<void()> changeCalqueCourant;
    // Editing: one feature of the current layer shown in the side panel.
    std::function<void(const carto::Feature&)> afficheObjetSelectionne;
    // Analysis: the context menu's "Mémoriser la sélection".
    std::function<void()> enregistreMemorisation;
    // Editing: the label panel of the text and label dialog (Btn_DeplaceEtiquette).
    std::function<void()> proprietesEtiquettes;
    // Output: the lettering of the plots' labels, as the text and label dialog sets it.
    std::function<void(const carto::Style&)> styleEtiquettes;
    // Plan: the main map's scratch layer made again.
    std::function<void()> creeCalqueTemporaire;
};

template <typename... A> void appelle(const std::function<void(A...)>& crochet, A... args) {
    if (crochet)
        crochet(args...);
}

class Contexte {
public:
    Contexte(QWidget& controle, VariablesPubliques& v, Surface& s)
        : controle(controle), v(v), s(s) {}

    QWidget& controle;
    VariablesPubliques& v;
    Surface& s;
    EtatControle etat;
    Evenements evenements;
    Crochets crochets;

    Prompter& prompter() { return *prompter_; }
    void setPrompter(std::unique_ptr<Prompter> p) { prompter_ = std::move(p); }

    // Every modal dialog is shown through this hook, so tests can drive it.
    std::function<int(QDialog&)> montreModal = [](QDialog& d) { return d.exec(); };
    // Every pop-up menu likewise: the action chosen, nullptr for none.
    std::function<QAction*(QMenu&, const QPoint&)> montreMenu = [](QMenu& m, const QPoint& p) {
        return m.exec(p);
    };
    // The system's text editor, started on a file without waiting for it (the analysis
    // report); hosts and tests may put their own.
    std::function<void(const QString&)> ouvreEditeur = [](const QString& fichier) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(fichier));
    };

    // The settings file object, made when first needed.
    INI_FILE& ini() {
        if (!ini_)
            ini_ = std::make_unique<INI_FILE>();
        return *ini_;
    }
    void libereIni() { ini_.reset(); }

    // The control's own folder (settings, cursors); see dossier_controle.h.
    QString dossierControle;

    carto::Map& carte() { return s.Map1->map(); }

private:
    std::unique_ptr<Prompter> prompter_;
    std::unique_ptr<INI_FILE> ini_;
};

} // namespace veldra
