#pragma once
// FImage: the photo viewer. It shows the photograph linked to one plot fitted into its
// viewport, zooms it by steps of 1.5, shows it at its natural size, scrolls it, and, in
// edit mode, links a photo file to the plot or removes the link. Sizes are kept in twips
// as the control's layout keeps them; the picture is decoded at the size it is shown
// (the whole picture only once a zoom or the natural size asks for it).
//
// The viewer works on the plot it is given: the first selected plot for Btn_Visu, the
// plot found by CheminPhoto. Without a plot there is nothing to link or unlink.

#include <QDialog>
#include <QImage>
#include <QSizeF>
#include <QString>
#include <QVariant>
#include <optional>

class QFrame;
class QPushButton;
class QScrollBar;
class QToolButton;

namespace veldra {

class Contexte;
class VueImage;

class FImage : public QDialog {
    Q_OBJECT
public:
    // The scroll bars' range: a position is a fraction of the overflow, in 12000ths.
    static constexpr int kDefilement = 12000;
    // No side of the zoomed picture grows beyond this many pixels.
    static constexpr int kCoteMaxPixels = 32767;

    FImage(Contexte& ctx, std::optional<qint64> terrain, QWidget* parent = nullptr);
    ~FImage() override;

    // The photo fitted into the viewport; a path that trims to nothing gives an empty
    // viewer whose buttons follow the edit rights. A file that cannot be shown is said in
    // a message titled "ChargeImage".
    void ChargeImage(const QVariant& chemin);
    // Link and unlink follow the edit rights and whether a picture is loaded.
    void Droits();
    // The picture at its natural size, or at `ajuste` (twips); Erreur when unreadable.
    void ImageEdit(const QString& chemin, std::optional<QSizeF> ajuste = std::nullopt);

    void zoomPlus();
    void zoomMoins();
    void tailleNaturelle();
    // Btn_LierImage: a file chosen, checked and linked, one step of the user's history.
    void lieImage();
    // Btn_Supprimer: the plot's link removed (" "); a step of the user's history unless
    // the control itself removes a link whose file has gone.
    void supprimeLien(bool pasUtilisateur = true);

    QSizeF tailleTwips() const { return taille_; }
    QSizeF naturelleTwips() const { return naturelle_; }
    bool imageChargee() const { return charge_; }
    const QString& chemin() const { return chemin_; }

    // The control, while the viewer is open (released when it closes).
    Contexte* ObOCXT;

    QFrame* picImg;
    VueImage* img2Show;
    QScrollBar* horizontalScroll;
    QScrollBar* verticalScroll;
    QToolButton* cmdZoomIn;
    QToolButton* cmdZoomOut;
    QToolButton* cmdIniSize;
    QPushButton* Btn_LierImage;
    QPushButton* Btn_Supprimer;
    QPushButton* Btn_Fermer;

protected:
    void done(int resultat) override;

private:
    QSizeF vueTwips() const;
    QString fichier(const QString& chemin) const;
    const QImage& pleine(const QString& fichier);
    // img2Show at the display size, from the decoded picture that is large enough.
    void peint();
    // Scroll bars shown when the picture overflows, both back to 0.
    void barres();
    void defile();
    void videImage();
    void boutonsZoom(bool actifs);
    void erreur(const QString& texte, const QString& titre = QStringLiteral("Erreur !"));

    double twips_; // per pixel
    std::optional<qint64> terrain_;
    QString chemin_;
    bool charge_ = false;
    QSizeF naturelle_, taille_;
    QImage apercu_, pleine_;
    QString fichierApercu_, fichierPleine_;
};

} // namespace veldra
