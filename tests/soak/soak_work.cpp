#include "soak_work.h"

#include "carto/model/edit_commands.h"
#include "carto/model/update_access.h"
#include "control/veldra.h"
#include "soak_digest.h"
#include "veldra-plan/plan_tool.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <cstdio>

namespace soak {

namespace {

// Messages go nowhere: nobody is there to answer them.
class Muet : public veldra::Prompter {
public:
    int message(const QString&, int, const QString&) override { return veldra::reponse::Ok; }
};

class Journal {
public:
    explicit Journal(const QString& path) : file_(path) {
        file_.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered);
    }
    // A line is in the file (the kernel's cache) as soon as this returns: a SIGKILL
    // cannot lose it.
    void line(const QByteArray& text) { file_.write(text + '\n'); }

private:
    QFile file_;
};

// Some plots of the layer, at random, each once.
std::vector<qint64> someOf(const carto::Layer& layer, QRandomGenerator& r, int most) {
    const std::vector<qint64> all = layer.allFeatures().fids();
    carto::Features picked(&layer);
    const int n = all.empty() ? 0 : 1 + int(r.bounded(quint32(most)));
    for (int i = 0; i < n; ++i)
        picked.add(all[r.bounded(quint32(all.size()))]);
    return picked.fids();
}

// The number labels lying on the plots: their text is the plot's number.
std::vector<qint64> labelsOf(const carto::Layer& plots, const carto::Layer& numbers,
                             const std::vector<qint64>& fids) {
    carto::Features labels(&numbers);
    for (const qint64 fid : fids) {
        const carto::Feature plot = plots.feature(fid);
        const QString number = plot.attribute(u"Numero").toString();
        for (const carto::Feature& l :
             numbers.searchWithinFeature(plot, carto::searchmode::CentreWithin))
            if (l.text() == number)
                labels.add(l.fid());
    }
    return labels.fids();
}

// Far from everything: moved and copied plots land where no other plot is.
double farAway(QRandomGenerator& r) {
    return 1e4 + r.bounded(1e7);
}

void majDuPlan(veldra::Veldra& control, QRandomGenerator& r) {
    QString type = QStringLiteral("C"), p1, p2, message;
    bool jauge = false;
    RecordsetPtr rs = control.GetInfo(type, p1, p2, jauge, message);
    if (!rs)
        return;
    for (rs->moveFirst(); !rs->eof(); rs->moveNext()) {
        rs->setValue(u"IdGCF", double(r.bounded(30000))); // the column holds 16 bits
        rs->setValue(u"Nom", QStringLiteral("Famille %1").arg(r.bounded(100000)));
        if (r.bounded(10) < 3) // a few plots redrawn at slightly other sizes
            rs->setValue(u"Longueur", rs->value(u"Longueur").toDouble() + 0.01);
        rs->update();
    }
    QString a = QStringLiteral("A");
    control.MAJ(rs, a);
}

void renomme(carto::Map& map, carto::Layer& plots, QRandomGenerator& r, int n) {
    map.execute(std::make_unique<carto::SetAttribute>(plots, someOf(plots, r, 50), u"Nom",
                                                      QStringLiteral("R%1").arg(n)));
}

void deplace(carto::Map& map, carto::Layer& plots, carto::Layer& numbers, QRandomGenerator& r) {
    const std::vector<qint64> fids = someOf(plots, r, 20);
    const double dx = farAway(r), dy = farAway(r);
    auto group = std::make_unique<carto::EditGroup>(map, QStringLiteral("Déplacer"));
    group->add(
        std::make_unique<carto::MoveFeatures>(numbers, labelsOf(plots, numbers, fids), dx, dy));
    group->add(std::make_unique<carto::MoveFeatures>(plots, fids, dx, dy));
    map.execute(std::move(group));
}

void copie(carto::Map& map, carto::Layer& plots, carto::Layer& numbers, QRandomGenerator& r) {
    const std::vector<qint64> fids = someOf(plots, r, 10);
    const double dx = farAway(r), dy = farAway(r);
    std::vector<carto::Feature> plotCopies, labelCopies;
    for (const qint64 fid : fids) {
        carto::Feature f = plots.feature(fid);
        f.offset(dx, dy);
        plotCopies.push_back(f);
    }
    for (const qint64 fid : labelsOf(plots, numbers, fids)) {
        carto::Feature f = numbers.feature(fid);
        f.offset(dx, dy);
        labelCopies.push_back(f);
    }
    auto group = std::make_unique<carto::EditGroup>(map, QStringLiteral("Copier"));
    group->add(std::make_unique<carto::AddFeatures>(plots, plotCopies));
    group->add(std::make_unique<carto::AddFeatures>(numbers, labelCopies));
    map.execute(std::move(group));
}

// The deletion the host confirms, as the control carries it out.
void supprime(veldra::Veldra& control, carto::Layer& plots, QRandomGenerator& r) {
    control.ObjSel = carto::Features(&plots, someOf(plots, r, 10));
    bool oui = true;
    QString message;
    control.ConfirmSupp(oui, message);
}

} // namespace

QString makePlan(const QString& folder, int plots) {
    veldra::plantool::SampleOptions o;
    o.plots = plots;
    o.seed = 11;
    o.raster = false;
    o.name = QStringLiteral("Soak");
    return veldra::plantool::generateSamplePlan(folder, o);
}

int work(const QString& plan, const QString& journalPath, const QString& folder, quint32 seed) {
    QStandardPaths::setTestModeEnabled(true);
    veldra::Veldra control;
    control.setPrompter(std::make_unique<Muet>());
    QDir(folder).mkpath(QStringLiteral("controle"));
    control.setDossierControle(folder + QStringLiteral("/controle"));
    control.resize(1000, 700);
    QString chemin = plan, nom = QStringLiteral("Soak");
    bool nouveau = false, droit = true;
    control.OuvreCimetiere(chemin, nouveau, nom, droit);
    if (!control.Calque_Tombe || !control.Calque_Numero) {
        std::fprintf(stderr, "veldra-soak: the child cannot open %s\n", qPrintable(plan));
        return 2;
    }
    carto::Map& map = control.surface().Map1->map();
    carto::Layer& plots = *control.Calque_Tombe;
    carto::Layer& numbers = *control.Calque_Numero;
    Journal journal(journalPath);
    QRandomGenerator r(seed);
    for (int n = 1;; ++n) {
        const QByteArray step = QByteArray::number(n);
        journal.line("begin " + step + ' ' + digest(map));
        try {
            carto::UpdateAccess bracket(map);
            switch (r.bounded(5)) {
            case 0:
                majDuPlan(control, r);
                break;
            case 1:
                renomme(map, plots, r, n);
                break;
            case 2:
                deplace(map, plots, numbers, r);
                break;
            case 3:
                copie(map, plots, numbers, r);
                break;
            default:
                supprime(control, plots, r);
                break;
            }
            journal.line("expect " + step + ' ' + digest(map));
            bracket.commit();
            journal.line("done " + step);
        } catch (const veldra::Erreur& e) {
            // Refused as a whole: the plan holds what it held at "begin".
            journal.line("failed " + step + ' ' + e.message().toUtf8());
        }
    }
}

} // namespace soak
