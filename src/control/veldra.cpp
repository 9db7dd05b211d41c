#include "control/veldra.h"

#include "analysis/connexions.h"
#include "analysis/infos_rapides.h"
#include "analysis/memorisation.h"
#include "analysis/situe_tombes.h"
#include "base/erreur.h"
#include "context/affichage.h"
#include "context/disposition.h"
#include "context/dossier_controle.h"
#include "context/garde.h"
#include "context/jauge.h"
#include "context/parametres.h"
#include "context/sablier.h"
#include "control/types_automation.h"
#include "editing/ajustement.h"
#include "editing/alignement.h"
#include "editing/barre_outils.h"
#include "editing/divers.h"
#include "editing/evenements_carte.h"
#include "editing/historique.h"
#include "editing/sauve.h"
#include "editing/selection.h"
#include "editing/suppression.h"
#include "exchange/collecte.h"
#include "exchange/listes.h"
#include "exchange/mise_a_jour.h"
#include "output/bibliotheque.h"
#include "output/carte_localisation.h"
#include "output/connexions.h"
#include "output/ctooltip.h"
#include "output/echelle.h"
#include "output/etiquettes.h"
#include "output/image_localisation.h"
#include "output/imp_carte.h"
#include "output/style_selection.h"
#include "plan/calque_courant.h"
#include "plan/couches_temporaires.h"
#include "plan/nouveau_cimetiere.h"
#include "plan/ouverture.h"
#include "themes/affichage_theme.h"
#include "themes/catalogue.h"
#include "themes/liens_photos.h"
#include "themes/theme_hote.h"

#include <QDir>
#include <QKeyEvent>

