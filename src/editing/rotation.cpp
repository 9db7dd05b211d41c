#include "editing/rotation.h"

#include "carto/model/edit_commands.h"
#include "carto/model/layer.h"
#include "carto/model/map.h"
#include "carto/model/update_access.h"
#include "context/calques.h"
#include "context/contexte.h"
#include "context/nombres.h"
#include "context/sablier.h"
#include "editing/selection.h"

#include <cmath>

namespace veldra {

namespace {

constexpr double kPi = 3.14159265358979;

void remplace(Contexte& ctx, carto::Layer& calque, std::vector<carto::Feature> nouveaux,
              const QString& nom) {
    if (nouveaux.empty())
        return;
    ctx.carte().execute(std::make_unique<carto::ReplaceFeatures>(calque, std::move(nouveaux), nom));
}

} // namespace

QString VirguleP(const QString& texte) {
    QString t = texte;
    const qsizetype i = t.indexOf(u',');
    if (i >= 0)
        t[i] = u'.';
    return t;
}

carto::Point RPoint(carto::Point centre, carto::Point p, double theta) {
    const double dx = p.x - centre.x, dy = p.y - centre.y;
    if (dx == 0 && dy == 0)
        return p;
    const double c = std::cos(theta), s = std::sin(theta);
    return {centre.x + dx * c - dy * s, centre.y + dx * s + dy * c};
}

void tourneSelection(Contexte& ctx, double angle) {
    carto::Layer* courant = ctx.v.Calque_Courant;
    if (!courant)
        return;
    // Whole turns first, so that a huge angle keeps its precision.
    const double a = std::fmod(angle, 360.0);
    const double theta = -(a * kPi) / 180;
    std::vector<carto::Feature> tournes;
    for (carto::Feature f : selectionCourante(ctx)) {
        const carto::Point c = f.centre();
        carto::Parts parts = f.parts();
        for (carto::Part& part : parts)
            for (carto::Point& p : part)
                p = RPoint(c, p, theta);
        f.setParts(std::move(parts));
        if (f.kind() == carto::FeatureKind::Text) {
            carto::Style s = f.style();
            s.textRotation = std::fmod(s.textRotation - a, 360.0);
            f.setStyle(s);
        }
        tournes.push_back(std::move(f));
    }
    if (tournes.empty())
        return;
    carto::UpdateAccess acces(ctx.carte(), carto::UndoStep{QStringLiteral("Tourner")});
    remplace(ctx, *courant, std::move(tournes), QStringLiteral("Tourner"));
    acces.commit();
}

void tourneNumeros(Contexte& ctx, const QString& texte) {
    VariablesPubliques& v = ctx.v;
    if (!v.Calque_Tombe || !v.Calque_Numero)
        return;
    carto::Layer& tombes = *v.Calque_Tombe;
    carto::Layer& numeros = *v.Calque_Numero;
    const bool horizontal = texte == QLatin1String("H");
    const double a = horizontal ? 0 : nombreLu(VirguleP(texte));
    tombes.setKeyField(QStringLiteral("AngleNumero"));
    std::vector<carto::Feature> plots, labels;
    for (carto::Feature p : tombes.selection()) {
        const double ancien = p.keyValue().toDouble();
        const double nouvel = horizontal ? 0 : ancien + a;
        bool tourne = false;
        for (carto::Feature l : numeros.searchWithinFeature(p, carto::searchmode::CentreWithin)) {
            carto::Style s = l.style();
            s.textRotation = -nouvel;
            l.setStyle(s);
            labels.push_back(std::move(l));
            tourne = true;
        }
        if (tourne) {
            p.setKeyValue(nouvel);
            plots.push_back(std::move(p));
        }
    }
    carto::UpdateAccess acces(ctx.carte(), carto::UndoStep{QStringLiteral("Tourner les numéros")});
    remplace(ctx, numeros, std::move(labels), QStringLiteral("Tourner les numéros"));
    remplace(ctx, tombes, std::move(plots), QStringLiteral("Tourner les numéros"));
    acces.commit();
    numeros.setEditable(false);
}

void styleNumeros(Contexte& ctx, double taille, bool gras, carto::Colour couleur) {
    VariablesPubliques& v = ctx.v;
    if (!v.Calque_Tombe || !v.Calque_Numero || v.Calque_Numero->featureCount() == 0)
        return;
    const Sablier sablier;
    carto::Layer& tombes = *v.Calque_Tombe;
    carto::Layer& numeros = *v.Calque_Numero;
    tombes.setKeyField(QStringLiteral("Numero"));
    std::vector<carto::Feature> labels;
    tombes.forEachFeature([&](const carto::Feature& p) {
        const QString numero = p.keyValue().toString();
        const carto::Point centre = p.centre();
        for (carto::Feature l : numeros.searchWithinFeature(p, carto::searchmode::CentreWithin)) {
            if (l.text() != numero)
                continue;
            carto::Style s = l.style();
            s.textSize = taille;
            s.textBold = gras;
            s.textColor = couleur;
            l.setStyle(s);
            // The anchor is the middle of the text: centred on the plot's centre.
            l.setParts({{centre}});
            labels.push_back(std::move(l));
        }
    });
    carto::UpdateAccess acces(ctx.carte(), carto::UndoStep{QStringLiteral("Modifier les numéros")});
    remplace(ctx, numeros, std::move(labels), QStringLiteral("Modifier les numéros"));
    acces.commit();
}

} // namespace veldra
