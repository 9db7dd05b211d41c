#include "output/fstyle.h"

#include "carto/render/style_paint.h"
#include "context/contexte.h"
#include "context/echantillon_couleur.h"
#include "context/garde.h"
#include "context/widget_nomme.h"
#include "output/images_style.h"
#include "output/style_selection.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>

namespace veldra {

namespace {

constexpr int kEpaisseurs = 7;
constexpr int kTraits = 7;
constexpr int kBordures = 7;

// The borders of a text, in Bordure's order.
enum Bordure { SansBordure, Halo, Encadre };

QLabel* libelle(QWidget* parent, const char* nom, const QString& texte) {
    auto* l = cree<QLabel>(parent, nom);
    l->setText(texte);
    return l;
}

} // namespace

fStyle::fStyle(Contexte& ctx, QWidget* parent) : QDialog(parent), ctx_(ctx) {
    setObjectName(QStringLiteral("fStyle"));
    setWindowTitle(QStringLiteral("Style"));
    auto* tout = new QVBoxLayout(this);
    Titre_Style = libelle(this, "Titre_Style",
                          QStringLiteral("Le style de cet objet se modifie par le menu "
                                         "« Style de la sélection »."));
    QFont gras = Titre_Style->font();
    gras.setBold(true);
    gras.setPointSizeF(gras.pointSizeF() * 1.15);
    Titre_Style->setFont(gras);
    tout->addWidget(Titre_Style);

    // ---- line
    Frame_Ligne = cree<QFrame>(this, "Frame_Ligne");
    auto* fl = new QFormLayout(Frame_Ligne);
    b_couleur_obj = new EchantillonCouleur(ctx, Frame_Ligne, "b_couleur_obj");
    fl->addRow(QStringLiteral("Couleur"), b_couleur_obj);
    ImageCombo2 = cree<QComboBox>(Frame_Ligne, "ImageCombo2");
    remplitEpaisseurs(*ImageCombo2, kEpaisseurs);
    fl->addRow(QStringLiteral("Epaisseur"), ImageCombo2);
    ImageCombo3 = cree<QComboBox>(Frame_Ligne, "ImageCombo3");
    remplitTraits(*ImageCombo3, kTraits);
    fl->addRow(QStringLiteral("Type de trait"), ImageCombo3);
    tout->addWidget(Frame_Ligne);

    // ---- area
    Frame_Polygone = cree<QFrame>(this, "Frame_Polygone");
    auto* fp = new QVBoxLayout(Frame_Polygone);
    fp->setContentsMargins(0, 0, 0, 0);
    auto* contour = new QGroupBox(QStringLiteral("Contour"), Frame_Polygone);
    auto* fc = new QFormLayout(contour);
    b_couleur_Contour = new EchantillonCouleur(ctx, contour, "b_couleur_Contour");
    fc->addRow(QStringLiteral("Couleur du contour"), b_couleur_Contour);
    ImageCombo1 = cree<QComboBox>(contour, "ImageCombo1");
    remplitEpaisseurs(*ImageCombo1, kEpaisseurs);
    fc->addRow(QStringLiteral("Epaisseur du contour"), ImageCombo1);
    ImageComboType = cree<QComboBox>(contour, "ImageComboType");
    remplitTraits(*ImageComboType, kBordures);
    fc->addRow(QStringLiteral("Type de contour"), ImageComboType);
    fp->addWidget(contour);
    auto* interieur = new QGroupBox(QStringLiteral("Intérieur"), Frame_Polygone);
    auto* fi = new QFormLayout(interieur);
    ImageComboRegion = cree<QComboBox>(interieur, "ImageComboRegion");
    remplitMotifs(*ImageComboRegion, int(codesMotifs().size()));
    fi->addRow(QStringLiteral("Type d'intérieur"), ImageComboRegion);
    L_InfoInterieur = libelle(interieur, "L_InfoInterieur", QString());
    fi->addRow(QString(), L_InfoInterieur);
    L_couleurInterieure =
        libelle(interieur, "L_couleurInterieure", QStringLiteral("Couleur de fond"));
    b_couleur_Int = new EchantillonCouleur(ctx, interieur, "b_couleur_Int");
    fi->addRow(L_couleurInterieure, b_couleur_Int);
    L_couleurMotif = libelle(interieur, "L_couleurMotif", QStringLiteral("Couleur du motif"));
    b_couleur_Motif = new EchantillonCouleur(ctx, interieur, "b_couleur_Motif");
    fi->addRow(L_couleurMotif, b_couleur_Motif);
    fp->addWidget(interieur);
    tout->addWidget(Frame_Polygone);
    connect(ImageComboRegion, &QComboBox::currentIndexChanged, this,
            garde(ctx, [this] { choisitInterieur(); }));

    // ---- text
    Frame_Texte = cree<QFrame>(this, "Frame_Texte");
    auto* ftx = new QFormLayout(Frame_Texte);
    Police_Texte = cree<QComboBox>(Frame_Texte, "ImageCombo1");
    Police_Texte->addItems(QFontDatabase::families());
    ftx->addRow(QStringLiteral("Police"), Police_Texte);
    Taille_Texte = cree<QComboBox>(Frame_Texte, "ImageCombo2");
    for (const double t : kTaillesTexte)
        Taille_Texte->addItem(QString::number(t));
    ftx->addRow(QStringLiteral("Taille"), Taille_Texte);
    Bordure_Texte = cree<QComboBox>(Frame_Texte, "ImageCombo3");
    Bordure_Texte->addItems(
        {QStringLiteral("Aucune"), QStringLiteral("Halo"), QStringLiteral("Encadré")});
    ftx->addRow(QStringLiteral("Bordure"), Bordure_Texte);
    Epaisseur = cree<QCheckBox>(Frame_Texte, "Epaisseur");
    Epaisseur->setText(QStringLiteral("Gras"));
    ftx->addRow(QStringLiteral("Epaisseur"), Epaisseur);
    b_couleur_Texte = new EchantillonCouleur(ctx, Frame_Texte, "b_couleur_Texte");
    ftx->addRow(QStringLiteral("Couleur"), b_couleur_Texte);
    b_couleur_FondTexte = new EchantillonCouleur(ctx, Frame_Texte, "b_couleur_FondTexte");
    ftx->addRow(QStringLiteral("Couleur de la bordure"), b_couleur_FondTexte);
    Exemple = libelle(Frame_Texte, "Exemple", QStringLiteral("Exemple"));
    Exemple->setMinimumHeight(48);
    Exemple->setAlignment(Qt::AlignCenter);
    Exemple->setAutoFillBackground(true);
    ftx->addRow(Exemple);
    tout->addWidget(Frame_Texte);
    for (QComboBox* c : {Police_Texte, Taille_Texte, Bordure_Texte})
        connect(c, &QComboBox::currentIndexChanged, this, [this] { previsualise(); });
    connect(Epaisseur, &QCheckBox::toggled, this, [this] { previsualise(); });
    for (EchantillonCouleur* e : {b_couleur_Texte, b_couleur_FondTexte})
        connect(e, &EchantillonCouleur::couleurChoisie, this, [this] { previsualise(); });

    // ---- buttons
    auto* boutons = new QHBoxLayout;
    boutons->addStretch(1);
    Btn_Valider = cree<QPushButton>(this, "Btn_Valider");
    Btn_Valider->setText(QStringLiteral("Valider"));
    Btn_Valider->setDefault(true);
    Btn_AnnulerRot = cree<QPushButton>(this, "Btn_AnnulerRot");
    Btn_AnnulerRot->setText(QStringLiteral("Annuler"));
    boutons->addWidget(Btn_Valider);
    boutons->addWidget(Btn_AnnulerRot);
    tout->addLayout(boutons);
    connect(Btn_Valider, &QPushButton::clicked, this, garde(ctx, [this] { valide(); }));
    connect(Btn_AnnulerRot, &QPushButton::clicked, this, &QDialog::reject);

    Frame_Ligne->hide();
    Frame_Polygone->hide();
    Frame_Texte->hide();
}

void fStyle::Style(const QString& sType, const carto::Feature& feature) {
    type_ = sType;
    objet_ = feature;
    const carto::Style& s = feature.style();
    Frame_Ligne->setVisible(sType == QLatin1String("Ligne"));
    Frame_Polygone->setVisible(sType == QLatin1String("Polygone"));
    Frame_Texte->setVisible(sType == QLatin1String("Texte"));
    if (sType == QLatin1String("Ligne")) {
        Titre_Style->setText(QStringLiteral("Style de la ligne"));
        b_couleur_obj->setCouleur(s.lineColor);
        choisitEntree(*ImageCombo2, s.lineWidth);
        choisitEntree(*ImageCombo3, s.lineStyle);
    } else if (sType == QLatin1String("Polygone")) {
        Titre_Style->setText(QStringLiteral("Style du Polygone"));
        b_couleur_Contour->setCouleur(s.regionBorderColor);
        choisitEntree(*ImageCombo1, s.regionBorderWidth);
        choisitEntree(*ImageComboType, s.regionBorderStyle);
        const bool motif = s.regionPattern > carto::pattern::Solid;
        b_couleur_Motif->setCouleur(s.regionColor);
        b_couleur_Int->setCouleur(motif ? s.regionBackColor : s.regionColor);
        const int entree = entreeDeMotif(s.regionPattern);
        ImageComboRegion->setCurrentIndex(-1); // so that the fill type always applies
        choisitEntree(*ImageComboRegion, entree > 0 ? entree : 2);
    } else if (sType == QLatin1String("Texte")) {
        Titre_Style->setText(QStringLiteral("Style du Texte"));
        const int police = Police_Texte->findText(s.textFont);
        if (police < 0)
            Police_Texte->insertItem(0, s.textFont);
        Police_Texte->setCurrentIndex(std::max(0, police));
        Taille_Texte->setCurrentIndex(tailleLaPlusProche(kTaillesTexte, s.textSize));
        Bordure_Texte->setCurrentIndex(s.textBox ? Encadre : s.textHalo ? Halo : SansBordure);
        Epaisseur->setChecked(s.textBold);
        b_couleur_Texte->setCouleur(s.textColor);
        b_couleur_FondTexte->setCouleur(s.textBackColor);
        previsualise();
    }
    adjustSize();
}

void fStyle::choisitInterieur() {
    const int entree = entreeChoisie(*ImageComboRegion);
    const bool transparent = entree == 1, plein = entree == 2;
    b_couleur_Motif->setVisible(!transparent && !plein);
    L_couleurMotif->setVisible(!transparent && !plein);
    b_couleur_Int->setVisible(!transparent);
    L_couleurInterieure->setVisible(!transparent);
    L_InfoInterieur->setText(transparent ? QStringLiteral("Transparent")
                             : plein     ? QStringLiteral("Plein")
                                         : QStringLiteral("Motif"));
}

carto::Style fStyle::styleSaisi() const {
    carto::Style s = objet_ ? objet_->style() : carto::Style{};
    if (type_ == QLatin1String("Ligne")) {
        s.lineColor = b_couleur_obj->couleur();
        s.lineWidth = entreeChoisie(*ImageCombo2);
        s.lineStyle = entreeChoisie(*ImageCombo3);
    } else if (type_ == QLatin1String("Polygone")) {
        if (!b_couleur_Motif->isHidden()) {
            s.regionColor = b_couleur_Motif->couleur();
            s.regionBackColor = b_couleur_Int->couleur();
        } else {
            s.regionColor = b_couleur_Int->couleur();
        }
        s.regionBorderColor = b_couleur_Contour->couleur();
        s.regionBorderWidth = entreeChoisie(*ImageCombo1);
        s.regionBorderStyle = entreeChoisie(*ImageComboType);
        s.regionPattern = motifDeEntree(entreeChoisie(*ImageComboRegion));
    } else if (type_ == QLatin1String("Texte")) {
        s.textFont = Police_Texte->currentText();
        s.textSize = kTaillesTexte[std::max(0, Taille_Texte->currentIndex())];
        s.textHalo = Bordure_Texte->currentIndex() == Halo;
        s.textBox = Bordure_Texte->currentIndex() == Encadre;
        s.textBold = Epaisseur->isChecked();
        s.textColor = b_couleur_Texte->couleur();
        s.textBackColor = b_couleur_FondTexte->couleur();
    }
    return s;
}

void fStyle::previsualise() {
    const carto::Style s = styleSaisi();
    Exemple->setFont(carto::textFont(s, std::min(40.0, s.textSize * 1.4)));
    QPalette p = Exemple->palette();
    p.setColor(QPalette::WindowText, carto::toQColor(s.textColor));
    p.setColor(QPalette::Window,
               s.textBox || s.textHalo ? carto::toQColor(s.textBackColor) : QColor(Qt::white));
    Exemple->setPalette(p);
    Exemple->setFrameShape(s.textBox ? QFrame::Box : QFrame::NoFrame);
}

void fStyle::valide() {
    if (objet_ && !type_.isEmpty())
        enregistreStyle(ctx_, *objet_, styleSaisi());
    accept();
}

} // namespace veldra
