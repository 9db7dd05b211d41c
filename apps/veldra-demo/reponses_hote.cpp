#include "reponses_hote.h"

#include "base/erreur.h"
#include "control/veldra.h"
#include "recordset/field_spec.h"
#include "registre.h"

#include <QDate>
#include <QDialog>
#include <QPlainTextEdit>
#include <QTime>
#include <QVBoxLayout>

namespace veldra::demo {

namespace {

void note(QPlainTextEdit& journal, const QString& texte) {
    journal.appendPlainText(QTime::currentTime().toString(QStringLiteral("HH:mm:ss")) +
                            QStringLiteral("  [registre] ") + texte);
}

// A window listing the records of the concessions asked for.
void montreFiches(QWidget* parent, const QStringList& lignes) {
    auto* fenetre = new QDialog(parent);
    fenetre->setObjectName(QStringLiteral("FicheConcessions"));
    fenetre->setAttribute(Qt::WA_DeleteOnClose);
    fenetre->setWindowTitle(QStringLiteral("Fiche des concessions"));
    auto* texte = new QPlainTextEdit(fenetre);
    texte->setReadOnly(true);
    texte->setPlainText(lignes.join(u'\n'));
    auto* l = new QVBoxLayout(fenetre);
    l->addWidget(texte);
    fenetre->resize(640, 240);
    fenetre->show();
}

} // namespace

void brancheRegistre(Veldra& plan, Registre& registre, QPlainTextEdit& journal, QObject& lien) {
    Veldra* p = &plan;
    Registre* r = &registre;
    QPlainTextEdit* j = &journal;
    QObject::connect(&plan, &Veldra::Synchro, &lien, [p, r, j](RecordsetPtr& rs, QString& type) {
        if (type != QLatin1String("A") || !rs)
            return;
        try {
            const int n = r->associe(*rs);
            note(*j, QStringLiteral("%1 emplacement(s) sur %2 associé(s) à une concession")
                         .arg(n)
                         .arg(rs->recordCount()));
            QString maj = QStringLiteral("A");
            p->MAJ(rs, maj);
            note(*j, QStringLiteral("plan mis à jour (MAJ \"A\")"));
        } catch (const Erreur& e) {
            note(*j, QStringLiteral("échec de la synchronisation : ") + e.message());
        }
    });
    QObject::connect(&plan, &Veldra::InfoTombes, &lien, [p, r, j](QString& id) {
        const Personnes gens = r->personnes(id.toInt());
        note(*j, QStringLiteral("concession %1 — titulaire(s) : %2 ; ayant(s) droit : %3 ; "
                                "défunt(s) : %4")
                     .arg(id, gens.titulaires.join(QStringLiteral(", ")),
                          gens.ayantsDroit.join(QStringLiteral(", ")),
                          gens.defunts.join(QStringLiteral(", "))));
        // The control's panel lists them too; a plot without a concession empties it.
        RecordsetPtr personnes = r->concessionnaires(id.toInt());
        RecordsetPtr inhumes = r->inhumes(id.toInt());
        p->AfficheInfosRapides(personnes, inhumes);
    });
    // The theme chosen in the control's list: its values from the register, sent back
    // with Theme inside the event.
    QObject::connect(&plan, &Veldra::ChargeTheme, &lien, [p, r, j](QString&, QString& code) {
        try {
            const std::optional<ThemeRegistre> t = r->theme(code, QDate::currentDate().year());
            if (!t) {
                note(*j, QStringLiteral("thème « %1 » inconnu du registre").arg(code));
                return;
            }
            RecordsetPtr rs = recordset::fromFieldSpec(u"IdGCF N,Valeur N");
            for (const auto& [id, valeur] : t->valeurs) {
                rs->addNew();
                rs->setValue(qsizetype(0), id);
                rs->setValue(qsizetype(1), valeur);
                rs->update();
            }
            QString sParam = t->sParam, champ = QStringLiteral("Valeur"),
                    geo = QStringLiteral("IdGCF"), titre = t->titre;
            note(*j, QStringLiteral("thème « %1 » : %2 concession(s)")
                         .arg(titre)
                         .arg(rs->recordCount()));
            p->Theme(rs, sParam, champ, geo, titre);
        } catch (const Erreur& e) {
            note(*j, QStringLiteral("échec du thème : ") + e.message());
        }
    });
    QObject::connect(&plan, &Veldra::FicheTombe, &lien, [p, r](QString& ids) {
        QList<int> liste;
        for (const QString& id : ids.split(u'@', Qt::SkipEmptyParts))
            liste << id.toInt();
        montreFiches(p->window(), r->fiches(liste));
    });
}

} // namespace veldra::demo
