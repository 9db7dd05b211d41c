#include "themes/lecture_photo.h"

#include "base/erreur.h"

#include <QDir>
#include <QFileInfo>
#include <QImageReader>

namespace veldra {

namespace {

// The reader's limit is one for the process: ours applies while we read, and the host's
// own setting comes back after.
class LimiteAllocation {
public:
    LimiteAllocation() : avant_(QImageReader::allocationLimit()) {
        if (avant_ == 0 || avant_ > kMegaOctetsPhoto)
            QImageReader::setAllocationLimit(kMegaOctetsPhoto);
    }
    ~LimiteAllocation() { QImageReader::setAllocationLimit(avant_); }
    LimiteAllocation(const LimiteAllocation&) = delete;
    LimiteAllocation& operator=(const LimiteAllocation&) = delete;

private:
    int avant_;
};

QString nom(const QString& chemin) {
    const QString court = QFileInfo(chemin).fileName();
    return court.isEmpty() ? chemin : court;
}

Erreur illisible(const QImageReader& lecteur, const QString& chemin) {
    const QFileInfo info(chemin);
    if (!info.exists() || info.isDir())
        return Erreur(err::AccesRefuse, QStringLiteral("Le fichier « %1 » est introuvable.")
                                            .arg(QDir::toNativeSeparators(chemin)));
    if (info.size() == 0)
        return Erreur(err::ImageIllisible,
                      QStringLiteral("Le fichier « %1 » est vide.").arg(nom(chemin)));
    switch (lecteur.error()) {
    case QImageReader::InvalidDataError:
        return Erreur(
            err::ImageIllisible,
            QStringLiteral("L'image « %1 » est endommagée ou incomplète.").arg(nom(chemin)));
    case QImageReader::DeviceError:
        return Erreur(err::AccesRefuse,
                      QStringLiteral("Le fichier « %1 » ne peut pas être lu.").arg(nom(chemin)));
    default:
        return Erreur(
            err::ImageIllisible,
            QStringLiteral("Le fichier « %1 » n'est pas une image lisible.").arg(nom(chemin)));
    }
}

// Opens the reader and checks what the picture declares; its upright size.
QSize prepare(QImageReader& lecteur, const QString& chemin) {
    lecteur.setDecideFormatFromContent(true);
    lecteur.setAutoTransform(true);
    if (!lecteur.canRead())
        throw illisible(lecteur, chemin);
    QSize taille = lecteur.size();
    if (!taille.isValid())
        throw illisible(lecteur, chemin);
    if (taille.width() <= 0 || taille.height() <= 0 ||
        qint64(taille.width()) * taille.height() > kPixelsPhotoMax)
        throw Erreur(err::ImageIllisible,
                     QStringLiteral("L'image « %1 » est trop grande pour être affichée "
                                    "(%2 × %3 pixels).")
                         .arg(nom(chemin))
                         .arg(taille.width())
                         .arg(taille.height()));
    if (lecteur.transformation() & QImageIOHandler::TransformationRotate90)
        taille.transpose();
    return taille;
}

} // namespace

QSize tailleImage(const QString& chemin) {
    const LimiteAllocation limite;
    QImageReader lecteur(chemin);
    return prepare(lecteur, chemin);
}

QImage lisImage(const QString& chemin, QSize taille) {
    const LimiteAllocation limite;
    QImageReader lecteur(chemin);
    prepare(lecteur, chemin);
    if (taille.isValid() && !taille.isEmpty()) {
        // The reader scales before it turns the picture upright.
        if (lecteur.transformation() & QImageIOHandler::TransformationRotate90)
            taille.transpose();
        lecteur.setScaledSize(taille);
    }
    QImage image = lecteur.read();
    if (image.isNull())
        throw illisible(lecteur, chemin);
    return image;
}

} // namespace veldra
