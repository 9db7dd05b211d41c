#pragma once
// Veldra: the control a host application embeds to show and edit the plan of a cemetery.
// This class is the public surface only: public variables, properties, methods and
// events, the design-time properties and late binding. The behaviour lives in the
// modules (plan opening, editing, exchange...), which the methods call.
//
// Events are signals with by-reference arguments; a host connects with a direct
// connection (the default for a control living on the host's thread) and may change them.

#include "context/contexte.h"
#include "context/property_bag.h"
#include "recordset/recordset.h"

#include <QVariant>
#include <QWidget>
#include <map>
#include <memory>

namespace veldra {

class cToolTip;

class Veldra : public QWidget, public VariablesPubliques {
    Q_OBJECT
    // Qt Designer shows the design-time properties (RepCurseurs, RepFicAnalyse) and the
    // options beyond the original; the others belong to the running host.
    Q_PROPERTY(bool FontMax READ FontMax WRITE setFontMax DESIGNABLE false)
    // Beyond the original, off by default: undo and redo of the user's edits.
    Q_PROPERTY(bool Annulation READ Annulation WRITE setAnnulation)
    // Beyond the original, off by default: the analysis lists and marks its faults and
    // also checks overlapping plots and numbers repeated in an alley.
    Q_PROPERTY(bool AnalyseDetaillee READ AnalyseDetaillee WRITE setAnalyseDetaillee)
    // Beyond the original, off by default: the number box offers the plots' numbers.
    Q_PROPERTY(bool CompletionNumeros READ CompletionNumeros WRITE setCompletionNumeros)
    // Beyond the original, off by default: the print dialog also prints on paper, shows a
    // preview and writes PDF files.
    Q_PROPERTY(bool ImpressionPapier READ ImpressionPapier WRITE setImpressionPapier)
    // Beyond the original, off by default: the localisation image is "ImageL.png".
    Q_PROPERTY(bool ImageLocalisationPng READ ImageLocalisationPng WRITE setImageLocalisationPng)
    Q_PROPERTY(QString Repertoire_Export READ Repertoire_Export WRITE setRepertoire_Export
                   DESIGNABLE false)
    Q_PROPERTY(QString RepCurseurs READ RepCurseurs WRITE setRepCurseurs)
    Q_PROPERTY(QString RepFicAnalyse READ RepFicAnalyse WRITE setRepFicAnalyse)
    Q_PROPERTY(QString ImageLocalisationTerminee READ ImageLocalisationTerminee DESIGNABLE false)
    Q_PROPERTY(qint32 GetNbEltsMemorises READ GetNbEltsMemorises DESIGNABLE false)

public:
    explicit Veldra(QWidget* parent = nullptr);
    ~Veldra() override;

    // ---- properties
    bool FontMax() const;
    void setFontMax(bool v);
    bool Annulation() const;
    void setAnnulation(bool v);
    bool AnalyseDetaillee() const;
    void setAnalyseDetaillee(bool v);
    bool CompletionNumeros() const;
    void setCompletionNumeros(bool v);
    bool ImpressionPapier() const;
    void setImpressionPapier(bool v);
    bool ImageLocalisationPng() const;
    void setImageLocalisationPng(bool v);
    QString Repertoire_Export() const { return ctx_.etat.repertoireExport; }
    void setRepertoire_Export(const QString& v);
    QString RepCurseurs() const;
    void setRepCurseurs(const QString& v);
    QString RepFicAnalyse() const { return repFicAnalyse_; }
    void setRepFicAnalyse(const QString& v);
    // Reading empties it: a second read gives "".
    QString ImageLocalisationTerminee();
    qint32 GetNbEltsMemorises() const;

