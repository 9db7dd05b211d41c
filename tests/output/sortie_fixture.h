#pragma once
// The control with a 60-plot plan open, the printed-map requests it raises, and what the
// output tests ask of it: plots that hold a concession key, modal dialogs answered by the
// test, the export folder.
#include "control_fixture.h"
#include "recordset/field_spec.h"

#include <QCheckBox>
#include <QDialog>
#include <QImage>
#include <functional>

struct Demande {
    QString chemin, titre, commentaires, echelle;
};

struct Sortie : ControleFixture {
    std::vector<Demande> demandes;

    explicit Sortie(bool avecPlan = true) {
        if (avecPlan)
            ouvre(plan(60));
        QObject::connect(
            c.get(), &veldra::Veldra::DemandeImpressionCarte, c.get(),
            [this](QString& chemin, QString& titre, QString& commentaires, QString& echelle) {
                demandes.push_back({chemin, titre, commentaires, echelle});
            });
    }

    carto::MapView& vue() { return *c->surface().Map1; }
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
    static QString cle(const carto::Feature& t) {
        return QString::number(t.attribute(u"IDGCF").toInt());
    }

    // Every modal dialog goes to `f`; its answer is the dialog's result.
    void dialogues(std::function<void(QDialog&)> f) {
        c->setModalHook([f](QDialog& d) {
            f(d);
            return d.result();
        });
    }

    void edition() {
        QCheckBox* b = w<QCheckBox>("CB_ModeEdition");
        if (!b->isChecked())
            b->click();
    }

    int titres(const QString& titre) const {
        int n = 0;
        for (const Message& m : messages)
            n += m.titre == titre ? 1 : 0;
        return n;
    }
};

// Pixels of a picture that are plainly red (the ring of the localisation image).
inline int pixelsRouges(const QImage& image) {
    int n = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QColor p = image.pixelColor(x, y);
            n += p.red() > 200 && p.green() < 70 && p.blue() < 70 ? 1 : 0;
        }
    return n;
}
