#include "themes/dialogue_themes.h"

#include "base/erreur.h"
#include "context/contexte.h"
#include "context/garde.h"
#include "context/sablier.h"
#include "themes/affichage_theme.h"

#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace veldra {

namespace {

// A small palette of four swatches: the rows' icon.
QIcon iconeDes() {
    QPixmap p(16, 16);
    p.fill(Qt::transparent);
    QPainter g(&p);
    const QColor couleurs[4] = {QColor(255, 128, 128), QColor(128, 255, 128), QColor(128, 128, 255),
                                QColor(255, 255, 128)};
    for (int i = 0; i < 4; ++i) {
        g.setPen(QColor(60, 60, 60));
        g.setBrush(couleurs[i]);
        g.drawRect((i % 2) * 8, (i / 2) * 8, 7, 7);
    }
    return QIcon(p);
}

void signale(Contexte& ctx, const Erreur& e, const char* titre) {
    ctx.prompter().message(texteErreur(e, QStringLiteral(" : ")), boutons::Ok,
                           QString::fromLatin1(titre));
}

} // namespace

Themes::Themes(Contexte& ctx, QWidget* parent)
    : QDialog(parent ? parent : &ctx.controle), ObOCXT(&ctx), des_(iconeDes()) {
    setObjectName(QStringLiteral("Themes"));
    setWindowTitle(QStringLiteral("Thèmes"));
    auto* titre = new QLabel(QStringLiteral("Liste des Thèmes"), this);
    titre->setObjectName(QStringLiteral("Label1"));
    QFont gras = titre->font();
    gras.setBold(true);
    titre->setFont(gras);
    ListView1 = new QTreeWidget(this);
    ListView1->setObjectName(QStringLiteral("ListView1"));
    ListView1->setColumnCount(2);
    ListView1->setHeaderHidden(true);
    ListView1->setRootIsDecorated(false);
    ListView1->setSelectionMode(QAbstractItemView::SingleSelection);
    ListView1->setMinimumSize(380, 240);
    ListView1->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    Btn_Valider = new QPushButton(QStringLiteral("Valider"), this);
    Btn_Valider->setObjectName(QStringLiteral("Btn_Valider"));
    Btn_Valider->setDefault(true);
    Command2 = new QPushButton(QStringLiteral("Fermer"), this);
    Command2->setObjectName(QStringLiteral("Command2"));
    auto* boutons = new QHBoxLayout;
    boutons->addStretch(1);
    boutons->addWidget(Btn_Valider);
    boutons->addWidget(Command2);
    auto* pile = new QVBoxLayout(this);
    pile->addWidget(titre);
    pile->addWidget(ListView1, 1);
    pile->addLayout(boutons);

    connect(Btn_Valider, &QPushButton::clicked, this, garde(ctx, [this] { ExecuteTheme(); }));
    connect(ListView1, &QTreeWidget::itemActivated, this,
            garde(ctx, [this](QTreeWidgetItem* ligne) {
                ListView1->setCurrentItem(ligne);
                ExecuteTheme();
            }));
    connect(Command2, &QPushButton::clicked, this, [this] { reject(); });
}

void Themes::Charge(const std::array<std::array<QString, 2>, 100>& tableau) {
    try {
        ListView1->clear();
        bool plein = true;
        for (const auto& [libelle, code] : tableau) {
            if (libelle.isEmpty()) {
                plein = false;
                break;
            }
            auto* ligne = new QTreeWidgetItem(ListView1, {QStringLiteral("  ") + libelle, code});
            ligne->setIcon(0, des_);
        }
        if (!plein) {
            auto* photo = new QTreeWidgetItem(
                ListView1,
                {QStringLiteral("  Thématique sur la présence de photo liée aux concessions"),
                 QStringLiteral("Photo")});
            photo->setIcon(0, des_);
        }
        ListView1->setColumnWidth(1, 0);
        ListView1->header()->setStretchLastSection(false);
        ListView1->resizeColumnToContents(0);
        ListView1->setColumnWidth(1, 0);
        // Every label whole, the photo theme's long one included.
        ListView1->setMinimumWidth(
            std::max(380, ListView1->columnWidth(0) + 2 * ListView1->frameWidth() + 24));
        if (ListView1->topLevelItemCount() > 0)
            ListView1->setCurrentItem(ListView1->topLevelItem(0));
    } catch (const Erreur& e) {
        if (ObOCXT)
            signale(*ObOCXT, e, "Charge");
    }
}

void Themes::ExecuteTheme() {
    if (!ObOCXT)
        return;
    Contexte& ctx = *ObOCXT;
    try {
        {
            const Sablier sablier;
            retireTheme(ctx);
            QTreeWidgetItem* ligne = ListView1->currentItem();
            if (!ligne)
                throw Erreur(err::AppelIncorrect, QStringLiteral("Aucun thème n'est choisi."));
            QString libelle = ligne->text(0), code = ligne->text(1);
            Action(ctx, libelle, code);
        }
        accept();
    } catch (const Erreur& e) {
        signale(ctx, e, "ExecuteTheme");
    }
}

void Themes::done(int resultat) {
    ObOCXT = nullptr;
    QDialog::done(resultat);
}

void BTN_Themes_Click(Contexte& ctx) {
    try {
        Themes dialogue(ctx);
        dialogue.Charge(ctx.etat.themes.TableauThemes);
        ctx.montreModal(dialogue);
    } catch (const Erreur& e) {
        signale(ctx, e, "BTN_Themes_Click");
    }
}

} // namespace veldra
