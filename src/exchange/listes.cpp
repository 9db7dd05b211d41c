#include "exchange/listes.h"

#include "base/erreur.h"
#include "carto/model/update_access.h"
#include "context/calques.h"
#include "context/contexte.h"
#include "context/disposition.h"
#include "context/garde.h"
#include "exchange/collecte.h"
#include "recordset/field_spec.h"

#include <QComboBox>
#include <QLineEdit>
#include <QTimer>

namespace veldra {

namespace {

const QString kToutes = QStringLiteral("Toutes les sections");

// The working record set goes back closed; the host gets its copy.
RecordsetPtr rendu(const RecordsetPtr& rs) {
    RecordsetPtr copie = rs->clone();
    rs->close();
    return copie;
}

} // namespace

RecordsetPtr GetListeSections(Contexte& ctx) {
    carto::Layer& sections = calqueOuvert(ctx.v.Calque_Sections, "Sections");
    const RecordsetPtr rs = recordset::fromFieldSpec(QString::fromLatin1(kSpecSections));
    const qsizetype nom = rs->fieldIndex(u"Nom");
    const carto::ReadAccess lecture(sections);
    sections.forEachFeature([&](const carto::Feature& s) {
        rs->addNew();
        rs->setValue(nom, s.attribute(u"Nom"));
        rs->update();
    });
    return rendu(rs);
}

RecordsetPtr GetListeAllees(Contexte& ctx, const QString& section) {
    carto::Layer& allees = calqueOuvert(ctx.v.Calque_Allees, "Allées");
    const RecordsetPtr rs = recordset::fromFieldSpec(QString::fromLatin1(kSpecAllees));
    const qsizetype nom = rs->fieldIndex(u"Nom");
    const qsizetype colonneSection = rs->fieldIndex(u"Section");
    const auto ajoute = [&](const carto::Feature& a, const QString& sa) {
        rs->addNew();
        rs->setValue(nom, a.attribute(u"Nom"));
        rs->setValue(colonneSection, sa);
        rs->update();
    };
    const carto::ReadAccess lecture(allees);
    if (section.isEmpty()) {
        allees.forEachFeature(
            [&](const carto::Feature& a) { ajoute(a, SectionDuTerrain(ctx, a)); });
        return rendu(rs);
    }
    carto::Layer& sections = calqueOuvert(ctx.v.Calque_Sections, "Sections");
    carto::Feature trouvee;
    {
        const carto::ReadAccess lectureSections(sections);
        const carto::Features trouves = sections.searchEqual(u"Nom", section);
        if (trouves.isEmpty())
            throw Erreur(err::ObjetInconnu,
                         QStringLiteral("La section « %1 » n'existe pas.").arg(section));
        trouvee = trouves.at(0);
    }
    // Alleys within the section's rectangle, kept when their centre is in a section of
    // that name.
    const QString nomTrouve = trouvee.attribute(u"Nom").toString();
    for (const carto::Feature& a :
         allees.searchWithinRectangle(trouvee.bounds(), carto::searchmode::EntirelyWithin)) {
        const QString sa = SectionDuTerrain(ctx, a);
        if (sa == nomTrouve)
            ajoute(a, sa);
    }
    return rendu(rs);
}

void Creer_Combo_Section(Contexte& ctx) {
    QComboBox& combo = *ctx.s.Combo_section;
    const QSignalBlocker bloque(combo);
    combo.clear();
    carto::Layer* sections = ctx.v.Calque_Sections;
    if (!sections)
        return;
    const qint32 n = sections->featureCount();
    if (n == 0)
        return;
    if (n >= 2)
        combo.addItem(kToutes);
    const carto::ReadAccess lecture(*sections);
    sections->forEachFeature([&](const carto::Feature& s) {
        const QString nom = s.attribute(u"Nom").toString();
        if (!nom.isEmpty())
            combo.addItem(nom);
    });
    combo.setCurrentIndex(combo.count() > 0 ? 0 : -1);
    // Wide enough for its longest entry; the search row follows.
    combo.adjustSize();
    dispose(ctx);
}

void choisitSection(Contexte& ctx, const QString& texte) {
    ctx.s.TB_SaisieEmplacement->clear();
    carto::Layer& sections = calqueOuvert(ctx.v.Calque_Sections, "Sections");
    carto::MapView& carte = *ctx.s.Map1;
    if (texte != kToutes) {
        if (sections.findField().isEmpty())
            sections.setFindField(QStringLiteral("Nom"));
        const carto::FindResult r = sections.find(texte);
        if (r.exact()) {
            carte.setBounds(r.bounds);
            return;
        }
    }
    carte.setBounds(sections.bounds());
}

void connecteListes(Contexte& ctx) {
    Contexte* c = &ctx;
    QComboBox* combo = ctx.s.Combo_section;
    QObject::connect(combo, &QComboBox::activated, &ctx.controle, garde(ctx, [c, combo](int index) {
                         choisitSection(*c, combo->itemText(index));
                     }));
    // Edits of sections reach the list once the edit is over, never in the middle of it.
    auto* differe = new QTimer(&ctx.controle);
    differe->setSingleShot(true);
    differe->setInterval(0);
    QObject::connect(differe, &QTimer::timeout, &ctx.controle,
                     garde(ctx, [c] { Creer_Combo_Section(*c); }));
    QObject::connect(&ctx.carte(), &carto::Map::changed, differe,
                     [c, differe](const carto::Change& ch) {
                         if (ch.layer && ch.layer == c->v.Calque_Sections && ch.touchesFeatures())
                             differe->start();
                     });
}

} // namespace veldra
