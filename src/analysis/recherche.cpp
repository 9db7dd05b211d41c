#include "analysis/recherche.h"

#include "base/erreur.h"
#include "carto/model/layer.h"
#include "carto/model/update_access.h"
#include "context/calques.h"
#include "context/contexte.h"
#include "context/garde.h"

#include <QCompleter>
#include <QEvent>
#include <QSet>
#include <QStringListModel>

namespace veldra {

namespace {

const QString kToutes = QString::fromUtf8(kToutesLesSections);
const QString kUnique = QString::fromUtf8(kSectionUnique);
const QString kTitreIncorrect = QStringLiteral("Saisie Incorrecte");
const QString kTitreNonTrouve = QStringLiteral("Emplacement non trouvé");

// Blanks only, as the clerk's keyboard types them; a tab is not a blank.
bool videSansBlancs(const QString& t) {
    for (const QChar c : t)
        if (c != u' ')
            return false;
    return true;
}

bool toutesSections(const QString& s) {
    // A plan without sections has nothing to choose: its plots are searched all together.
    return s == kToutes || s == kUnique || s.isEmpty();
}

// The section named in the drop-down, through the sections layer's find facility; an
// invalid feature when it names none.
carto::Feature sectionNommee(Contexte& ctx, const QString& nom) {
    carto::Layer* sections = ctx.v.Calque_Sections;
    if (!sections)
        return {};
    if (sections->findField().isEmpty())
        sections->setFindField(QStringLiteral("Nom"));
    return sections->find(nom).feature;
}

// 2 before 12 before 12A before 120, then texts: the order a clerk counts plots in.
bool avant(const QString& a, const QString& b) {
    const auto tete = [](const QString& s) {
        qsizetype i = 0;
        while (i < s.size() && s[i] >= u'0' && s[i] <= u'9' && i < 18)
            ++i;
        return std::pair{i == 0 ? -1LL : s.left(i).toLongLong(), s.mid(i)};
    };
    const auto [na, ra] = tete(a);
    const auto [nb, rb] = tete(b);
    if (na != nb)
        return (na < 0) != (nb < 0) ? nb < 0 : na < nb;
    return ra != rb ? ra < rb : a < b;
}

void dit(Contexte& ctx, const QString& texte, const QString& titre) {
    ctx.prompter().message(texte, boutons::Ok, titre);
}

// Upper case when the number box loses the focus; the completion list brought up to date
// when it takes it.
class AideSaisie : public QObject {
public:
    AideSaisie(Contexte& ctx) : QObject(&ctx.controle), ctx_(ctx) {
        QLineEdit* boite = ctx.s.TB_SaisieEmplacement;
        boite->installEventFilter(this);
        const auto perimee = [this] { aJour_ = false; };
        QObject::connect(ctx.s.Combo_section, &QComboBox::currentTextChanged, this, perimee);
        QObject::connect(&ctx.carte(), &carto::Map::changed, this, [this](const carto::Change& c) {
            if (c.touchesFeatures() && c.layer &&
                (estCalque(c.layer, ctx_.v.Calque_Tombe) ||
                 estCalque(c.layer, ctx_.v.Calque_Sections)))
                aJour_ = false;
        });
        QObject::connect(&ctx.carte(), &carto::Map::layersChanged, this, perimee);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == ctx_.s.TB_SaisieEmplacement) {
            if (event->type() == QEvent::FocusOut)
                sousGarde(ctx_, [this] { majuscules(); });
            else if (event->type() == QEvent::FocusIn)
                sousGarde(ctx_, [this] { completion(); });
        }
        return false;
    }

private:
    void majuscules() {
        QLineEdit& boite = *ctx_.s.TB_SaisieEmplacement;
        const QString haut = boite.text().toUpper();
        if (haut != boite.text())
            boite.setText(haut);
    }

    void completion() {
        QLineEdit& boite = *ctx_.s.TB_SaisieEmplacement;
        if (!ctx_.etat.completionNumeros) {
            if (boite.completer())
                boite.setCompleter(nullptr);
            return;
        }
        if (!boite.completer()) {
            auto* c = new QCompleter(new QStringListModel(&boite), &boite);
            c->setCaseSensitivity(Qt::CaseInsensitive);
            c->setCompletionMode(QCompleter::PopupCompletion);
            c->setMaxVisibleItems(12);
            boite.setCompleter(c);
            aJour_ = false;
        }
        if (aJour_)
            return;
        auto* modele = static_cast<QStringListModel*>(boite.completer()->model());
        modele->setStringList(numerosProposes(ctx_, ctx_.s.Combo_section->currentText()));
        aJour_ = true;
    }

