// Late binding: a member of the dispatch table called by its identifier, its by-reference
// arguments written back into the caller's list.
#include "base/erreur.h"
#include "control/dispatch.h"
#include "control/types_automation.h"
#include "control/veldra.h"

#include <functional>
#include <unordered_map>

namespace veldra {

namespace {

using Appel = std::function<QVariant(Veldra&, QVariantList&)>;

void attendus(const QVariantList& args, qsizetype n, const char* nom) {
    if (args.size() != n)
        throw Erreur(450, QStringLiteral("Nombre d'arguments incorrect pour %1 : %2 attendu(s).")
                              .arg(QString::fromUtf8(nom))
                              .arg(n));
}

// A variable or a property: no argument reads it, one argument writes it.
template <typename T, typename Lire, typename Ecrire> Appel accesseur(Lire lire, Ecrire ecrire) {
    return [lire, ecrire](Veldra& c, QVariantList& args) -> QVariant {
        if (args.isEmpty())
            return QVariant::fromValue(lire(c));
        attendus(args, 1, "une propriété");
        ecrire(c, args[0].value<T>());
        return {};
    };
}

template <typename T> Appel variable(T VariablesPubliques::*membre) {
    return accesseur<T>([membre](Veldra& c) { return c.*membre; },
                        [membre](Veldra& c, const T& v) { c.*membre = v; });
}

template <typename T, typename Lire> Appel lecture(Lire lire) {
    return [lire](Veldra& c, QVariantList& args) -> QVariant {
        if (!args.isEmpty())
            throw Erreur(383, QStringLiteral("Propriété en lecture seule."));
        return QVariant::fromValue(T(lire(c)));
    };
}

const std::unordered_map<qint32, Appel>& appels() {
    static const std::unordered_map<qint32, Appel> table = {
        {0x40030000, variable(&VariablesPubliques::Calque_Tombe)},
        {0x40030001, variable(&VariablesPubliques::Calque_Decor)},
        {0x40030002, variable(&VariablesPubliques::Calque_Numero)},
        {0x40030003, variable(&VariablesPubliques::Calque_Texte)},
        {0x40030004, variable(&VariablesPubliques::Calque_Sections)},
        {0x40030005, variable(&VariablesPubliques::Calque_Allees)},
        {0x40030006, variable(&VariablesPubliques::Calque_Courant)},
        {0x40030008, variable(&VariablesPubliques::Calque_Enceinte)},
        {0x40030009, variable(&VariablesPubliques::Calque_Raster)},
        {0x4003000a, variable(&VariablesPubliques::CheminCimetiere)},
        {0x4003000d, variable(&VariablesPubliques::gMap)},
        {0x4003000e, variable(&VariablesPubliques::ObjSel)},
        {0x4003000f, variable(&VariablesPubliques::ModeEdition)},
        {0x40030010, variable(&VariablesPubliques::DataSetTombes)},
        {0x40030012, variable(&VariablesPubliques::mintCurFrame)},
        {0x68030006, accesseur<bool>([](Veldra& c) { return c.FontMax(); },
                                     [](Veldra& c, bool v) { c.setFontMax(v); })},
        {0x68030005,
         accesseur<QString>([](Veldra& c) { return c.Repertoire_Export(); },
                            [](Veldra& c, const QString& v) { c.setRepertoire_Export(v); })},
        {0x68030004, accesseur<QString>([](Veldra& c) { return c.RepCurseurs(); },
                                        [](Veldra& c, const QString& v) { c.setRepCurseurs(v); })},
        {0x68030003,
         accesseur<QString>([](Veldra& c) { return c.RepFicAnalyse(); },
                            [](Veldra& c, const QString& v) { c.setRepFicAnalyse(v); })},
        {0x68030001, lecture<QString>([](Veldra& c) { return c.ImageLocalisationTerminee(); })},
        {0x68030000, lecture<qint32>([](Veldra& c) { return c.GetNbEltsMemorises(); })},
        {0x60030079,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 4, "OuvreCimetiere");
             QString chemin = a[0].toString(), nom = a[2].toString();
             bool nouveau = a[1].toBool(), droit = a[3].toBool();
             c.OuvreCimetiere(chemin, nouveau, nom, droit);
             a = {chemin, nouveau, nom, droit};
             return {};
         }},
        {0x60030047,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 4, "NouveauCimetiere");
             QString chemin = a[0].toString(), nom = a[1].toString();
             double longueur = a[2].toDouble(), largeur = a[3].toDouble();
             c.NouveauCimetiere(chemin, nom, longueur, largeur);
             a = {chemin, nom, longueur, largeur};
             return {};
         }},
        {0x60030099,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 2, "ConfirmSupp");
             bool valeur = a[0].toBool();
             QString message = a[1].toString();
             c.ConfirmSupp(valeur, message);
             a = {valeur, message};
             return {};
         }},
        {0x6003009f,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 0, "JaugePlus");
             c.JaugePlus();
             return {};
         }},
        {0x600300a0,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 4, "JaugeParam");
             qint32 min = a[0].toInt(), max = a[1].toInt();
             QString message = a[2].toString(), titre = a[3].toString();
             c.JaugeParam(min, max, message, titre);
             a = {min, max, message, titre};
             return {};
         }},
        {0x600300a1,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 0, "JaugeFin");
             c.JaugeFin();
             return {};
         }},
        {0x6003009a,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 5, "GetInfo");
             QString type = a[0].toString(), p1 = a[1].toString(), p2 = a[2].toString(),
                     message = a[4].toString();
             bool jauge = a[3].toBool();
             RecordsetPtr rs = c.GetInfo(type, p1, p2, jauge, message);
             a = {type, p1, p2, jauge, message};
             return QVariant::fromValue(rs);
         }},
        {0x6003009e,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 2, "MAJ");
             RecordsetPtr rs = a[0].value<RecordsetPtr>();
             QString type = a[1].toString();
             c.MAJ(rs, type);
             a = {QVariant::fromValue(rs), type};
             return {};
         }},
        {0x60030039,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 1, "Sauve");
             carto::Feature f = a[0].value<carto::Feature>();
             c.Sauve(f);
             return {};
         }},
        {0x60030097,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 0, "GetListeSections");
             return QVariant::fromValue(c.GetListeSections());
         }},
        {0x60030098,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 1, "GetListeAllees");
             QString section = a[0].toString();
             RecordsetPtr rs = c.GetListeAllees(section);
             a[0] = section;
             return QVariant::fromValue(rs);
         }},
        {0x60030076,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 0, "Creer_Combo_Section");
             c.Creer_Combo_Section();
             return {};
         }},
        {0x60030011,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 2, "AfficheInfosRapides");
             RecordsetPtr personnes = a[0].value<RecordsetPtr>();
             RecordsetPtr inhumes = a[1].value<RecordsetPtr>();
             c.AfficheInfosRapides(personnes, inhumes);
             a = {QVariant::fromValue(personnes), QVariant::fromValue(inhumes)};
             return {};
         }},
        {0x60030080,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 2, "SitueTombes");
             QString liste = a[0].toString();
             bool zoom = a[1].toBool();
             c.SitueTombes(liste, zoom);
             a = {liste, zoom};
             return {};
         }},
        {0x600300af,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 0, "GetEltsMemorises");
             return QVariant::fromValue(c.GetEltsMemorises());
         }},
        {0x600300a3,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 2, "AjouteTheme");
             QString libelle = a[0].toString(), code = a[1].toString();
             c.AjouteTheme(libelle, code);
             a = {libelle, code};
             return {};
         }},
        {0x60030096,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 0, "GetTableauThemes");
             return c.GetTableauThemes();
         }},
        {0x6003008d,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 2, "Action");
             QString libelle = a[0].toString(), code = a[1].toString();
             c.Action(libelle, code);
             a = {libelle, code};
             return {};
         }},
        {0x60030081,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 5, "Theme");
             RecordsetPtr rs = a[0].value<RecordsetPtr>();
             QString param = a[1].toString(), champ = a[2].toString(), geo = a[3].toString(),
                     titre = a[4].toString();
             c.Theme(rs, param, champ, geo, titre);
             a = {QVariant::fromValue(rs), param, champ, geo, titre};
             return {};
         }},
        {0x60030090,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 2, "AddPhoto");
             QString id = a[0].toString(), nom = a[1].toString();
             const bool fait = c.AddPhoto(id, nom);
             a = {id, nom};
             return fait;
         }},
        {0x6003008f,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 1, "DelPhoto");
             QString id = a[0].toString();
             const bool fait = c.DelPhoto(id);
             a[0] = id;
             return fait;
         }},
        {0x6003008e,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 2, "CheminPhoto");
             QString id = a[0].toString();
             bool ouvrir = a[1].toBool();
             const QString chemin = c.CheminPhoto(id, ouvrir);
             a = {id, ouvrir};
             return chemin;
         }},
        {0x60030091,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 0, "GetPhotos");
             return QVariant::fromValue(c.GetPhotos());
         }},
        {0x6003000e,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 6, "ImpCarte");
             QString format = a[0].toString(), titre = a[1].toString(),
                     commentaires = a[2].toString(), echelle = a[4].toString();
             bool trame = a[3].toBool(), selection = a[5].toBool();
             c.ImpCarte(format, titre, commentaires, trame, echelle, selection);
             a = {format, titre, commentaires, trame, echelle, selection};
             return {};
         }},
        {0x6003009b,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 2, "SetEtiquette");
             RecordsetPtr rs = a[0].value<RecordsetPtr>();
             QString champ = a[1].toString();
             c.SetEtiquette(rs, champ);
             a = {QVariant::fromValue(rs), champ};
             return {};
         }},
        {0x6003009c,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 0, "RAZEtiquette");
             c.RAZEtiquette();
             return {};
         }},
        {0x600300a4,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 1, "ImageLocalisation");
             QString id = a[0].toString();
             c.ImageLocalisation(id);
             a[0] = id;
             return {};
         }},
        {0x600300a2,
         [](Veldra& c, QVariantList& a) -> QVariant {
             attendus(a, 1, "ChangeDroitEdition");
             bool valeur = a[0].toBool();
             c.ChangeDroitEdition(valeur);
             a[0] = valeur;
             return {};
         }},
    };
    return table;
}

} // namespace

QVariant Veldra::Invoke(qint32 dispid, QVariantList& args) {
    const dispatch::Membre* m = dispatch::membre(dispid);
    const auto appel = appels().find(dispid);
    if (!m || appel == appels().end())
        throw Erreur(438, QStringLiteral("Propriété ou méthode non gérée par cet objet (0x%1).")
                              .arg(quint32(dispid), 8, 16, QLatin1Char('0')));
    return appel->second(*this, args);
}

} // namespace veldra
