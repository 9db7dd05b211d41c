#include "analysis/rapport.h"

#include "base/cp1252.h"
#include "base/erreur.h"
#include "carto/model/layer.h"
#include "context/contexte.h"
#include "context/dossier_controle.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <cmath>

namespace veldra {

namespace {

int nombre(const carto::Layer* l) {
    return l ? l->featureCount() : 0;
}

const QString kBlanc = QStringLiteral(" ");

} // namespace

DescriptionPlan decritPlan(Contexte& ctx) {
    const VariablesPubliques& v = ctx.v;
    DescriptionPlan d;
    d.nom = ctx.s.L_NomCimetiere->text();
    d.sections = nombre(v.Calque_Sections);
    d.allees = nombre(v.Calque_Allees);
    d.terrains = nombre(v.Calque_Tombe);
    if (v.Calque_Enceinte && v.Calque_Enceinte->featureCount() > 0) {
        const carto::Rect r = v.Calque_Enceinte->bounds();
        d.largeurEnceinte = carto::distance({r.xmin, r.ymin}, {r.xmax, r.ymin});
        d.hauteurEnceinte = carto::distance({r.xmin, r.ymin}, {r.xmin, r.ymax});
    }
    d.elementsEnceinte = nombre(v.Calque_Enceinte);
    d.elementsDecor = nombre(v.Calque_Decor);
    d.elementsTexte = nombre(v.Calque_Texte);
    return d;
}

QString longueurRapport(double metres, QChar separateur) {
    // nearbyint rounds a half to the even neighbour in the default rounding mode.
    const double arrondi = std::nearbyint(metres * 10) / 10;
    QString texte = QString::number(arrondi, 'f', 1);
    if (texte.endsWith(QLatin1String(".0")))
        texte.chop(2);
    if (texte == QLatin1String("-0"))
        texte = QStringLiteral("0");
    return texte.replace(u'.', separateur);
}

QStringList lignesRapport(const DescriptionPlan& p, const Constats& c, bool detaillee,
                          QChar separateur) {
    const auto n = [](int v) { return QString::number(v); };
    QStringList l;
    l << QStringLiteral("Informations générales du plan") << QString(31, u'-') << kBlanc
      << QStringLiteral(" - Nom du cimetière : ") + p.nom
      << QStringLiteral(" - Nombre de sections : ") + n(p.sections)
      << QStringLiteral(" - Nombre d'allées : ") + n(p.allees)
      << QStringLiteral(" - Nombre de terrains : ") + n(p.terrains)
      << QStringLiteral(" - Dimension de l'enceinte : ") +
             longueurRapport(p.largeurEnceinte, separateur) + QStringLiteral(" x ") +
             longueurRapport(p.hauteurEnceinte, separateur) + QStringLiteral(" (mètres)")
      << kBlanc
      << QStringLiteral(" - Nombre d'éléments sur le calque enceinte : ") + n(p.elementsEnceinte)
      << QStringLiteral(" - Nombre d'éléments sur le calque Décor : ") + n(p.elementsDecor)
      << QStringLiteral(" - Nombre d'éléments sur le calque Texte : ") + n(p.elementsTexte)
      << kBlanc << QStringLiteral("Remarques") << QString(10, u'-') << kBlanc
      << QStringLiteral("-> Terrains") << kBlanc
      << QStringLiteral(" - Nombre de terrains sans numéro : ") + n(c.terrainsSansNumero)
      << QStringLiteral(" - Nombre de terrains n'appartenant à aucune allée : ") +
             n(c.terrainsSansAllee)
      << QStringLiteral(" - Nombre de terrains n'appartenant à aucune section : ") +
             n(c.terrainsSansSection)
      << QStringLiteral(" - Nombre de terrains qui ne sont pas entièrement dessinés dans "
                        "l'enceinte : ") +
             n(c.terrainsNonInclus)
      << QStringLiteral(" - Nombre de terrains qui se trouvent en dehors de l'enceinte : ") +
             n(c.terrainsExterieurs)
      << kBlanc << kBlanc << QStringLiteral("-> Sections") << kBlanc
      << QStringLiteral(" - Nombre de sections sans nom : ") + n(c.sectionsSansNom)
      << QStringLiteral(" - Nombre de sections qui se trouvent en dehors de l'enceinte : ") +
             n(c.sectionsExterieures)
      << QStringLiteral(" - Nombre de sections qui ne sont pas entièrement dessinées dans "
                        "l'enceinte : ") +
             n(c.sectionsNonIncluses) + QStringLiteral(" (faire un ajustage des contours)")
      << kBlanc << kBlanc << QStringLiteral("-> Allées") << kBlanc
      << QStringLiteral(" - Nombre d'allées sans nom : ") + n(c.alleesSansNom)
      << QStringLiteral(" - Nombre d'allées qui se trouvent en dehors de l'enceinte : ") +
             n(c.alleesExterieures)
      << QStringLiteral(" - Nombre d'allées qui ne sont pas entièrement dessinées dans "
                        "l'enceinte : ") +
             n(c.alleesNonIncluses) + QStringLiteral(" (faire un ajustage des contours)");
    if (detaillee)
        l << kBlanc << kBlanc << QStringLiteral("-> Contrôles complémentaires") << kBlanc
          << QStringLiteral(" - Nombre de terrains qui en chevauchent un autre : ") +
                 n(c.terrainsChevauchants)
          << QStringLiteral(" - Nombre de terrains dont le numéro est porté par un autre "
                            "terrain de la même allée : ") +
                 n(c.numerosRepetes);
    return l;
}

QString cheminRapport(const QString& repFicAnalyse, const QString& dossierControle) {
    const QString brut =
        repFicAnalyse.isEmpty() ? QStringLiteral("AnalysePlan.txt") : repFicAnalyse;
    const QFileInfo info(QDir::isRelativePath(brut) ? QDir(dossierControle).filePath(brut) : brut);
    const bool dossier = brut.endsWith(u'/');
    const QString nom = dossier ? QStringLiteral("AnalysePlan.txt") : info.fileName();
    const QString ou = dossier ? info.absoluteFilePath() : info.absolutePath();
    return dossierInscriptible(ou) + u'/' + nom;
}

void ecritRapport(const QString& chemin, const QStringList& lignes) {
    QByteArray octets;
    for (const QString& ligne : lignes)
        octets += toCp1252(ligne) + "\r\n";
    QSaveFile fichier(chemin);
    if (!fichier.open(QIODevice::WriteOnly) || fichier.write(octets) != octets.size() ||
        !fichier.commit())
        throw Erreur(err::AccesRefuse,
                     QStringLiteral("Le rapport « %1 » ne peut pas être écrit : %2")
                         .arg(QDir::toNativeSeparators(chemin), fichier.errorString()));
}

} // namespace veldra
