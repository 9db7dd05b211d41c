#include "reponses_concession.h"

#include "base/erreur.h"
#include "carto/model/layer.h"
#include "control/veldra.h"
#include "recordset/field_spec.h"
#include "registre.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTime>
#include <QVBoxLayout>
#include <memory>

namespace veldra::demo {

namespace {

void note(QPlainTextEdit& journal, const QString& texte) {
    journal.appendPlainText(QTime::currentTime().toString(QStringLiteral("HH:mm:ss")) +
                            QStringLiteral("  [registre] ") + texte);
}

// The keys the plan's plots bear: a concession among them is not free.
QSet<int> clesDuPlan(const Veldra& plan) {
    QSet<int> cles;
    if (plan.Calque_Tombe)
        plan.Calque_Tombe->forEachFeature([&](const carto::Feature& t) {
            if (const int id = t.attribute(u"IDGCF").toInt(); id != 0)
                cles.insert(id);
        });
    return cles;
}

// The dialog: one line per free concession; its key in the line's data.
class ChoixConcession : public QDialog {
public:
    ChoixConcession(const std::vector<ConcessionLibre>& libres, const QString& lieu,
                    QWidget* parent)
        : QDialog(parent) {
        setObjectName(QStringLiteral("ChoixConcession"));
        setWindowTitle(QStringLiteral("Affecter une concession"));
        auto* l = new QVBoxLayout(this);
        l->addWidget(new QLabel(
            QStringLiteral("Concession à affecter à l'emplacement %1 :").arg(lieu), this));
        liste_ = new QListWidget(this);
        liste_->setObjectName(QStringLiteral("ListeConcessions"));
        for (const ConcessionLibre& c : libres) {
            auto* ligne = new QListWidgetItem(
                QStringLiteral("%1 — %2").arg(c.numero, c.titulaire.isEmpty()
                                                            ? QStringLiteral("sans titulaire")
                                                            : c.titulaire),
                liste_);
            ligne->setData(Qt::UserRole, c.idgcf);
        }
        if (liste_->count() > 0)
            liste_->setCurrentRow(0);
        l->addWidget(liste_);
        auto* boutons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
        boutons->button(QDialogButtonBox::Ok)->setText(QStringLiteral("Affecter"));
        boutons->button(QDialogButtonBox::Ok)->setEnabled(liste_->count() > 0);
        boutons->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("Annuler"));
        connect(boutons, &QDialogButtonBox::accepted, this, &QDialog::accept);
        connect(boutons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        connect(liste_, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
        l->addWidget(boutons);
        resize(420, 360);
    }
    int choisie() const {
        const QListWidgetItem* ligne = liste_->currentItem();
        return ligne ? ligne->data(Qt::UserRole).toInt() : 0;
    }

private:
    QListWidget* liste_;
};

} // namespace

void brancheAffectation(Veldra& plan, Registre& registre, QPlainTextEdit& journal, QObject& lien,
                        MontreDialogue montre) {
    Veldra* p = &plan;
    Registre* r = &registre;
    QPlainTextEdit* j = &journal;
    // The selected plots' record that comes with the request: MAJ finds the plot by its
    // IdMapInfo.
    auto selection = std::make_shared<RecordsetPtr>();
    QObject::connect(&plan, &Veldra::Synchro, &lien, [selection](RecordsetPtr& rs, QString& type) {
        if (type == QLatin1String("U") && rs)
            *selection = rs->clone();
    });
    QObject::connect(
        &plan, &Veldra::AffecterUneConcession, &lien, [p, r, j, selection, montre](QString&) {
            RecordsetPtr rs = *selection;
            selection->reset();
            if (!rs || rs->recordCount() == 0)
                return;
            rs->moveFirst();
            const QString lieu =
                QStringLiteral("%1 / %2 / %3")
                    .arg(rs->value(u"Section").toString(), rs->value(u"Allee").toString(),
                         rs->value(u"Num").toString());
            ChoixConcession choix(r->concessionsLibres(clesDuPlan(*p)), lieu, p->window());
            if (montre(choix) != QDialog::Accepted || choix.choisie() == 0)
                return note(*j, QStringLiteral("aucune concession affectée"));
            const int id = choix.choisie();
            const QStringList titulaires = r->personnes(id).titulaires;
            // Only the first plot's record: one concession, one plot.
            RecordsetPtr une =
                recordset::fromFieldSpec(QStringLiteral("IdMapInfo N(10.0),IdGCF N(10.0),Nom C(32),"
                                                        "Longueur N(3.2),Largeur N(3.2)"));
            une->addNew();
            une->setValue(u"IdMapInfo", rs->value(u"IdMapInfo"));
            une->setValue(u"IdGCF", id);
            une->setValue(u"Nom",
                          titulaires.isEmpty() ? QString() : titulaires.first().section(u' ', 1));
            une->setValue(u"Longueur", rs->value(u"Longueur"));
            une->setValue(u"Largeur", rs->value(u"Largeur"));
            une->update();
            QString type = QStringLiteral("U");
            p->MAJ(une, type);
            r->placeConcession(id, rs->value(u"Section").toString(), rs->value(u"Allee").toString(),
                               rs->value(u"Num").toString());
            note(*j, QStringLiteral("concession %1 affectée à l'emplacement %2").arg(id).arg(lieu));
        });
}

} // namespace veldra::demo
