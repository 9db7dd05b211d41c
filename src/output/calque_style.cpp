#include "output/calque_style.h"

#include "carto/render/style_paint.h"
#include "context/contexte.h"
#include "context/echantillon_couleur.h"
#include "context/widget_nomme.h"
#include "output/fstyle.h"
#include "output/images_style.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <cmath>

namespace veldra {

namespace {

constexpr int kMotifs = 68;
constexpr int kTraits = carto::linestyle::Last;
constexpr int kEpaisseursPixels = 7;
constexpr double kTaillesSymbole[] = {8, 10, 12, 14, 18};
// The control's own symbols: crosses, flowers and marks a plan of graves needs.
constexpr char32_t kSymbolesMaison[] = {0x271D, 0x271E, 0x271A, 0x2629, 0x2020, 0x2698,
                                        0x2740, 0x2663, 0x2618, 0x25CF, 0x25A0, 0x25B2,
                                        0x2605, 0x2691, 0x2302, 0x2693};
const QString kPolicePersonnalises = QStringLiteral("DejaVu Sans");

QCheckBox* caseNommee(QWidget* parent, const char* nom, const QString& texte) {
    auto* c = cree<QCheckBox>(parent, nom);
    c->setText(texte);
    return c;
}

void choisitPolice(QComboBox& c, const QString& police) {
    int i = c.findText(police);
    if (i < 0) {
        c.insertItem(0, police);
        i = 0;
    }
    c.setCurrentIndex(i);
}

QLabel* apercu(QWidget* parent) {
    auto* l = cree<QLabel>(parent, "Apercu");
    l->setMinimumSize(120, 64);
    l->setAlignment(Qt::AlignCenter);
    l->setFrameShape(QFrame::Box);
    l->setAutoFillBackground(true);
    QPalette p = l->palette();
    p.setColor(QPalette::Window, Qt::white);
    l->setPalette(p);
    return l;
}

} // namespace

// ---- common

CalqueStyle::CalqueStyle(Contexte& ctx, QWidget* parent, const char* nom, const QString& titre)
    : QDialog(parent), ctx_(ctx) {
    setObjectName(QString::fromLatin1(nom));
    setWindowTitle(titre);
    auto* tout = new QVBoxLayout(this);
    corps_ = new QVBoxLayout;
    tout->addLayout(corps_);
    auto* boutons = new QHBoxLayout;
    boutons->addStretch(1);
    Btn_Ok = cree<QPushButton>(this, "Btn_Ok");
    Btn_Ok->setText(QStringLiteral("OK"));
    Btn_Ok->setDefault(true);
    Btn_cancel = cree<QPushButton>(this, "Btn_cancel");
    Btn_cancel->setText(QStringLiteral("Annuler"));
    boutons->addWidget(Btn_Ok);
    boutons->addWidget(Btn_cancel);
    tout->addLayout(boutons);
    connect(Btn_Ok, &QPushButton::clicked, this, [this] {
        lit(style_);
        accept();
    });
    connect(Btn_cancel, &QPushButton::clicked, this, &QDialog::reject);
}

bool CalqueStyle::Edite(const carto::Style& style) {
    style_ = style;
    charge(style);
    previsualise();
    adjustSize();
    return ctx_.montreModal(*this) == QDialog::Accepted;
}

void CalqueStyle::suit(QComboBox* c) {
    connect(c, &QComboBox::currentIndexChanged, this, [this] { previsualise(); });
}

void CalqueStyle::suit(QCheckBox* c) {
    connect(c, &QCheckBox::toggled, this, [this] { previsualise(); });
}

void CalqueStyle::suit(EchantillonCouleur* e) {
    connect(e, &EchantillonCouleur::couleurChoisie, this, [this] { previsualise(); });
}

// ---- lines

Calque_style_ligne::Calque_style_ligne(Contexte& ctx, QWidget* parent)
    : CalqueStyle(ctx, parent, "Calque_style_ligne", QStringLiteral("Style des lignes")) {
    auto* f = new QFormLayout;
    Couleur = new EchantillonCouleur(ctx, this, "Couleur");
    f->addRow(QStringLiteral("Couleur"), Couleur);
    ImageCombo1 = cree<QComboBox>(this, "ImageCombo1");
    remplitEpaisseurs(*ImageCombo1, kEpaisseursPixels);
    f->addRow(QStringLiteral("Epaisseur"), ImageCombo1);
    ImageCombo2 = cree<QComboBox>(this, "ImageCombo2");
    remplitTraits(*ImageCombo2, kTraits);
    f->addRow(QStringLiteral("Type de trait"), ImageCombo2);
    corps_->addLayout(f);
}

void Calque_style_ligne::charge(const carto::Style& s) {
    Couleur->setCouleur(s.lineColor);
    choisitEntree(*ImageCombo1, s.lineWidth);
    choisitEntree(*ImageCombo2, s.lineStyle);
}

void Calque_style_ligne::lit(carto::Style& s) const {
    s.lineColor = Couleur->couleur();
    s.lineWidth = entreeChoisie(*ImageCombo1);
    s.lineStyle = entreeChoisie(*ImageCombo2);
}

// ---- areas

Calque_style_region::Calque_style_region(Contexte& ctx, QWidget* parent)
    : CalqueStyle(ctx, parent, "Calque_style_region", QStringLiteral("Style des régions")) {
    auto* f = new QFormLayout;
    ImageCombo1 = cree<QComboBox>(this, "ImageCombo1");
    remplitMotifs(*ImageCombo1, kMotifs);
    f->addRow(QStringLiteral("Motif"), ImageCombo1);
    CouleurMotif = new EchantillonCouleur(ctx, this, "CouleurMotif");
    f->addRow(QStringLiteral("Couleur"), CouleurMotif);
    CouleurFond = new EchantillonCouleur(ctx, this, "CouleurFond");
    f->addRow(QStringLiteral("Couleur de fond"), CouleurFond);
    Check1 = caseNommee(this, "Check1", QStringLiteral("Fond transparent"));
    f->addRow(QString(), Check1);
    ImageCombo2 = cree<QComboBox>(this, "ImageCombo2");
    remplitTraits(*ImageCombo2, kTraits);
    f->addRow(QStringLiteral("Style du contour"), ImageCombo2);
    OptionPixels = cree<QRadioButton>(this, "Option1");
    OptionPixels->setText(QStringLiteral("Pixels"));
    ImageCombo3 = cree<QComboBox>(this, "ImageCombo3");
    remplitEpaisseurs(*ImageCombo3, kEpaisseursPixels);
    f->addRow(OptionPixels, ImageCombo3);
    OptionLargeurs = cree<QRadioButton>(this, "Option2");
    OptionLargeurs->setText(QStringLiteral("Largeur"));
    Combo1 = cree<QComboBox>(this, "Combo1");
    for (const int l : kLargeurs)
        Combo1->addItem(QString::number(l));
    f->addRow(OptionLargeurs, Combo1);
    CouleurContour = new EchantillonCouleur(ctx, this, "CouleurContour");
    f->addRow(QStringLiteral("Couleur du contour"), CouleurContour);
    corps_->addLayout(f);
    connect(OptionPixels, &QRadioButton::toggled, this, [this](bool pixels) {
        ImageCombo3->setEnabled(pixels);
        Combo1->setEnabled(!pixels);
    });
}

void Calque_style_region::charge(const carto::Style& s) {
    Check1->setChecked(s.regionTransparent);
    const int entree = entreeDeMotif(s.regionPattern);
    choisitEntree(*ImageCombo1, entree > 0 ? entree : 2);
    CouleurMotif->setCouleur(s.regionColor);
    CouleurFond->setCouleur(s.regionBackColor);
    choisitEntree(*ImageCombo2, s.regionBorderStyle);
    CouleurContour->setCouleur(s.regionBorderColor);
    const int* fin = std::end(kLargeurs);
    const int* l = std::find(std::begin(kLargeurs), fin, s.regionBorderWidth);
    if (l != fin) {
        Combo1->setCurrentIndex(int(l - std::begin(kLargeurs)));
        OptionLargeurs->setChecked(true);
        ImageCombo3->setEnabled(false);
    } else {
        choisitEntree(*ImageCombo3, s.regionBorderWidth);
        OptionPixels->setChecked(true);
        Combo1->setEnabled(false);
    }
}

void Calque_style_region::lit(carto::Style& s) const {
    s.regionTransparent = Check1->isChecked();
    s.regionPattern = motifDeEntree(entreeChoisie(*ImageCombo1));
    s.regionColor = CouleurMotif->couleur();
    s.regionBackColor = CouleurFond->couleur();
    s.regionBorderStyle = entreeChoisie(*ImageCombo2);
    s.regionBorderColor = CouleurContour->couleur();
    s.regionBorderWidth = OptionLargeurs->isChecked()
                              ? kLargeurs[std::max(0, Combo1->currentIndex())]
                              : entreeChoisie(*ImageCombo3);
}

// ---- symbols

Calque_style_symbole::Calque_style_symbole(Contexte& ctx, QWidget* parent)
    : CalqueStyle(ctx, parent, "Calque_style_symbole", QStringLiteral("Style des symboles")) {
    auto* f = new QFormLayout;
    Police = cree<QComboBox>(this, "Combo1");
    QStringList polices = QFontDatabase::families(QFontDatabase::Symbol);
    if (!polices.contains(kPolicePersonnalises))
        polices.prepend(kPolicePersonnalises);
    Police->addItems(polices);
    Police->addItem(kPersonnalises);
    f->addRow(QStringLiteral("Police"), Police);
    Caracteres = cree<QListWidget>(this, "Caracteres");
    Caracteres->setViewMode(QListView::IconMode);
    Caracteres->setGridSize(QSize(30, 30));
    Caracteres->setMinimumSize(300, 130);
    Caracteres->setUniformItemSizes(true);
    f->addRow(QStringLiteral("Symbole"), Caracteres);
    Taille = cree<QComboBox>(this, "Combo2");
    for (const double t : kTaillesSymbole)
        Taille->addItem(QString::number(t));
    f->addRow(QStringLiteral("Taille"), Taille);
    Couleur = new EchantillonCouleur(ctx, this, "Couleur");
    f->addRow(QStringLiteral("Couleur"), Couleur);
    Apercu = apercu(this);
    f->addRow(Apercu);
    corps_->addLayout(f);
    connect(Police, &QComboBox::currentIndexChanged, this, [this] {
        remplitCaracteres();
        previsualise();
    });
    connect(Caracteres, &QListWidget::currentRowChanged, this, [this] { previsualise(); });
    suit(Taille);
    suit(Couleur);
}

void Calque_style_symbole::remplitCaracteres() {
    const QSignalBlocker bloque(Caracteres);
    Caracteres->clear();
    const bool personnalises = Police->currentText() == kPersonnalises;
    const QFont police(personnalises ? kPolicePersonnalises : Police->currentText(), 14);
    Caracteres->setFont(police);
    const QFontMetrics m(police);
    const auto ajoute = [&](char32_t c) {
        auto* item = new QListWidgetItem(QString::fromUcs4(&c, 1), Caracteres);
        item->setData(Qt::UserRole, uint(c));
        item->setTextAlignment(Qt::AlignCenter);
    };
    if (personnalises) {
        for (const char32_t c : kSymbolesMaison)
            ajoute(c);
        return;
    }
    // The font's own signs: geometric shapes, miscellaneous symbols and dingbats.
    for (const auto& [de, a] :
         {std::pair<char32_t, char32_t>{0x25A0, 0x25FF}, {0x2600, 0x26FF}, {0x2700, 0x27BF}})
        for (char32_t c = de; c <= a; ++c)
            if (m.inFontUcs4(uint(c)))
                ajoute(c);
}

void Calque_style_symbole::charge(const carto::Style& s) {
    const bool personnalise = s.symbolFont == kPolicePersonnalises &&
                              std::find(std::begin(kSymbolesMaison), std::end(kSymbolesMaison),
                                        char32_t(s.symbolCharacter)) != std::end(kSymbolesMaison);
    {
        const QSignalBlocker bloque(Police);
        if (personnalise)
            Police->setCurrentIndex(Police->count() - 1);
        else
            choisitPolice(*Police, s.symbolFont);
    }
    remplitCaracteres();
    for (int i = 0; i < Caracteres->count(); ++i)
        if (Caracteres->item(i)->data(Qt::UserRole).toUInt() == uint(s.symbolCharacter))
            Caracteres->setCurrentRow(i);
    // A size of its own (a tree drawn metres wide) is offered as it is, so that it is kept.
    const QString taille = QString::number(s.symbolSize);
    if (Taille->findText(taille) < 0)
        Taille->insertItem(0, taille);
    Taille->setCurrentIndex(Taille->findText(taille));
    Couleur->setCouleur(s.symbolColor);
}

void Calque_style_symbole::lit(carto::Style& s) const {
    s.symbolFont =
        Police->currentText() == kPersonnalises ? kPolicePersonnalises : Police->currentText();
    if (const QListWidgetItem* c = Caracteres->currentItem())
        s.symbolCharacter = int(c->data(Qt::UserRole).toUInt());
    bool ok = false;
    const double taille = Taille->currentText().toDouble(&ok);
    s.symbolSize = ok && taille > 0 ? taille : kTaillesSymbole[0];
    s.symbolColor = Couleur->couleur();
}

void Calque_style_symbole::previsualise() {
    carto::Style s = style_;
    lit(s);
    QFont police(s.symbolFont);
    police.setPointSizeF(s.symbolSize * 2);
    Apercu->setFont(police);
    const char32_t c = char32_t(s.symbolCharacter);
    Apercu->setText(QString::fromUcs4(&c, 1));
    QPalette p = Apercu->palette();
    p.setColor(QPalette::WindowText, carto::toQColor(s.symbolColor));
    Apercu->setPalette(p);
}

// ---- texts

Calque_style_texte::Calque_style_texte(Contexte& ctx, QWidget* parent)
    : CalqueStyle(ctx, parent, "Calque_style_texte", QStringLiteral("Style des textes")) {
    auto* f = new QFormLayout;
    Police = cree<QComboBox>(this, "Combo1");
    Police->addItems(QFontDatabase::families());
    f->addRow(QStringLiteral("Police"), Police);
    Taille = cree<QComboBox>(this, "Combo2");
    for (const double t : kTaillesTexte)
        Taille->addItem(QString::number(t));
    f->addRow(QStringLiteral("Taille"), Taille);
    Couleur = new EchantillonCouleur(ctx, this, "Couleur");
    f->addRow(QStringLiteral("Couleur"), Couleur);
    CouleurFond = new EchantillonCouleur(ctx, this, "CouleurFond");
    f->addRow(QStringLiteral("Couleur du fond"), CouleurFond);
    Check1 = caseNommee(this, "Check1", QStringLiteral("Gras"));
    Check2 = caseNommee(this, "Check2", QStringLiteral("Souligné"));
    Check3 = caseNommee(this, "Check3", QStringLiteral("Halo"));
    Check4 = caseNommee(this, "Check4", QStringLiteral("Encadré"));
    Check5 = caseNommee(this, "Check5", QStringLiteral("Ombré"));
    for (QCheckBox* c : {Check1, Check2, Check3, Check4, Check5}) {
        f->addRow(QString(), c);
        suit(c);
    }
    Apercu = apercu(this);
    f->addRow(Apercu);
    corps_->addLayout(f);
    suit(Police);
    suit(Taille);
    suit(Couleur);
    suit(CouleurFond);
}

void Calque_style_texte::charge(const carto::Style& s) {
    choisitPolice(*Police, s.textFont);
    Taille->setCurrentIndex(tailleLaPlusProche(kTaillesTexte, s.textSize));
    Couleur->setCouleur(s.textColor);
    CouleurFond->setCouleur(s.textBackColor);
    Check1->setChecked(s.textBold);
    Check2->setChecked(s.textUnderline);
    Check3->setChecked(s.textHalo);
    Check4->setChecked(s.textBox);
    Check5->setChecked(s.textShadow);
}

void Calque_style_texte::lit(carto::Style& s) const {
    s.textFont = Police->currentText();
    s.textSize = kTaillesTexte[std::max(0, Taille->currentIndex())];
    s.textColor = Couleur->couleur();
    s.textBackColor = CouleurFond->couleur();
    s.textBold = Check1->isChecked();
    s.textUnderline = Check2->isChecked();
    s.textHalo = Check3->isChecked();
    s.textBox = Check4->isChecked();
    s.textShadow = Check5->isChecked();
}

void Calque_style_texte::previsualise() {
    carto::Style s = style_;
    lit(s);
    Apercu->setFont(carto::textFont(s, std::min(48.0, s.textSize * 1.6)));
    Apercu->setText(QStringLiteral("Aa"));
    QPalette p = Apercu->palette();
    p.setColor(QPalette::WindowText, carto::toQColor(s.textColor));
    p.setColor(QPalette::Window,
               s.textBox || s.textHalo ? carto::toQColor(s.textBackColor) : QColor(Qt::white));
    Apercu->setPalette(p);
    Apercu->setFrameShape(s.textBox ? QFrame::Box : QFrame::StyledPanel);
}

} // namespace veldra