    // ---- methods
    void OuvreCimetiere(QString& chemin, bool& Nouveau, QString& NomCimetiere, bool& DroitEdition);
    void NouveauCimetiere(QString& sChemin, QString& sNom, double& Longueur, double& Largeur);
    void ChangeDroitEdition(bool& valeur);
    void ConfirmSupp(bool& ValeurConfirm, QString& Message);
    void JaugeParam(qint32& Min, qint32& Max, QString& Message, QString& Titre);
    void JaugePlus();
    void JaugeFin();
    RecordsetPtr GetInfo(QString& sType, QString& Param, QString& Param2, bool& Jauge,
                         QString& MessageJauge);
    void MAJ(RecordsetPtr& Rs, QString& TypeMaj);
    // Errors of these three reach the host as Erreur.
    RecordsetPtr GetListeSections();
    RecordsetPtr GetListeAllees(QString& sSection);
    void Creer_Combo_Section();
    void Sauve(carto::Feature& fSel);
    // The editing commands on the selection of the current layer, as the context menu runs
    // them; each is one step of the history. Side keys: "Haut", "Bas", "Gauche", "Droite".
    // Errors reach the host as Erreur.
    void AjusterSectionOuAllee();
    carto::Features SectionSousAllee(carto::Feature& allee);
    void DemandeSuppression();
    void AlignerTerrains(QString& cote);
    void AjusterPosition(QString& cote);
    void AngleDroit();
    void OrienterTerrains(QString& cote);
    void DefinirTaille();
    // Record sets of the wrong shape reach the host as Erreur, the panel unchanged.
    void AfficheInfosRapides(RecordsetPtr& oRs, RecordsetPtr& oRsIn);
    void SitueTombes(QString& ListeId, bool& ModifieZoom);
    RecordsetPtr GetEltsMemorises();
    // Themes and photographs. Theme closes the host's record set and empties `Rs`.
    void AjouteTheme(QString& Libelle, QString& Code);
    QVariant GetTableauThemes();
    void Action(QString& sLibelle, QString& sCode);
    void Theme(RecordsetPtr& Rs, QString& sParam, QString& Champ, QString& ChampGeo,
               QString& TitreTheme);
    bool AddPhoto(QString& sIdGCF, QString& sName);
    bool DelPhoto(QString& sIdGCF);
    QString CheminPhoto(QString& sID, bool& Ouvrir);
    RecordsetPtr GetPhotos();
    // Printing, labels and the localisation image. SetEtiquette closes the host's record
    // set and empties `Rs`. ImageLocalisation's errors (no plan open) reach the host as
    // Erreur, its result then being "-1".
    void ImpCarte(QString& Format, QString& sTitre, QString& sCommentaires, bool& TrameP,
                  QString& sEchelle, bool& ImprimeSelection);
    void SetEtiquette(RecordsetPtr& Rs, QString& ChampEtiquette);
    void RAZEtiquette();
    void ImageLocalisation(QString& sIdGCF);

    // ---- the container
    // Design-time properties: read when the container loads the control, written when it
    // saves it.
    void ReadProperties(const PropertyBag& bag);
    void WriteProperties(PropertyBag& bag) const;
    // Late binding by dispatch identifier (see dispatch.h). Arguments passed by reference
    // are written back into `args`. Throws Erreur 438 for a member that is not available.
    QVariant Invoke(qint32 dispid, QVariantList& args);

    // Hooks for hosts and tests.
    void setPrompter(std::unique_ptr<Prompter> prompter);
    void setModalHook(std::function<int(QDialog&)> hook);
    // What opens the analysis report: the system's text editor by default.
    void setEditeurHook(std::function<void(const QString&)> hook);
    // The folder where the control keeps its settings file and cursors.
    void setDossierControle(const QString& dossier);
    QString dossierControle() const { return ctx_.dossierControle; }

    Contexte& contexte() { return ctx_; }
    Surface& surface() { return surface_; }
    // The balloon tooltips of the child controls, by key ("B_Outils(3)").
    const std::map<QString, std::unique_ptr<cToolTip>>& bulles() const { return *bulles_; }

signals:
    void FicheTombe(QString& NumTombe);
    void ChargeTheme(QString& Libelle, QString& Code);
    void Synchro(RecordsetPtr& Rs, QString& TypeSynchro);
    void AffecterUneConcession(QString& IdTerrain);
    void CreationDuneSection(QString& NomSection);
    void CreationDuneAllee(QString& NomAllee, QVariant& NomSection);
    void CreationDunTerrain(QString& IdTerrain);
    void SuppressionSection(QString& NomSection);
    void SuppressionAllee(QString& NomAllee);
    void SuppressionTerrain(QString& IdTerrain);
    void DemandeImpressionCarte(QString& CheminCarte, QString& Titre, QString& Commentaires,
                                QString& Echelle);
    void InfoTombes(QString& IdTombe);
    void Change();
    // A design-time property changed (the container marks itself as modified).
    void PropertyChanged(const QString& key);

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void connecteSurface();

    Surface surface_;
    Contexte ctx_;
    QString repFicAnalyse_ = QStringLiteral("AnalysePlan.txt");
    bool montre_ = false;
    std::unique_ptr<std::map<QString, std::unique_ptr<cToolTip>>> bulles_;
};

} // namespace veldra
