#include "output/bibliotheque.h"

#include "base/erreur.h"
#include "carto/model/update_access.h"
#include "context/calques.h"
#include "context/contexte.h"
#include "context/garde.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <iterator>

namespace veldra {

namespace {

struct Categorie {
    const char* code;
    const char* libelle;
};

constexpr Categorie kCategories[] = {{"ARBRES", "Arbre(s)"},
                                     {"BANCS", "Banc(s)"},
                                     {"POINTS D'EAU", "Point(s) d'Eau"},
                                     {"POTEAUX", "Poteau(x)"},
                                     {"POUBELLES", "Poubelle(s)"}};
constexpr int kNombreCategories = int(std::size(kCategories));

const QString kSurligne = QStringLiteral("background-color:#C0FFC0;");

// The engine opens map sets for update: a library in a folder the user cannot write is
// read from a copy, which lives as long as the library's view.
class CopieBibliotheque : public QObject {
public:
    explicit CopieBibliotheque(QObject* parent) : QObject(parent) {
        setObjectName(QStringLiteral("CopieBibliotheque"));
    }
    QTemporaryDir dossier;
};

QString cheminBibliotheque(const Contexte& ctx) {
    return ctx.dossierControle + QStringLiteral("/Bibli/Bibli.gst");
}

QString lisible(Contexte& ctx, const QString& chemin) {
    const QFileInfo info(chemin);
    if (!info.isFile())
        throw Erreur(err::PlanIllisible, QStringLiteral("le fichier « %1 » est introuvable.")
                                             .arg(QDir::toNativeSeparators(chemin)));
    if (info.isWritable())
        return chemin;
    auto* copie = new CopieBibliotheque(ctx.s.MapBibli);
    const QString vers = copie->dossier.filePath(QStringLiteral("Bibli.gst"));
    if (!copie->dossier.isValid() || !QFile::copy(chemin, vers) ||
        !QFile::setPermissions(vers, QFile::ReadOwner | QFile::WriteOwner)) {
        delete copie;
        throw Erreur(err::PlanIllisible, QStringLiteral("le fichier « %1 » ne peut pas être lu.")
                                             .arg(QDir::toNativeSeparators(chemin)));
    }
    return vers;
}

carto::Layer& calqueBibliotheque(Contexte& ctx) {
    if (!ouvreBibliotheque(ctx))
        throw Erreur(err::PlanIllisible, ctx.etat.bibliotheque.erreur);
    return *ctx.etat.bibliotheque.calque;
}

void montreParcours(Contexte& ctx, bool precedent, bool suivant) {
    ctx.s.Btn_EltBibliPrec->setVisible(precedent);
    ctx.s.Btn_EltBibliSuivant->setVisible(suivant);
}

// Frames the element with as much room again around it; a symbol reduced to a point gets
// half a metre.
void cadre(carto::MapView& vue, carto::Rect r) {
    constexpr double kMinimum = 0.5;
    if (r.width() < kMinimum && r.height() < kMinimum)
        r = r.expanded(kMinimum / 2);
    vue.setBounds(r);
    vue.setZoom(vue.zoom() / 0.5);
}

// A detached copy of the element, as the decor stores it.
carto::Feature copieDe(const carto::Feature& f) {
    switch (f.kind()) {
    case carto::FeatureKind::Region:
        return carto::Feature::region(f.parts(), f.style());
    case carto::FeatureKind::Line:
        return carto::Feature::line(f.parts(), f.style());
    case carto::FeatureKind::Symbol:
        return carto::Feature::symbol(f.point(0, 0), f.style());
    case carto::FeatureKind::Text:
        return carto::Feature::textAt(f.point(0, 0), f.text(), f.style());
    }
    throw Erreur(err::ObjetIncompatible, QStringLiteral("Élément de bibliothèque inconnu."));
}

void decorCourant(Contexte& ctx) {
    Surface& s = ctx.s;
    if (!estCalque(ctx.v.Calque_Courant, ctx.v.Calque_Decor)) {
        const int i = s.Combo_Calque->findText(ctx.v.Calque_Decor->name());
        if (i >= 0) {
            s.Combo_Calque->setCurrentIndex(i);
            appelle(ctx.crochets.changeCalqueCourant);
        }
        if (!s.CB_ModeEdition->isChecked())
            s.CB_ModeEdition->click();
    }
}

} // namespace

bool ouvreBibliotheque(Contexte& ctx) {
    EtatBibliotheque& b = ctx.etat.bibliotheque;
    if (b.ouverte)
        return b.calque != nullptr;
    b.ouverte = true;
    carto::Map& carte = ctx.s.MapBibli->map();
    try {
        carte.loadMapSet(lisible(ctx, cheminBibliotheque(ctx)));
        carto::Layer* elements = carte.layerCount() > 0 ? carte.layerAt(0) : nullptr;
        if (!elements || elements->fieldIndex(u"Categorie") < 0 ||
            elements->fieldIndex(u"Numero") < 0)
            throw Erreur(err::PlanIllisible,
                         QStringLiteral("ses éléments n'ont pas de catégorie et de numéro."));
        carte.addDataset(*elements);
        // The elements are looked at, never picked nor moved in the library itself.
        elements->setSelectable(false);
        elements->setEditable(false);
        b.calque = elements;
    } catch (const Erreur& e) {
        carte.removeAllLayers();
        b.erreur =
            QStringLiteral("La bibliothèque de symboles est indisponible : ") + e.description();
        ctx.s.Nb_EltsCategorie->setText(b.erreur);
        montreParcours(ctx, false, false);
        ctx.s.Btn_BiblioInserer->setEnabled(false);
        return false;
    }
    ctx.s.Btn_BiblioInserer->setEnabled(true);
    AfficheElementBibli(ctx, QString::fromUtf8(kCategories[0].libelle),
                        QString::fromUtf8(kCategories[0].code), 1);
    return true;
}

void oublieBibliotheque(Contexte& ctx) {
    ctx.etat.bibliotheque = EtatBibliotheque();
    ctx.s.MapBibli->map().removeAllLayers();
    qDeleteAll(ctx.s.MapBibli->findChildren<QObject*>(QStringLiteral("CopieBibliotheque"),
                                                      Qt::FindDirectChildrenOnly));
    for (QPushButton* b : ctx.s.Btn_Biblio_)
        b->setStyleSheet(QString());
    ctx.s.Nb_EltsCategorie->clear();
    // Opened again at once when the panel is on show.
    if (ctx.s.Panel_Bibli->isVisible())
        ouvreBibliotheque(ctx);
}

void AfficheElementBibli(Contexte& ctx, const QString& libelle, const QString& categorie,
                         qint16 numero) {
    EtatBibliotheque& b = ctx.etat.bibliotheque;
    carto::Layer& elements = calqueBibliotheque(ctx);
    b.libelle = libelle;
    b.categorie = categorie;
    b.numero = numero;
    elements.clearSelection();
    const carto::ReadAccess acces(elements);
    const carto::Features tous = elements.searchEqual(u"Categorie", categorie);
    b.nombre = qint16(std::min(tous.count(), 32767));
    carto::Feature element;
    for (const carto::Feature& f : tous)
        if (f.attribute(u"Numero").toLongLong() == numero) {
            element = f;
            break;
        }
    if (b.nombre == 0) {
        ctx.prompter().message(QStringLiteral("Resultat vide !"));
        return;
    }
    if (b.nombre > 1)
        montreParcours(ctx, numero != 1, numero < b.nombre);
    else
        montreParcours(ctx, false, false);
    ctx.s.Nb_EltsCategorie->setText(QString::number(b.nombre) + u' ' + libelle +
                                    QStringLiteral(" disponible(s) "));
    if (element.isValid()) {
        b.element = element.fid();
        cadre(*ctx.s.MapBibli, element.bounds());
    }
}

void choisitCategorie(Contexte& ctx, int index) {
    EtatBibliotheque& b = ctx.etat.bibliotheque;
    Surface& s = ctx.s;
    if (index < 0 || index >= kNombreCategories)
        return;
    if (b.boutonSurligne >= 0 && b.boutonSurligne < kNombreCategories)
        s.Btn_Biblio_[size_t(b.boutonSurligne)]->setStyleSheet(QString());
    s.Btn_Biblio_[size_t(index)]->setStyleSheet(kSurligne);
    b.boutonSurligne = index;
    AfficheElementBibli(ctx, QString::fromUtf8(kCategories[index].libelle),
                        QString::fromUtf8(kCategories[index].code), 1);
}

void insereElementBibli(Contexte& ctx) {
    const EtatBibliotheque& b = ctx.etat.bibliotheque;
    const carto::Layer& elements = calqueBibliotheque(ctx);
    if (b.element < 0 || !elements.hasFeature(b.element))
        throw Erreur(err::ObjetInconnu,
                     QStringLiteral("Aucun élément de la bibliothèque n'est affiché."));
    carto::Layer& decor = calqueOuvert(ctx.v.Calque_Decor, "Décor");
    if (!ctx.etat.droitEdition)
        throw Erreur(err::AppelIncorrect,
                     QStringLiteral("Le plan ne peut pas être modifié : le droit d'édition "
                                    "n'est pas accordé."));
    carto::Feature copie = copieDe(elements.feature(b.element));
    const carto::Point vise = ctx.s.Map1->centre(), centre = copie.centre();
    copie.offset(vise.x - centre.x, vise.y - centre.y);
    qint64 insere = -1;
    {
        carto::UpdateAccess acces(ctx.carte(),
                                  carto::UndoStep{QStringLiteral("Insérer un symbole")});
        insere = decor.addFeature(copie).fid();
        acces.commit();
    }
    decorCourant(ctx);
    decor.selectOnly(carto::Features(&decor, {insere}));
}

void connecteBibliotheque(Contexte& ctx) {
    Contexte* c = &ctx;
    Surface& s = ctx.s;
    for (int i = 0; i < kNombreCategories; ++i)
        QObject::connect(s.Btn_Biblio_[size_t(i)], &QPushButton::clicked, &ctx.controle,
                         garde(ctx, [c, i] { choisitCategorie(*c, i); }));
    QObject::connect(s.Btn_EltBibliPrec, &QToolButton::clicked, &ctx.controle, garde(ctx, [c] {
                         const EtatBibliotheque& b = c->etat.bibliotheque;
                         AfficheElementBibli(*c, b.libelle, b.categorie, qint16(b.numero - 1));
                     }));
    QObject::connect(s.Btn_EltBibliSuivant, &QToolButton::clicked, &ctx.controle, garde(ctx, [c] {
                         const EtatBibliotheque& b = c->etat.bibliotheque;
                         AfficheElementBibli(*c, b.libelle, b.categorie, qint16(b.numero + 1));
                     }));
    QObject::connect(s.Btn_BiblioInserer, &QPushButton::clicked, &ctx.controle,
                     garde(ctx, [c] { insereElementBibli(*c); }));
    QObject::connect(s.Btn_FermerBibli, &QToolButton::clicked, &ctx.controle, garde(ctx, [c] {
                         c->s.CB_Bibliotheque->setChecked(false);
                         c->s.Panel_Bibli->hide();
                     }));
    // The library is read the first time the panel shows; the panel is first shown in the
    // map's bottom right corner, then where the clerk leaves it.
    QObject::connect(
        s.CB_Bibliotheque, &QCheckBox::toggled, &ctx.controle, garde(ctx, [c](bool coche) {
            if (!coche)
                return;
            QFrame* panneau = c->s.Panel_Bibli;
            if (panneau->pos() == QPoint(0, 0)) {
                const QRect carte = c->s.Map1->geometry();
                panneau->move(std::max(carte.left(), carte.right() - panneau->width() - 12),
                              std::max(carte.top(), carte.bottom() - panneau->height() - 12));
            }
            panneau->raise();
            ouvreBibliotheque(*c);
        }));
}

} // namespace veldra
