#include "output/dialogue_impression.h"

#include "context/widget_nomme.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QFormLayout>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace veldra {

namespace {

QLabel* libelle(QWidget* parent, const char* nom, const QString& texte) {
    auto* l = cree<QLabel>(parent, nom);
    l->setText(texte);
    return l;
}

// A check box and the label beside it, which toggles it when clicked.
QWidget* caseNommee(QWidget* parent, QCheckBox* box, QLabel* etiquette) {
    auto* w = new QWidget(parent);
    auto* l = new QHBoxLayout(w);
    l->setContentsMargins(0, 0, 0, 0);
    l->addWidget(box);
    l->addWidget(etiquette, 1);
    etiquette->setCursor(Qt::PointingHandCursor);
    return w;
}

const QString kEchelleCourante = QStringLiteral(" Echelle courante");

} // namespace

Impression::Impression(bool papier, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Impression"));
    setWindowTitle(QStringLiteral("Impression"));
    auto* tout = new QVBoxLayout(this);
    auto* titre = libelle(this, "Label1", QStringLiteral("Paramètres d'Impression"));
    QFont gras = titre->font();
    gras.setBold(true);
    gras.setPointSizeF(gras.pointSizeF() * 1.2);
    titre->setFont(gras);
    tout->addWidget(titre);

    auto* champs = new QFormLayout;
    sTitre = cree<QLineEdit>(this, "sTitre");
    sTitre->setMinimumWidth(300);
    champs->addRow(QStringLiteral("Titre"), sTitre);
    sCommentaires = cree<QPlainTextEdit>(this, "sCommentaires");
    sCommentaires->setTabChangesFocus(true);
    sCommentaires->setFixedHeight(sCommentaires->fontMetrics().lineSpacing() * 3 + 12);
    champs->addRow(QStringLiteral("Commentaires"), sCommentaires);
    Liste_Echelle = cree<QListWidget>(this, "Liste_Echelle");
    Liste_Echelle->addItems(
        {kEchelleCourante, QStringLiteral(" Echelle : 1/500"), QStringLiteral(" Echelle : 1/1000"),
         QStringLiteral(" Echelle : 1/2000"), QStringLiteral(" Echelle : 1/3000")});
    Liste_Echelle->setFixedHeight(Liste_Echelle->sizeHintForRow(0) * 5 + 6);
    Liste_Echelle->setCurrentRow(0);
    champs->addRow(QStringLiteral("Echelle"), Liste_Echelle);
    tout->addLayout(champs);

    Trame_Precise = cree<QCheckBox>(this, "Trame_Precise");
    Trame_Precise->setEnabled(false);
    Label2 = libelle(this, "Label2", QStringLiteral("Trame Précise"));
    Cb_ImpSelection = cree<QCheckBox>(this, "Cb_ImpSelection");
    Label5 = libelle(this, "Label5", QStringLiteral("Imprimer la sélection"));
    tout->addWidget(caseNommee(this, Cb_ImpSelection, Label5));
    tout->addWidget(caseNommee(this, Trame_Precise, Label2));
    for (QLabel* l : {Label2, Label5})
        l->installEventFilter(this);
    connect(Cb_ImpSelection, &QCheckBox::clicked, this, &Impression::suitSelection);

    // Paper, preview and PDF: what the host turned on beyond the image it prints itself.
    Frame_Papier = cree<QFrame>(this, "Frame_Papier");
    Frame_Papier->setFrameShape(QFrame::StyledPanel);
    auto* fp = new QFormLayout(Frame_Papier);
    fp->addRow(libelle(Frame_Papier, "L_Papier",
                       QStringLiteral("Sur papier ou en PDF, à l'échelle "
                                      "choisie :")));
    Combo_Papier = cree<QComboBox>(Frame_Papier, "Combo_Papier");
    Combo_Papier->addItem(QStringLiteral("A4"), int(QPageSize::A4));
    Combo_Papier->addItem(QStringLiteral("A3"), int(QPageSize::A3));
    fp->addRow(QStringLiteral("Papier"), Combo_Papier);
    Combo_Orientation = cree<QComboBox>(Frame_Papier, "Combo_Orientation");
    Combo_Orientation->addItem(QStringLiteral("Portrait"), int(QPageLayout::Portrait));
    Combo_Orientation->addItem(QStringLiteral("Paysage"), int(QPageLayout::Landscape));
    fp->addRow(QStringLiteral("Orientation"), Combo_Orientation);
    auto* sorties = new QHBoxLayout;
    const std::pair<const char*, QString> choix[] = {
        {"Btn_ImprimerPapier", QStringLiteral("Imprimer…")},
        {"Btn_Apercu", QStringLiteral("Aperçu…")},
        {"Btn_Pdf", QStringLiteral("PDF…")}};
    const Destination destinations[] = {Destination::Papier, Destination::Apercu, Destination::Pdf};
    for (int i = 0; i < 3; ++i) {
        auto* b = cree<QPushButton>(Frame_Papier, choix[i].first);
        b->setText(choix[i].second);
        b->setAutoDefault(false);
        sorties->addWidget(b);
        const Destination d = destinations[i];
        connect(b, &QPushButton::clicked, this, [this, d] { valide(d); });
    }
    fp->addRow(sorties);
    tout->addWidget(Frame_Papier);
    Frame_Papier->setVisible(papier);

    auto* bas = new QHBoxLayout;
    Btn_ValiderImpression = cree<QPushButton>(this, "Btn_ValiderImpression");
    Btn_ValiderImpression->setText(QStringLiteral("Valider"));
    Btn_ValiderImpression->setDefault(true);
    Btn_AnnulerImpression = cree<QPushButton>(this, "Btn_AnnulerImpression");
    Btn_AnnulerImpression->setText(QStringLiteral("Annuler"));
    bas->addStretch(1);
    bas->addWidget(Btn_AnnulerImpression);
    bas->addWidget(Btn_ValiderImpression);
    tout->addLayout(bas);

    connect(Btn_ValiderImpression, &QPushButton::clicked, this,
            [this] { valide(Destination::Hote); });
    connect(Btn_AnnulerImpression, &QPushButton::clicked, this, [this] {
        bAnnuler = true;
        reject();
    });
}

void Impression::suitSelection() {
    Trame_Precise->setEnabled(Cb_ImpSelection->isChecked());
}

void Impression::valide(Destination d) {
    if (Cb_ImpSelection->isChecked())
        ImprimeSelection = true;
    const QListWidgetItem* ligne = Liste_Echelle->currentItem();
    const QString texte = ligne ? ligne->text() : kEchelleCourante;
    Echelle = texte == kEchelleCourante ? texte : texte.mid(texte.indexOf(u'/') + 1);
    TitreImp = sTitre->text();
    Commentaires = sCommentaires->toPlainText();
    destination = d;
    if (d == Destination::Hote) {
        Format = QStringLiteral("A4");
    } else {
        papier = QPageSize::PageSizeId(Combo_Papier->currentData().toInt());
        orientation = QPageLayout::Orientation(Combo_Orientation->currentData().toInt());
        Format = Combo_Papier->currentText();
    }
    accept();
}

bool Impression::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonRelease) {
        if (watched == Label2) {
            Trame_Precise->toggle();
            return true;
        }
        if (watched == Label5) {
            Cb_ImpSelection->toggle();
            suitSelection();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace veldra