    Contexte& ctx_;
    bool aJour_ = false;
};

} // namespace

carto::Features terrainsCorrespondants(const carto::Layer& tombes, const QString& saisie) {
    if (!saisie.endsWith(u'*')) {
        // The index finds the candidates (it ignores case); the number is then compared
        // exactly.
        const carto::Features candidats = tombes.searchEqual(u"Numero", saisie);
        std::vector<qint64> exacts;
        for (const carto::Feature& t : candidats)
            if (t.attribute(u"Numero").toString() == saisie)
                exacts.push_back(t.fid());
        return carto::Features(&tombes, std::move(exacts));
    }
    const QString debut = saisie.chopped(1);
    const qsizetype colonne = tombes.fieldIndex(u"Numero");
    if (colonne < 0)
        throw Erreur(err::ChampInconnu,
                     QStringLiteral("La colonne « Numero » est introuvable dans la couche « %1 ».")
                         .arg(tombes.name()));
    std::vector<qint64> trouves;
    tombes.forEachFeature([&](const carto::Feature& t) {
        const QString numero = t.attributeAt(colonne).toString();
        if (numero.startsWith(debut))
            trouves.push_back(t.fid());
    });
    return carto::Features(&tombes, std::move(trouves));
}

void situeResultat(Contexte& ctx, const carto::Features& resultat, int facteur) {
    carto::Layer& tombes = calqueOuvert(ctx.v.Calque_Tombe, "Tombes");
    // One change of selection for the whole result, whatever its size.
    tombes.selectOnly(resultat);
    carto::MapView& carte = *ctx.s.Map1;
    carte.setBounds(resultat.bounds());
    carte.setZoom(carte.zoom() / (facteur == 10 ? 0.1 : 0.5));
}

void rechercheEmplacement(Contexte& ctx) {
    const QString s = ctx.s.Combo_section->currentText();
    const QString t = ctx.s.TB_SaisieEmplacement->text();
    if (videSansBlancs(t)) {
        dit(ctx, QStringLiteral("Vous devez saisir un numéro d'emplacement !"), kTitreIncorrect);
        return;
    }
    carto::Layer& tombes = calqueOuvert(ctx.v.Calque_Tombe, "Tombes");
    if (!toutesSections(s)) {
        const carto::Feature section = sectionNommee(ctx, s);
        carto::Features resultat;
        {
            const carto::ReadAccess lecture(tombes);
            resultat = terrainsCorrespondants(tombes, t);
        }
        resultat.intersect(
            section.isValid() ? tombes.searchWithinFeature(section, carto::searchmode::CentreWithin)
                              : carto::Features(&tombes));
        if (resultat.isEmpty()) {
            dit(ctx,
                QStringLiteral("Aucun emplacement ne porte le numéro '") + t +
                    QStringLiteral("' dans la section: ") + s,
                kTitreNonTrouve);
            return;
        }
        situeResultat(ctx, resultat, 10);
        return;
    }
    carto::Features resultat;
    {
        const carto::ReadAccess lecture(tombes);
        resultat = terrainsCorrespondants(tombes, t);
    }
    if (resultat.isEmpty()) {
        dit(ctx, QStringLiteral("Aucun emplacement ne porte le numéro '") + t + u'\'',
            kTitreNonTrouve);
        return;
    }
    situeResultat(ctx, resultat, s == kUnique || resultat.count() == 1 ? 10 : 2);
}

QStringList numerosProposes(Contexte& ctx, const QString& section) {
    carto::Layer* tombes = ctx.v.Calque_Tombe;
    if (!tombes || tombes->fieldIndex(u"Numero") < 0)
        return {};
    QSet<QString> vus;
    QStringList numeros;
    const auto ajoute = [&](const carto::Feature& t) {
        const QString n = t.attribute(u"Numero").toString();
        if (!n.isEmpty() && !vus.contains(n)) {
            vus.insert(n);
            numeros << n;
        }
    };
    if (toutesSections(section)) {
        tombes->forEachFeature(ajoute);
    } else if (const carto::Feature s = sectionNommee(ctx, section); s.isValid()) {
        for (const carto::Feature& t :
             tombes->searchWithinFeature(s, carto::searchmode::CentreWithin))
            ajoute(t);
    }
    std::sort(numeros.begin(), numeros.end(), avant);
    return numeros;
}

void connecteRecherche(Contexte& ctx) {
    Contexte* c = &ctx;
    QObject::connect(ctx.s.Btn_Rechercher, &QPushButton::clicked, &ctx.controle,
                     garde(ctx, [c] { rechercheEmplacement(*c); }));
    new AideSaisie(ctx);
}

} // namespace veldra
