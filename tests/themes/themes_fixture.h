#pragma once
// The control with a 60-plot plan open, and what the theme and photo tests ask of it: the
// plots that hold a concession key, host record sets pairing keys with values, the
// messages by title.
#include "control_fixture.h"
#include "recordset/field_spec.h"

#include <QCheckBox>
#include <QDialog>
#include <functional>

struct PlanThemes : ControleFixture {
    PlanThemes() { ouvre(plan(60)); }

    carto::Layer& tombes() { return *c->Calque_Tombe; }

    // The plots with a concession key, in FID order.
    std::vector<carto::Feature> tenues() {
        std::vector<carto::Feature> out;
        tombes().forEachFeature([&](const carto::Feature& t) {
            if (t.attribute(u"IDGCF").toInt() > 0)
                out.push_back(t);
        });
        return out;
    }
    int cle(const carto::Feature& t) const { return t.attribute(u"IDGCF").toInt(); }
    QString cleTexte(const carto::Feature& t) const { return QString::number(cle(t)); }

    // A host record set: "IdGCF N,<colonne> <type>", one record per pair.
    RecordsetPtr donnees(const std::vector<std::pair<QVariant, QVariant>>& lignes,
                         const QString& colonne = QStringLiteral("Valeur"),
                         const QString& type = QStringLiteral("C(40)")) {
        RecordsetPtr rs =
            recordset::fromFieldSpec(QStringLiteral("IdGCF N,") + colonne + u' ' + type);
        for (const auto& [id, valeur] : lignes) {
            rs->addNew();
            rs->setValue(u"IdGCF", id);
            rs->setValue(colonne, valeur);
            rs->update();
        }
        return rs;
    }

    void theme(RecordsetPtr& rs, QString sParam, QString champ = QStringLiteral("Valeur"),
               QString geo = QStringLiteral("IdGCF"),
               QString titre = QStringLiteral("Type de concession")) {
        c->Theme(rs, sParam, champ, geo, titre);
    }

    int titres(const QString& titre) const {
        int n = 0;
        for (const Message& m : messages)
            n += m.titre == titre ? 1 : 0;
        return n;
    }
    const Message* dernier() const { return messages.empty() ? nullptr : &messages.back(); }

    carto::Theme* themeAffiche() {
        carto::Dataset* d = c->contexte().carte().dataset(u"Theme");
        return d ? d->theme(u"Theme") : nullptr;
    }

    void edition() {
        QCheckBox* b = w<QCheckBox>("CB_ModeEdition");
        if (!b->isChecked())
            b->click();
    }

    // Every modal dialog goes to `f`; its answer is the dialog's result.
    void dialogues(std::function<void(QDialog&)> f) {
        c->setModalHook([f](QDialog& d) {
            f(d);
            return d.result();
        });
    }
};
