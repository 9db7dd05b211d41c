#include "context/parametres.h"

#include "base/erreur.h"
#include "context/contexte.h"
#include "recordset/value.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace veldra {

namespace {

const QString kSection = QStringLiteral("Paramètres");
const QString kTolerance = QStringLiteral("ToleranceAccrochage");
constexpr int kToleranceParDefaut = 8;

// The drawing aids' boxes and their keys.
std::vector<std::pair<QString, QCheckBox*>> aides(const Surface& s) {
    return {{QStringLiteral("Accrochage"), s.CB_Accrochage},
            {QStringLiteral("EviterChevauchements"), s.CB_EviterChevauchements},
            {QStringLiteral("Rangees"), s.CB_Rangees}};
}

QString lit(Contexte& ctx, const QString& cle, const QString& defaut) {
    QString valeur;
    ctx.ini().Get_Key_Of_Section(kSection, cle, defaut, valeur);
    return valeur;
}

// The numeric value of a text the way the settings are read: a number or an error.
double nombre(const QString& texte, const QString& cle) {
    bool ok = false;
    const double v = texte.trimmed().toDouble(&ok);
    if (!ok)
        throw Erreur(err::TypeIncompatible,
                     QStringLiteral("Incompatibilité de type (« %1 » = « %2 »)").arg(cle, texte));
    return v;
}

// Ticked as a click would, its click procedure run, even while the host keeps the control
// disabled until the plan is open.
void coche(QCheckBox* b) {
    if (b->isChecked())
        return;
    b->setChecked(true);
    emit b->clicked(true);
}

// The leading number of a text, as colours are stored ("" gives 0). A number that is no
// 0x00BBGGRR colour (negative, beyond 0xFFFFFF, a hand-edited mistake) gives none.
std::optional<carto::Colour> couleur(const QString& texte) {
    const double n = recordset::leadingNumber(texte);
    if (!(n >= 0 && n <= 0xFFFFFF))
        return std::nullopt;
    return carto::Colour(n);
}

} // namespace

void litParametres(Contexte& ctx) {
    struct Drapeau {
        bool& d;
        explicit Drapeau(bool& d) : d(d) { d = true; }
        ~Drapeau() { d = false; }
    } chargement(ctx.etat.chargement);
    if (!ctx.ini().Existe())
        return;
    Surface& s = ctx.s;
    if (nombre(lit(ctx, QStringLiteral("Bibliotheque"), QStringLiteral("0")),
               QStringLiteral("Bibliotheque")) == 1)
        coche(s.CB_Bibliotheque);
    if (nombre(lit(ctx, QStringLiteral("Situation"), QStringLiteral("0")),
               QStringLiteral("Situation")) == 1)
        coche(s.CB_PlanSitue);
    if (const auto fond = couleur(lit(ctx, QStringLiteral("CouleurDeFond"), QString()))) {
        QPalette p = s.PCouleur->palette();
        p.setColor(QPalette::Window, carto::toQColor(*fond));
        s.PCouleur->setPalette(p);
        s.Map1->setBackgroundColor(*fond);
    }
    if (lit(ctx, QStringLiteral("Calque_SectionsVisible"), QString()) == QLatin1String("1"))
        coche(s.C_AffSections);
    if (lit(ctx, QStringLiteral("Calque_AlleesVisible"), QString()) == QLatin1String("1"))
        coche(s.C_AffAllees);
    const bool infos =
        lit(ctx, QStringLiteral("Panel Infos"), QStringLiteral("1")) == QLatin1String("1");
    // The arrow button folds and unfolds the panel; only a change needs a click.
    if (infos != (ctx.etat.etatPanelInfos == QLatin1String("Visible")))
        emit s.Btn_Fleche->clicked();

    // The drawing aids, beyond the original: absent keys leave them off.
    for (const auto& [cle, boite] : aides(s))
        if (lit(ctx, cle, QStringLiteral("0")) == QLatin1String("1"))
            coche(boite);
    bool ok = false;
    const int tolerance = lit(ctx, kTolerance, QString()).trimmed().toInt(&ok);
    if (ok && tolerance >= s.SB_ToleranceAccrochage->minimum() &&
        tolerance <= s.SB_ToleranceAccrochage->maximum())
        s.SB_ToleranceAccrochage->setValue(tolerance);
}

void ecritParametres(Contexte& ctx) {
    if (ctx.etat.chargement)
        return;
    Surface& s = ctx.s;
    INI_FILE& ini = ctx.ini();
    auto ecrit = [&](const char* cle, const QString& valeur) {
        ini.Set_Key_Of_Section(kSection, QString::fromUtf8(cle), valeur);
    };
    auto visible = [](const carto::Layer* l) { return QString::number(l && l->visible() ? 1 : 0); };
    ecrit("Situation", QString::number(s.CB_PlanSitue->isChecked() ? 1 : 0));
    ecrit("Bibliotheque", QString::number(s.CB_Bibliotheque->isChecked() ? 1 : 0));
    ecrit("CouleurDeFond",
          QString::number(carto::fromQColor(s.PCouleur->palette().color(QPalette::Window))));
    ecrit("Calque_SectionsVisible", visible(ctx.v.Calque_Sections));
    ecrit("Calque_AlleesVisible", visible(ctx.v.Calque_Allees));
    ecrit("Panel Infos",
          QString::number(ctx.etat.etatPanelInfos == QLatin1String("Visible") ? 1 : 0));

    // The drawing aids: written once the clerk has used them, so that a file never touched
    // by them holds the six keys above and nothing else.
    const QStringList deja = ini.Existe() ? ini.Get_Keys_of_Section(kSection) : QStringList();
    const auto ecritAide = [&](const QString& cle, const QString& valeur, bool parDefaut) {
        const bool presente = std::any_of(deja.begin(), deja.end(), [&](const QString& k) {
            return k.compare(cle, Qt::CaseInsensitive) == 0;
        });
        if (!parDefaut || presente)
            ini.Set_Key_Of_Section(kSection, cle, valeur);
    };
    for (const auto& [cle, boite] : aides(s))
        ecritAide(cle, boite->isChecked() ? QStringLiteral("1") : QStringLiteral("0"),
                  !boite->isChecked());
    ecritAide(kTolerance, QString::number(s.SB_ToleranceAccrochage->value()),
              s.SB_ToleranceAccrochage->value() == kToleranceParDefaut);
}

} // namespace veldra
