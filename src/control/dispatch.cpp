#include "control/dispatch.h"

namespace veldra::dispatch {

namespace {

using G = Genre;

std::vector<Membre> construit() {
    return {
        // Public variables
        {0x40030000, "Calque_Tombe", G::Variable, "Layer", {}},
        {0x40030001, "Calque_Decor", G::Variable, "Layer", {}},
        {0x40030002, "Calque_Numero", G::Variable, "Layer", {}},
        {0x40030003, "Calque_Texte", G::Variable, "Layer", {}},
        {0x40030004, "Calque_Sections", G::Variable, "Layer", {}},
        {0x40030005, "Calque_Allees", G::Variable, "Layer", {}},
        {0x40030006, "Calque_Courant", G::Variable, "Layer", {}},
        {0x40030008, "Calque_Enceinte", G::Variable, "Layer", {}},
        {0x40030009, "Calque_Raster", G::Variable, "Layer", {}},
        {0x4003000a, "CheminCimetiere", G::Variable, "String", {}},
        {0x4003000d, "gMap", G::Variable, "Object", {}},
        {0x4003000e, "ObjSel", G::Variable, "Features", {}},
        {0x4003000f, "ModeEdition", G::Variable, "Boolean", {}},
        {0x40030010, "DataSetTombes", G::Variable, "Dataset", {}},
        {0x40030012, "mintCurFrame", G::Variable, "Integer", {}},
        // Properties
        {0x68030006, "FontMax", G::Propriete, "Boolean", {}},
        {0x68030005, "Repertoire_Export", G::Propriete, "String", {}},
        {0x68030004, "RepCurseurs", G::Propriete, "String", {}},
        {0x68030003, "RepFicAnalyse", G::Propriete, "String", {}},
        {0x68030001, "ImageLocalisationTerminee", G::ProprieteLecture, "String", {}},
        {0x68030000, "GetNbEltsMemorises", G::ProprieteLecture, "Long", {}},
        // Methods
        {0x6003000e,
         "ImpCarte",
         G::Methode,
         "",
         {{"Format", "String"},
          {"sTitre", "String"},
          {"sCommentaires", "String"},
          {"TrameP", "Boolean"},
          {"sEchelle", "String"},
          {"ImprimeSelection", "Boolean"}}},
        {0x60030011,
         "AfficheInfosRapides",
         G::Methode,
         "",
         {{"oRs", "Recordset"}, {"oRsIn", "Recordset"}}},
        {0x60030039, "Sauve", G::Methode, "", {{"fSel", "Feature"}}},
        {0x60030047,
         "NouveauCimetiere",
         G::Methode,
         "",
         {{"sChemin", "String"},
          {"sNom", "String"},
          {"Longueur", "Double"},
          {"Largeur", "Double"}}},
        {0x60030076, "Creer_Combo_Section", G::Methode, "", {}},
        {0x60030079,
         "OuvreCimetiere",
         G::Methode,
         "",
         {{"chemin", "String"},
          {"Nouveau", "Boolean"},
          {"NomCimetiere", "String"},
          {"DroitEdition", "Boolean"}}},
        {0x60030080,
         "SitueTombes",
         G::Methode,
         "",
         {{"ListeId", "String"}, {"ModifieZoom", "Boolean"}}},
        {0x60030081,
         "Theme",
         G::Methode,
         "",
         {{"Rs", "Recordset"},
          {"sParam", "String"},
          {"Champ", "String"},
          {"ChampGeo", "String"},
          {"TitreTheme", "String"}}},
        {0x6003008d, "Action", G::Methode, "", {{"sLibelle", "String"}, {"sCode", "String"}}},
        {0x6003008e,
         "CheminPhoto",
         G::Methode,
         "String",
         {{"sID", "String"}, {"Ouvrir", "Boolean"}}},
        {0x6003008f, "DelPhoto", G::Methode, "Boolean", {{"sIdGCF", "String"}}},
        {0x60030090,
         "AddPhoto",
         G::Methode,
         "Boolean",
         {{"sIdGCF", "String"}, {"sName", "String"}}},
        {0x60030091, "GetPhotos", G::Methode, "Recordset", {}},
        {0x60030096, "GetTableauThemes", G::Methode, "Variant", {}},
        {0x60030097, "GetListeSections", G::Methode, "Recordset", {}},
        {0x60030098, "GetListeAllees", G::Methode, "Recordset", {{"sSection", "String"}}},
        {0x60030099,
         "ConfirmSupp",
         G::Methode,
         "",
         {{"ValeurConfirm", "Boolean"}, {"Message", "String"}}},
        {0x6003009a,
         "GetInfo",
         G::Methode,
         "Recordset",
         {{"sType", "String"},
          {"Param", "String"},
          {"Param2", "String"},
          {"Jauge", "Boolean"},
          {"MessageJauge", "String"}}},
        {0x6003009b,
         "SetEtiquette",
         G::Methode,
         "",
         {{"Rs", "Recordset"}, {"ChampEtiquette", "String"}}},
        {0x6003009c, "RAZEtiquette", G::Methode, "", {}},
        {0x6003009e, "MAJ", G::Methode, "", {{"Rs", "Recordset"}, {"TypeMaj", "String"}}},
        {0x6003009f, "JaugePlus", G::Methode, "", {}},
        {0x600300a0,
         "JaugeParam",
         G::Methode,
         "",
         {{"Min", "Long"}, {"Max", "Long"}, {"Message", "String"}, {"Titre", "String"}}},
        {0x600300a1, "JaugeFin", G::Methode, "", {}},
        {0x600300a2, "ChangeDroitEdition", G::Methode, "", {{"valeur", "Boolean"}}},
        {0x600300a3, "AjouteTheme", G::Methode, "", {{"Libelle", "String"}, {"Code", "String"}}},
        {0x600300a4, "ImageLocalisation", G::Methode, "", {{"sIdGCF", "String"}}},
        {0x600300af, "GetEltsMemorises", G::Methode, "Recordset", {}},
        // Events
        {1, "FicheTombe", G::Evenement, "", {{"NumTombe", "String"}}},
        {2, "ChargeTheme", G::Evenement, "", {{"Libelle", "String"}, {"Code", "String"}}},
        {3, "Synchro", G::Evenement, "", {{"Rs", "Recordset"}, {"TypeSynchro", "String"}}},
        {4, "AffecterUneConcession", G::Evenement, "", {{"IdTerrain", "String"}}},
        {5, "CreationDuneSection", G::Evenement, "", {{"NomSection", "String"}}},
        {6,
         "CreationDuneAllee",
         G::Evenement,
         "",
         {{"NomAllee", "String"}, {"NomSection", "Variant"}}},
        {7, "CreationDunTerrain", G::Evenement, "", {{"IdTerrain", "String"}}},
        {8, "SuppressionSection", G::Evenement, "", {{"NomSection", "String"}}},
        {9, "SuppressionAllee", G::Evenement, "", {{"NomAllee", "String"}}},
        {10, "SuppressionTerrain", G::Evenement, "", {{"IdTerrain", "String"}}},
        {11,
         "DemandeImpressionCarte",
         G::Evenement,
         "",
         {{"CheminCarte", "String"},
          {"Titre", "String"},
          {"Commentaires", "String"},
          {"Echelle", "String"}}},
        {12, "InfoTombes", G::Evenement, "", {{"IdTombe", "String"}}},
        {13, "Change", G::Evenement, "", {}},
    };
}

} // namespace

const std::vector<Membre>& membres() {
    static const std::vector<Membre> table = construit();
    return table;
}

const Membre* membre(qint32 dispid) {
    for (const Membre& m : membres())
        if (m.dispid == dispid && m.genre != Genre::Evenement)
            return &m;
    return nullptr;
}

const Membre* membre(const QString& nom, Genre genre) {
    for (const Membre& m : membres())
        if (m.genre == genre && nom.compare(QLatin1String(m.nom), Qt::CaseInsensitive) == 0)
            return &m;
    return nullptr;
}

} // namespace veldra::dispatch
