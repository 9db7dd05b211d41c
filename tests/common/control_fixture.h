#pragma once
// A control created offscreen, its messages recorded, its own folder in a temporary
// folder, and sample plans written there by the plan tool.

#include "control/veldra.h"
#include "veldra-plan/plan_tool.h"

#include <QDir>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

struct Message {
    QString texte;
    int style = 0;
    QString titre;
};

class Enregistreur : public veldra::Prompter {
public:
    explicit Enregistreur(std::vector<Message>& messages) : messages_(messages) {}
    int message(const QString& texte, int style, const QString& titre) override {
        messages_.push_back({texte, style, titre});
        return veldra::reponse::Ok;
    }

private:
    std::vector<Message>& messages_;
};

struct ControleFixture {
    QTemporaryDir dir;
    std::vector<Message> messages;
    std::unique_ptr<veldra::Veldra> c;

    ControleFixture() {
        QStandardPaths::setTestModeEnabled(true);
        QDir(dir.path()).mkpath(QStringLiteral("controle"));
        c = std::make_unique<veldra::Veldra>();
        c->setPrompter(std::make_unique<Enregistreur>(messages));
        c->setDossierControle(dossierControle());
        c->resize(1200, 800);
        c->show();
    }

    QString dossierControle() const { return dir.filePath(QStringLiteral("controle")); }
    QString ini() const { return dossierControle() + QStringLiteral("/UserParam.INI"); }

    QString plan(int plots = 60, bool raster = false, const QString& nom = QStringLiteral("Plan")) {
        veldra::plantool::SampleOptions o;
        o.plots = plots;
        o.seed = 5;
        o.raster = raster;
        o.name = nom;
        return veldra::plantool::generateSamplePlan(dir.filePath(nom), o);
    }

    void ouvre(const QString& chemin, bool droit = true) {
        QString ch = chemin, nom = QStringLiteral("Cimetière de test");
        bool nouveau = false, d = droit;
        c->OuvreCimetiere(ch, nouveau, nom, d);
    }

    template <typename T> T* w(const char* nom) const {
        T* found = c->findChild<T*>(QString::fromUtf8(nom));
        EXPECT_NE(found, nullptr) << nom;
        return found;
    }

    // Messages titled "OuvreCimetiere", the opening's error reports.
    int erreursOuverture() const {
        int n = 0;
        for (const Message& m : messages)
            n += m.titre == QLatin1String("OuvreCimetiere") ? 1 : 0;
        return n;
    }
};
