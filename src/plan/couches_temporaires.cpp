#include "plan/couches_temporaires.h"

#include "base/erreur.h"
#include "context/contexte.h"

namespace veldra {

carto::Layer& ajouteCalqueTemporaire(carto::Map& map) {
    carto::LayerInfo info;
    info.type = carto::LayerInfoTemporary;
    info.addParameter(QStringLiteral("Name"), QStringLiteral("My_Temp_Layer"));
    info.addParameter(QStringLiteral("Fields"), carto::FieldList{{QStringLiteral("My_Field_Name"),
                                                                  carto::FieldType::Text, 20}});
    info.addParameter(QStringLiteral("TableStorageType"), QStringLiteral("MemTable"));
    return map.addLayer(info);
}

void creeCalqueTemporaire(Contexte& ctx) {
    carto::Layer& l = ajouteCalqueTemporaire(ctx.carte());
    l.setEditable(true);
    ctx.etat.calqueTemp = &l;
}

namespace {

void copie(carto::Map& vers, const carto::Layer& source) {
    carto::LayerInfo info;
    info.type = carto::LayerInfoTemporary;
    info.addParameter(QStringLiteral("Features"), source.allFeatures());
    info.addParameter(QStringLiteral("Name"), source.name());
    vers.addLayer(info);
}

} // namespace

void prepareCarteLocalisation(Contexte& ctx) {
    try {
        carto::Style rouge;
        rouge.regionColor = 255;
        rouge.regionBorderColor = 255;
        rouge.lineColor = 255;
        rouge.symbolColor = 255;
        ctx.etat.marqueur1 = rouge;
        rouge.regionPattern = carto::pattern::None;
        rouge.regionBorderWidth = 2;
        ctx.etat.marqueur2 = rouge;

        carto::MapView& loc = *ctx.s.MapLocalisation;
        loc.setBackgroundColor(ctx.s.Map1->backgroundColor());
        loc.map().removeAllLayers();
        if (!ctx.v.Calque_Decor || !ctx.v.Calque_Enceinte)
            throw Erreur(err::CoucheInconnue,
                         QStringLiteral("Le plan n'a pas de couche « Décor » ou « Enceinte »."));
        copie(loc.map(), *ctx.v.Calque_Decor);
        copie(loc.map(), *ctx.v.Calque_Enceinte);
        loc.setBounds(loc.map().requireLayer(ctx.v.Calque_Enceinte->name()).bounds());
        if (loc.zoom() != 0)
            loc.setZoom(loc.zoom() / 0.9);
        ajouteCalqueTemporaire(loc.map());
    } catch (const Erreur& e) {
        ctx.prompter().message(texteErreur(e.numero(), e.description(), QStringLiteral(":")));
    }
}

} // namespace veldra