namespace veldra {

namespace {

// The cursor folder is one for the whole process: every instance sees the last value
// written or read.
QString& repCurseursPartage() {
    static QString valeur;
    return valeur;
}

QString avecSeparateur(const QString& dossier) {
    return dossier.endsWith(u'/') ? dossier : dossier + u'/';
}

} // namespace

Veldra::Veldra(QWidget* parent)
    : QWidget(parent), surface_(construireSurface(*this)), ctx_(*this, *this, surface_) {
    const Sablier sablier;
    setObjectName(QStringLiteral("Veldra"));
    ctx_.setPrompter(std::make_unique<BoitePrompter>(this));
    ctx_.dossierControle = dossierDuModule();
    if (repCurseursPartage().isEmpty())
        repCurseursPartage() = ctx_.dossierControle + QStringLiteral("/Images/Curseurs/");
    gMap = surface_.Map1;
    mintCurFrame = 1;
    setMinimumWidth(int(kLargeurMinimaleTwips / twipsParPixel(ctx_)));
    connecteSurface();
    bulles_ = std::make_unique<Bulles>(creeBulles(*this));
    resize(1000, 700);
}

Veldra::~Veldra() {
    // The container must always be able to destroy the control: errors are ignored.
    try {
        ecritParametres(ctx_);
    } catch (const Erreur&) {
    }
    // A gauge still running set the screen's hourglass, which outlives the control.
    if (ctx_.etat.sablierJauge)
        veldra::JaugeFin(ctx_);
    gMap = nullptr;
    ctx_.libereIni();
    ObjSel = carto::Features();
    bulles_.reset();
}

void Veldra::connecteSurface() {
    connecteAffichage(ctx_);
    connecteBarresOutils(ctx_);
    connecteCollecte(ctx_);
    connecteListes(ctx_);
    connecteSelection(ctx_);
    connecteAnalyse(ctx_);
    connecteThemes(ctx_);
    Evenements& e = ctx_.evenements;
    e.Synchro = [this](RecordsetPtr& rs, QString& type) { emit Synchro(rs, type); };
    e.InfoTombes = [this](QString& id) { emit InfoTombes(id); };
    e.FicheTombe = [this](QString& ids) { emit FicheTombe(ids); };
    e.AffecterUneConcession = [this](QString& id) { emit AffecterUneConcession(id); };
    e.SuppressionSection = [this](QString& noms) { emit SuppressionSection(noms); };
    e.SuppressionAllee = [this](QString& noms) { emit SuppressionAllee(noms); };
    e.SuppressionTerrain = [this](QString& ids) { emit SuppressionTerrain(ids); };
    e.ChargeTheme = [this](QString& libelle, QString& code) { emit ChargeTheme(libelle, code); };
    e.DemandeImpressionCarte = [this](QString& chemin, QString& titre, QString& commentaires,
                                      QString& echelle) {
        emit DemandeImpressionCarte(chemin, titre, commentaires, echelle);
    };
    Contexte* c = &ctx_;
    Crochets& h = ctx_.crochets;
    h.creeOutilsPersonnalises = [c] { creeOutilsPersonnalises(*c); };
    h.activeOutilsDessin = [c] { activeOutilsDessin(*c); };
    h.prepareOutilsCarte = [c] { prepareOutilsCarte(*c); };
    h.creeComboSection = [c] { veldra::Creer_Combo_Section(*c); };
    h.infosTerrainSelectionne = [c] { InfosTerrainSelectionne(*c); };
    h.changeCalqueCourant = [c] { changeCalqueCourant(*c); };
    h.afficheObjetSelectionne = [c](const carto::Feature& f) { afficheObjetSelectionne(*c, f); };
    h.enregistreMemorisation = [c] { EnregistreMemorisation(*c); };
    h.proprietesEtiquettes = [c] { ouvreDivers(*c, [](Divers& d) { d.Etiquette(); }); };
    h.styleEtiquettes = [c](const carto::Style& style) { styleEtiquettes(*c, style); };
    h.creeCalqueTemporaire = [c] { creeCalqueTemporaire(*c); };
    h.styleSelection = [c] { styleSelection(*c); };
    connecteSorties(ctx_);
    connect(surface_.Combo_Calque, &QComboBox::activated, this,
            garde(ctx_, [c] { changeCalqueCourant(*c); }));
    connect(surface_.CB_ModeEdition, &QCheckBox::clicked, this,
            garde(ctx_, [c] { appliqueModeEdition(*c); }));
    // Timer1 is the editing module's deferred save: it arms and stops it.
    connecteEvenementsCarte(ctx_);
    connecteHistorique(ctx_);
    surface_.Map1->installEventFilter(this);
    // The scale and the overview follow the main view; their errors are ignored.
    connect(surface_.Map1, &carto::MapView::viewChanged, this, garde(ctx_, [c] {
                afficheEchelle(*c);
                suitVuePrincipale(*c);
            }));
    // What a map tool could not do reaches the user, never the event loop.
    connect(surface_.Map1, &carto::MapView::failed, this,
            [c](const Erreur& err) { signaleErreur(*c, err); });
}

// ---- properties

void Veldra::setRepertoire_Export(const QString& v) {
    ctx_.etat.repertoireExport = v;
    emit PropertyChanged(QStringLiteral("Repertoire_Export"));
}

QString Veldra::RepCurseurs() const {
    return repCurseursPartage();
}

void Veldra::setRepCurseurs(const QString& v) {
    repCurseursPartage() = avecSeparateur(v);
}

void Veldra::setRepFicAnalyse(const QString& v) {
    repFicAnalyse_ = avecSeparateur(v) + QStringLiteral("AnalysePlan.txt");
}

QString Veldra::ImageLocalisationTerminee() {
    return std::exchange(ctx_.etat.imageLocalisationTerminee, QString());
}

// ---- methods

void Veldra::OuvreCimetiere(QString& chemin, bool& Nouveau, QString& NomCimetiere,
                            bool& DroitEdition) {
    if (!Nouveau) {
        ouvrePlan(ctx_, chemin, NomCimetiere, false, DroitEdition);
        return;
    }
    demandeTailleCimetiere(
        ctx_, chemin, NomCimetiere,
        [this](QString& c, QString& n, double& lo, double& la) { NouveauCimetiere(c, n, lo, la); });
}

void Veldra::NouveauCimetiere(QString& sChemin, QString& sNom, double& Longueur, double& Largeur) {
    nouveauCimetiere(ctx_, sChemin, sNom, Longueur, Largeur);
}

void Veldra::ConfirmSupp(bool& ValeurConfirm, QString& Message) {
    veldra::ConfirmSupp(ctx_, ValeurConfirm, Message);
}

void Veldra::JaugeParam(qint32& Min, qint32& Max, QString& Message, QString& Titre) {
    veldra::JaugeParam(ctx_, Min, Max, Message, Titre);
}

void Veldra::JaugePlus() {
    veldra::JaugePlus(ctx_);
}

void Veldra::JaugeFin() {
    veldra::JaugeFin(ctx_);
}

RecordsetPtr Veldra::GetInfo(QString& sType, QString& Param, QString& Param2, bool& Jauge,
                             QString& /*MessageJauge: the gauge's text is the control's own*/) {
    return veldra::GetInfo(ctx_, sType, Param, Param2, Jauge);
}

void Veldra::MAJ(RecordsetPtr& Rs, QString& TypeMaj) {
    veldra::MAJ(ctx_, Rs, TypeMaj);
}

RecordsetPtr Veldra::GetListeSections() {
    return veldra::GetListeSections(ctx_);
}

RecordsetPtr Veldra::GetListeAllees(QString& sSection) {
    return veldra::GetListeAllees(ctx_, sSection);
}

void Veldra::Creer_Combo_Section() {
    veldra::Creer_Combo_Section(ctx_);
}

void Veldra::Sauve(carto::Feature& fSel) {
    veldra::Sauve(ctx_, fSel);
}

void Veldra::AjusterSectionOuAllee() {
    veldra::AjusterSectionOuAllee(ctx_);
}

carto::Features Veldra::SectionSousAllee(carto::Feature& allee) {
    return veldra::SectionSousAllee(ctx_, allee);
}

void Veldra::DemandeSuppression() {
    veldra::DemandeSuppression(ctx_);
}

void Veldra::AlignerTerrains(QString& cote) {
    veldra::AlignerTerrains(ctx_, cote);
}

void Veldra::AjusterPosition(QString& cote) {
    veldra::AjusterPosition(ctx_, cote);
}

void Veldra::AngleDroit() {
    veldra::AngleDroit(ctx_);
}

void Veldra::OrienterTerrains(QString& cote) {
    veldra::OrienterTerrains(ctx_, cote);
}

void Veldra::DefinirTaille() {
    veldra::DefinirTaille(ctx_);
}

void Veldra::AfficheInfosRapides(RecordsetPtr& oRs, RecordsetPtr& oRsIn) {
    veldra::AfficheInfosRapides(ctx_, oRs.get(), oRsIn.get());
}

void Veldra::SitueTombes(QString& ListeId, bool& ModifieZoom) {
    veldra::SitueTombes(ctx_, ListeId, ModifieZoom);
}

RecordsetPtr Veldra::GetEltsMemorises() {
    return veldra::GetEltsMemorises(ctx_);
}

qint32 Veldra::GetNbEltsMemorises() const {
    return veldra::GetNbEltsMemorises(ctx_);
}

void Veldra::AjouteTheme(QString& Libelle, QString& Code) {
    veldra::AjouteTheme(ctx_, Libelle, Code);
}

QVariant Veldra::GetTableauThemes() {
    return veldra::GetTableauThemes(ctx_);
}

void Veldra::Action(QString& sLibelle, QString& sCode) {
    veldra::Action(ctx_, sLibelle, sCode);
}

void Veldra::Theme(RecordsetPtr& Rs, QString& sParam, QString& Champ, QString& ChampGeo,
                   QString& TitreTheme) {
    veldra::Theme(ctx_, Rs, sParam, Champ, ChampGeo, TitreTheme);
}

bool Veldra::AddPhoto(QString& sIdGCF, QString& sName) {
    return veldra::AddPhoto(ctx_, sIdGCF, sName);
}

bool Veldra::DelPhoto(QString& sIdGCF) {
    return veldra::DelPhoto(ctx_, sIdGCF);
}

QString Veldra::CheminPhoto(QString& sID, bool& Ouvrir) {
    return veldra::CheminPhoto(ctx_, sID, Ouvrir);
}

RecordsetPtr Veldra::GetPhotos() {
    return veldra::GetPhotos(ctx_);
}

void Veldra::ImpCarte(QString& Format, QString& sTitre, QString& sCommentaires, bool& TrameP,
                      QString& sEchelle, bool& ImprimeSelection) {
    veldra::ImpCarte(ctx_, Format, sTitre, sCommentaires, TrameP, sEchelle, ImprimeSelection);
}

void Veldra::SetEtiquette(RecordsetPtr& Rs, QString& ChampEtiquette) {
    veldra::SetEtiquette(ctx_, Rs, ChampEtiquette);
}

void Veldra::RAZEtiquette() {
    veldra::RAZEtiquette(ctx_);
}

void Veldra::ImageLocalisation(QString& sIdGCF) {
    veldra::ImageLocalisation(ctx_, sIdGCF);
}

bool Veldra::ImpressionPapier() const {
    return ctx_.etat.impressionPapier;
}

void Veldra::setImpressionPapier(bool v) {
    ctx_.etat.impressionPapier = v;
}

bool Veldra::ImageLocalisationPng() const {
    return ctx_.etat.imageLocalisationPng;
}

void Veldra::setImageLocalisationPng(bool v) {
    ctx_.etat.imageLocalisationPng = v;
}

bool Veldra::FontMax() const {
    return ctx_.etat.fontMax;
}

void Veldra::setFontMax(bool v) {
    ctx_.etat.fontMax = v;
}

bool Veldra::Annulation() const {
    return historiqueActif(ctx_);
}

void Veldra::setAnnulation(bool v) {
    activeHistorique(ctx_, v);
}

bool Veldra::AnalyseDetaillee() const {
    return ctx_.etat.analyseDetaillee;
}

void Veldra::setAnalyseDetaillee(bool v) {
    ctx_.etat.analyseDetaillee = v;
}

bool Veldra::CompletionNumeros() const {
    return ctx_.etat.completionNumeros;
}

void Veldra::setCompletionNumeros(bool v) {
    ctx_.etat.completionNumeros = v;
}

void Veldra::ChangeDroitEdition(bool& valeur) {
    surface_.CB_ModeEdition->setVisible(valeur);
}

// ---- the container

void Veldra::ReadProperties(const PropertyBag& bag) {
    repCurseursPartage() =
        bag.ReadProperty(QStringLiteral("RepCurseurs"),
                         ctx_.dossierControle + QStringLiteral("/Images/Curseurs/"))
            .toString();
    repFicAnalyse_ =
        bag.ReadProperty(QStringLiteral("RepFicAnalyse"), QStringLiteral("AnalysePlan.txt"))
            .toString();
}

void Veldra::WriteProperties(PropertyBag& bag) const {
    bag.WriteProperty(QStringLiteral("RepCurseurs"), repCurseursPartage(),
                      ctx_.dossierControle + QStringLiteral("/Images/Curseurs/"));
    bag.WriteProperty(QStringLiteral("RepFicAnalyse"), repFicAnalyse_,
                      QStringLiteral("AnalysePlan.txt"));
}

void Veldra::setPrompter(std::unique_ptr<Prompter> prompter) {
    ctx_.setPrompter(std::move(prompter));
}

void Veldra::setModalHook(std::function<int(QDialog&)> hook) {
    ctx_.montreModal = std::move(hook);
}

void Veldra::setEditeurHook(std::function<void(const QString&)> hook) {
    ctx_.ouvreEditeur = std::move(hook);
}

void Veldra::setDossierControle(const QString& dossier) {
    ctx_.dossierControle = QDir::cleanPath(dossier);
    // The symbol library lives in that folder.
    oublieBibliotheque(ctx_);
}

// ---- Qt events

void Veldra::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    const Sablier sablier;
    boutonOutils(ctx_, 8);
}

void Veldra::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    dispose(ctx_);
}

bool Veldra::eventFilter(QObject* watched, QEvent* event) {
    // Delete is swallowed in edit mode, so a plot leaves the plan only through the
    // deletion the host confirms; vertex editing keeps the key.
    if (watched == surface_.Map1 && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Delete && ModeEdition) {
        const int mode = surface_.Map1->editingMode();
        if (mode != carto::editmode::Vertices && mode != carto::editmode::AddVertices)
            return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace veldra
