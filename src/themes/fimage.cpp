#include "themes/fimage.h"

#include "base/erreur.h"
#include "base/teste_fichier.h"
#include "context/calques.h"
#include "context/contexte.h"
#include "context/disposition.h"
#include "context/garde.h"
#include "context/sablier.h"
#include "themes/ecriture_lien.h"
#include "themes/lecture_photo.h"
#include "themes/vue_image.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScrollBar>
#include <QToolButton>
#include <cmath>

namespace veldra {

namespace {

constexpr QSize kVuePixels(600, 450);
constexpr double kPasZoom = 1.5;
constexpr double kMinTwips = 100;

template <typename W> W* nomme(W* w, const char* nom) {
    w->setObjectName(QString::fromLatin1(nom));
    return w;
}

QScrollBar* barre(Qt::Orientation sens, QWidget* parent, const char* nom) {
    auto* b = nomme(new QScrollBar(sens, parent), nom);
    b->setRange(0, FImage::kDefilement);
    QSizePolicy p = b->sizePolicy();
    p.setRetainSizeWhenHidden(true);
    b->setSizePolicy(p);
    b->hide();
    return b;
}

} // namespace

FImage::FImage(Contexte& ctx, std::optional<qint64> terrain, QWidget* parent)
    : QDialog(parent ? parent : &ctx.controle), ObOCXT(&ctx), twips_(twipsParPixel(ctx)),
      terrain_(terrain) {
    setObjectName(QStringLiteral("FImage"));
    setWindowTitle(QStringLiteral("Photographie"));
    picImg = nomme(new QFrame(this), "picImg");
    picImg->setFixedSize(kVuePixels);
    picImg->setFrameShape(QFrame::NoFrame);
    picImg->setAutoFillBackground(true);
    QPalette fond = picImg->palette();
    fond.setColor(QPalette::Window, QColor(64, 64, 64));
    picImg->setPalette(fond);
    img2Show = nomme(new VueImage(picImg), "img2Show");
    img2Show->setPalette(fond);
    img2Show->hide();
    horizontalScroll = barre(Qt::Horizontal, this, "horizontalScroll");
    verticalScroll = barre(Qt::Vertical, this, "verticalScroll");

    const auto outil = [this](const char* nom, const QString& texte, const QString& bulle) {
        auto* b = nomme(new QToolButton(this), nom);
        b->setText(texte);
        b->setToolTip(bulle);
        b->setMinimumSize(32, 28);
        b->setEnabled(false);
        return b;
    };
    cmdZoomIn = outil("cmdZoomIn", QStringLiteral("+"), QStringLiteral("Zoom +"));
    cmdZoomOut = outil("cmdZoomOut", QStringLiteral("−"), QStringLiteral("Zoom -"));
    cmdIniSize = outil("cmdIniSize", QStringLiteral("1:1"), QStringLiteral("Taille réelle"));
    Btn_LierImage =
        nomme(new QPushButton(QStringLiteral("Lier une photo…"), this), "Btn_LierImage");
    Btn_Supprimer =
        nomme(new QPushButton(QStringLiteral("Supprimer le lien"), this), "Btn_Supprimer");
    Btn_Fermer = nomme(new QPushButton(QStringLiteral("Fermer"), this), "Btn_Fermer");
    Btn_LierImage->setEnabled(false);
    Btn_Supprimer->setEnabled(false);
    Btn_LierImage->setAutoDefault(false);
    Btn_Supprimer->setAutoDefault(false);

    auto* grille = new QGridLayout;
    grille->setSpacing(0);
    grille->addWidget(picImg, 0, 0);
    grille->addWidget(verticalScroll, 0, 1);
    grille->addWidget(horizontalScroll, 1, 0);
    auto* boutons = new QHBoxLayout;
    for (QWidget* w : std::initializer_list<QWidget*>{cmdZoomIn, cmdZoomOut, cmdIniSize})
        boutons->addWidget(w);
    boutons->addStretch(1);
    boutons->addWidget(Btn_LierImage);
    boutons->addWidget(Btn_Supprimer);
    boutons->addWidget(Btn_Fermer);
    auto* pile = new QVBoxLayout(this);
    pile->addLayout(grille);
    pile->addLayout(boutons);
    setSizeGripEnabled(false);
    layout()->setSizeConstraint(QLayout::SetFixedSize);

    connect(cmdZoomIn, &QToolButton::clicked, this, garde(ctx, [this] { zoomPlus(); }));
    connect(cmdZoomOut, &QToolButton::clicked, this, garde(ctx, [this] { zoomMoins(); }));
    connect(cmdIniSize, &QToolButton::clicked, this, garde(ctx, [this] { tailleNaturelle(); }));
    connect(Btn_LierImage, &QPushButton::clicked, this, garde(ctx, [this] { lieImage(); }));
    connect(Btn_Supprimer, &QPushButton::clicked, this, garde(ctx, [this] { supprimeLien(); }));
    connect(Btn_Fermer, &QPushButton::clicked, this, &QDialog::accept);
    for (QScrollBar* b : {horizontalScroll, verticalScroll}) {
        connect(b, &QScrollBar::valueChanged, this, [this] { defile(); });
        connect(b, &QScrollBar::sliderMoved, this, [this] { defile(); });
    }
}

FImage::~FImage() = default;

QSizeF FImage::vueTwips() const {
    return QSizeF(picImg->width() * twips_, picImg->height() * twips_);
}

QString FImage::fichier(const QString& chemin) const {
    return ObOCXT ? cheminDansDossier(chemin, ObOCXT->dossierControle) : chemin;
}

const QImage& FImage::pleine(const QString& f) {
    if (pleine_.isNull() || fichierPleine_ != f) {
        pleine_ = lisImage(f);
        fichierPleine_ = f;
    }
    return pleine_;
}

void FImage::erreur(const QString& texte, const QString& titre) {
    if (ObOCXT)
        ObOCXT->prompter().message(texte, boutons::Critique, titre);
}

void FImage::boutonsZoom(bool actifs) {
    for (QToolButton* b : {cmdIniSize, cmdZoomIn, cmdZoomOut})
        b->setEnabled(actifs);
}

void FImage::ChargeImage(const QVariant& chemin) {
    const QString texte = chemin.toString();
    if (texte.trimmed().isEmpty()) {
        Droits();
        return;
    }
    charge_ = true;
    const Sablier sablier;
    chemin_ = texte;
    try {
        const QSize pixels = tailleImage(fichier(texte));
        naturelle_ = QSizeF(pixels) * twips_;
        // Fitted: the height first, then the width, proportions kept.
        double w = naturelle_.width(), h = naturelle_.height();
        const QSizeF vue = vueTwips();
        if (h > vue.height()) {
            w *= vue.height() / h;
            h = vue.height();
        }
        if (w > vue.width()) {
            h *= vue.width() / w;
            w = vue.width();
        }
        ImageEdit(texte, QSizeF(w, h));
    } catch (const Erreur& e) {
        if (ObOCXT)
            ObOCXT->prompter().message(e.description(), boutons::Ok, QStringLiteral("ChargeImage"));
        // A link to a file that cannot be shown can still be removed.
        Droits();
        return;
    }
    boutonsZoom(true);
    Droits();
}

void FImage::ImageEdit(const QString& chemin, std::optional<QSizeF> ajuste) {
    const QString f = fichier(chemin);
    if (ajuste) {
        const QSize pixels(std::max(1, int(std::lround(ajuste->width() / twips_))),
                           std::max(1, int(std::lround(ajuste->height() / twips_))));
        apercu_ = lisImage(f, pixels);
        fichierApercu_ = f;
        taille_ = *ajuste;
    } else {
        naturelle_ = QSizeF(pleine(f).size()) * twips_;
        taille_ = naturelle_;
    }
    setWindowTitle(chemin);
    peint();
    barres();
}

void FImage::peint() {
    const QSize pixels(std::max(1, int(std::lround(taille_.width() / twips_))),
                       std::max(1, int(std::lround(taille_.height() / twips_))));
    const bool apercuSuffit = !apercu_.isNull() && fichierApercu_ == fichier(chemin_) &&
                              pixels.width() <= apercu_.width() + 1 &&
                              pixels.height() <= apercu_.height() + 1;
    img2Show->setImage(apercuSuffit ? apercu_ : pleine(fichier(chemin_)));
    img2Show->resize(pixels);
}

void FImage::barres() {
    const QSizeF vue = vueTwips();
    horizontalScroll->setVisible(taille_.width() > vue.width() + 0.5);
    verticalScroll->setVisible(taille_.height() > vue.height() + 0.5);
    // The handle shows how much of the picture the viewport holds.
    const auto page = [](double image, double vue) {
        return image > vue ? std::clamp(int(kDefilement * vue / (image - vue)), 1, 1000000) : 1;
    };
    horizontalScroll->setPageStep(page(taille_.width(), vue.width()));
    verticalScroll->setPageStep(page(taille_.height(), vue.height()));
    horizontalScroll->setValue(0);
    verticalScroll->setValue(0);
    img2Show->move(0, 0);
    img2Show->show();
}

void FImage::defile() {
    const QSizeF vue = vueTwips();
    horizontalScroll->setSingleStep(std::clamp(int(taille_.width() / 10), 1, kDefilement));
    verticalScroll->setSingleStep(std::clamp(int(taille_.height() / 10), 1, kDefilement));
    const double x = -(taille_.width() - vue.width()) * horizontalScroll->value() / kDefilement;
    const double y = -(taille_.height() - vue.height()) * verticalScroll->value() / kDefilement;
    img2Show->move(int(std::lround(x / twips_)), int(std::lround(y / twips_)));
}

void FImage::zoomPlus() {
    if (img2Show->estVide())
        return;
    const QSizeF avant = taille_;
    try {
        const QSizeF apres = taille_ * kPasZoom;
        if (apres.width() / twips_ > kCoteMaxPixels || apres.height() / twips_ > kCoteMaxPixels)
            throw Erreur(err::Depassement, QStringLiteral("Image trop grande."));
        taille_ = apres;
        peint();
    } catch (const Erreur&) {
        // Nothing was shown bigger: the picture stays as it was.
        taille_ = avant;
        erreur(QStringLiteral("L'image ne peut plus être agrandie !"));
        return;
    }
    barres();
}

void FImage::zoomMoins() {
    if (img2Show->estVide())
        return;
    if (taille_.width() < kMinTwips || taille_.height() < kMinTwips) {
        erreur(QStringLiteral("L'image ne peut plus être rétrécie !"));
        return;
    }
    taille_ /= kPasZoom;
    peint();
    barres();
}

void FImage::tailleNaturelle() {
    if (chemin_.trimmed().isEmpty())
        return;
    const Sablier sablier;
    try {
        ImageEdit(chemin_);
    } catch (const Erreur& e) {
        if (ObOCXT)
            ObOCXT->prompter().message(e.description(), boutons::Ok, QStringLiteral("ChargeImage"));
    }
}

void FImage::Droits() {
    const bool edition = ObOCXT && ObOCXT->v.ModeEdition && terrain_.has_value();
    Btn_LierImage->setEnabled(edition && !charge_);
    Btn_Supprimer->setEnabled(edition && charge_);
}

void FImage::lieImage() {
    if (!ObOCXT || !terrain_)
        return;
    Contexte& ctx = *ObOCXT;
    const QString depart = chemin_.isEmpty() ? QString() : QFileInfo(fichier(chemin_)).path();
    QFileDialog choix(this, QStringLiteral("Choisissez la photo"), depart,
                      QStringLiteral("Photo (*.bmp *.jpg)"));
    choix.setObjectName(QStringLiteral("ChoixPhoto"));
    choix.setFileMode(QFileDialog::ExistingFile);
    choix.setOption(QFileDialog::DontUseNativeDialog);
    if (ctx.montreModal(choix) != QDialog::Accepted || choix.selectedFiles().isEmpty())
        return;
    const QString choisi = choix.selectedFiles().constFirst();
    if (choisi.trimmed().isEmpty())
        return;
    const Sablier sablier;
    try {
        // A file that is not a picture is never linked.
        pleine(fichier(choisi));
        ecritLien(ctx, calqueOuvert(ctx.v.Calque_Tombe, "Tombes"), {*terrain_}, choisi,
                  carto::UndoStep{QStringLiteral("Lier une photo")});
    } catch (const Erreur& e) {
        ctx.prompter().message(e.description(), boutons::Ok, QStringLiteral("Btn_LierImage"));
        return;
    }
    chemin_ = choisi;
    charge_ = true;
    ImageEdit(choisi);
    boutonsZoom(true);
    Droits();
}

void FImage::supprimeLien(bool pasUtilisateur) {
    if (!ObOCXT || !terrain_)
        return;
    Contexte& ctx = *ObOCXT;
    ecritLien(ctx, calqueOuvert(ctx.v.Calque_Tombe, "Tombes"), {*terrain_}, QStringLiteral(" "),
              pasUtilisateur
                  ? std::optional(carto::UndoStep{QStringLiteral("Supprimer le lien de la photo")})
                  : std::nullopt);
    videImage();
    charge_ = false;
    chemin_.clear();
    setWindowTitle(QStringLiteral("Photographie"));
    Droits();
}

void FImage::videImage() {
    img2Show->vide();
    img2Show->hide();
    apercu_ = pleine_ = QImage();
    fichierApercu_.clear();
    fichierPleine_.clear();
    taille_ = QSizeF();
    horizontalScroll->hide();
    verticalScroll->hide();
    boutonsZoom(false);
}

void FImage::done(int resultat) {
    videImage();
    ObOCXT = nullptr;
    QDialog::done(resultat);
}

} // namespace veldra
