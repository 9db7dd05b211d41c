// The photo viewer: fitting, zooming and scrolling, linking and unlinking in edit mode as
// one step of the history, Btn_Visu with a file that has gone, and hostile pictures
// (huge, inflating, truncated, empty, not pictures, long or non-Latin names) that must
// end in a French message, never in a crash or an exhausted memory.
#include "carto/model/map.h"
#include "context/disposition.h"
#include "themes/fimage.h"
#include "themes/lecture_photo.h"
#include "themes/vue_image.h"
#include "themes_fixture.h"

#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QImageReader>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QToolButton>
#include <QtEndian>

using namespace veldra;

namespace {

// A picture whose left half is red and right half blue.
QImage deuxCouleurs(int w, int h) {
    QImage image(w, h, QImage::Format_RGB32);
    QPainter p(&image);
    p.fillRect(0, 0, w / 2, h, Qt::red);
    p.fillRect(w / 2, 0, w - w / 2, h, Qt::blue);
    return image;
}

QString ecrit(const QString& chemin, const QByteArray& octets) {
    QDir().mkpath(QFileInfo(chemin).path());
    QFile f(chemin);
    EXPECT_TRUE(f.open(QIODevice::WriteOnly)) << chemin.toStdString();
    f.write(octets);
    return chemin;
}

QByteArray encode(const QImage& image, const char* format, int qualite = 90) {
    QByteArray octets;
    QBuffer tampon(&octets);
    tampon.open(QIODevice::WriteOnly);
    image.save(&tampon, format, qualite);
    return octets;
}

quint32 crc32(const QByteArray& octets) {
    quint32 crc = 0xFFFFFFFFu;
    for (const char c : octets) {
        crc ^= quint8(c);
        for (int k = 0; k < 8; ++k)
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

QByteArray morceauPng(const char* type, const QByteArray& donnees) {
    QByteArray corps = QByteArray(type, 4) + donnees;
    QByteArray out(4, 0);
    qToBigEndian<quint32>(quint32(donnees.size()), out.data());
    out += corps;
    QByteArray crc(4, 0);
    qToBigEndian<quint32>(crc32(corps), crc.data());
    return out + crc;
}

// A true decompression bomb: a valid PNG of `cote` x `cote` black pixels, one bit each,
// a few tens of kilobytes inflating to gigabytes once decoded at 32 bits.
QByteArray bombePng(int cote) {
    QByteArray ihdr(13, 0);
    qToBigEndian<quint32>(quint32(cote), ihdr.data());
    qToBigEndian<quint32>(quint32(cote), ihdr.data() + 4);
    ihdr[8] = 1; // bit depth
    ihdr[9] = 0; // greyscale
    const QByteArray brut(qsizetype(cote) * (1 + (cote + 7) / 8), 0);
    const QByteArray zlib = qCompress(brut, 9).mid(4); // without Qt's length prefix
    return QByteArray("\x89PNG\r\n\x1a\n", 8) + morceauPng("IHDR", ihdr) +
           morceauPng("IDAT", zlib) + morceauPng("IEND", {});
}

// A BMP whose header claims `w` x `h` pixels and that holds none of them.
QByteArray bmpMenteur(int w, int h) {
    QByteArray b(54, 0);
    b[0] = 'B';
    b[1] = 'M';
    qToLittleEndian<quint32>(54, b.data() + 2);
    qToLittleEndian<quint32>(54, b.data() + 10);
    qToLittleEndian<quint32>(40, b.data() + 14);
    qToLittleEndian<qint32>(w, b.data() + 18);
    qToLittleEndian<qint32>(h, b.data() + 22);
    qToLittleEndian<quint16>(1, b.data() + 26);
    qToLittleEndian<quint16>(24, b.data() + 28);
    return b;
}

// The JPEG with an EXIF block saying "turn 90 degrees clockwise to show" (orientation 6).
QByteArray avecOrientation(const QByteArray& jpeg, quint16 orientation) {
    QByteArray exif("Exif\0\0II*\0", 10);
    QByteArray n(4, 0);
    qToLittleEndian<quint32>(8, n.data());
    exif += n;
    QByteArray ifd(2 + 12 + 4, 0);
    qToLittleEndian<quint16>(1, ifd.data());
    qToLittleEndian<quint16>(0x0112, ifd.data() + 2);
    qToLittleEndian<quint16>(3, ifd.data() + 4);
    qToLittleEndian<quint32>(1, ifd.data() + 6);
    qToLittleEndian<quint16>(orientation, ifd.data() + 10);
    exif += ifd;
    QByteArray app1("\xFF\xE1", 2);
    QByteArray longueur(2, 0);
    qToBigEndian<quint16>(quint16(exif.size() + 2), longueur.data());
    return jpeg.left(2) + app1 + longueur + exif + jpeg.mid(2);
}

struct Visionneuse : PlanThemes {
    double twips = twipsParPixel(c->contexte());
    QString photo(const QString& nom, const QImage& image, const char* format = "JPG") {
        return ecrit(dir.filePath(QStringLiteral("photos/") + nom), encode(image, format));
    }
    const carto::Feature premier() { return tenues().front(); }
    void selectionne(const carto::Feature& t) {
        tombes().selectOnly(carto::Features(&tombes(), {t.fid()}));
    }
};

} // namespace

TEST(Visionneuse, FitsZoomsAndScrollsThePicture) {
    Visionneuse f;
    const QString chemin = f.photo(QStringLiteral("a.jpg"), deuxCouleurs(800, 600));
    FImage v(f.c->contexte(), std::nullopt);
    v.picImg->setFixedSize(400, 400);
    v.ChargeImage(chemin);
    ASSERT_TRUE(f.messages.empty());
    // 800 x 600 pixels into 400 x 400: 400 x 300, no scroll bar.
    EXPECT_NEAR(v.tailleTwips().width(), 400 * f.twips, 0.01);
    EXPECT_NEAR(v.tailleTwips().height(), 300 * f.twips, 0.01);
    EXPECT_EQ(v.img2Show->size(), QSize(400, 300));
    EXPECT_TRUE(v.horizontalScroll->isHidden());
    EXPECT_TRUE(v.verticalScroll->isHidden());
    EXPECT_EQ(v.windowTitle(), chemin);
    EXPECT_TRUE(v.cmdZoomIn->isEnabled());
    // What is painted: red on the left, blue on the right.
    const QImage vu = v.img2Show->grab().toImage();
    EXPECT_EQ(vu.pixelColor(50, 150).red() > 200, true);
    EXPECT_EQ(vu.pixelColor(350, 150).blue() > 200, true);

    v.cmdZoomIn->click();
    EXPECT_NEAR(v.tailleTwips().width(), 600 * f.twips, 0.01);
    EXPECT_NEAR(v.tailleTwips().height(), 450 * f.twips, 0.01);
    EXPECT_FALSE(v.horizontalScroll->isHidden());
    EXPECT_FALSE(v.verticalScroll->isHidden());
    // At the end of its course the scroll bar shows the picture's right edge.
    v.horizontalScroll->setValue(FImage::kDefilement);
    EXPECT_EQ(v.img2Show->x(), -200);
    EXPECT_EQ(v.horizontalScroll->singleStep(), int(600 * f.twips / 10));

    v.cmdIniSize->click();
    EXPECT_NEAR(v.tailleTwips().width(), 800 * f.twips, 0.01);
    EXPECT_EQ(v.img2Show->pos(), QPoint(0, 0));
    EXPECT_EQ(v.img2Show->image().size(), QSize(800, 600));
    v.cmdZoomOut->click();
    EXPECT_NEAR(v.tailleTwips().width(), 800 * f.twips / 1.5, 0.01);
    EXPECT_TRUE(f.messages.empty());
}

TEST(Visionneuse, RefusesToShrinkBelowAHundredTwipsOrToGrowWithoutBound) {
    Visionneuse f;
    // 10 pixels: 150 twips at 96 dpi.
    const QString chemin = f.photo(QStringLiteral("petite.png"), deuxCouleurs(10, 10), "PNG");
    FImage v(f.c->contexte(), std::nullopt);
    v.ChargeImage(chemin);
    const double w = v.tailleTwips().width();
    ASSERT_NEAR(w, 10 * f.twips, 0.01);
    v.cmdZoomOut->click();
    EXPECT_NEAR(v.tailleTwips().width(), w / 1.5, 0.01);
    while (v.tailleTwips().width() >= 100)
        v.cmdZoomOut->click();
    const double dernier = v.tailleTwips().width();
    ASSERT_EQ(f.messages.size(), 0u);
    v.cmdZoomOut->click();
    ASSERT_EQ(f.messages.size(), 1u);
    EXPECT_EQ(f.messages[0].texte, QStringLiteral("L'image ne peut plus être rétrécie !"));
    EXPECT_EQ(f.messages[0].titre, QStringLiteral("Erreur !"));
    EXPECT_EQ(f.messages[0].style, boutons::Critique);
    EXPECT_EQ(v.tailleTwips().width(), dernier);

    for (int i = 0; i < 40 && f.messages.size() == 1; ++i)
        v.cmdZoomIn->click();
    ASSERT_EQ(f.messages.size(), 2u);
    EXPECT_EQ(f.messages[1].texte, QStringLiteral("L'image ne peut plus être agrandie !"));
    EXPECT_LE(v.img2Show->width(), FImage::kCoteMaxPixels);
}

TEST(Visionneuse, AnEmptyPathGivesAnEmptyViewerAndRightsDecideTheButtons) {
    Visionneuse f;
    const carto::Feature t = f.premier();
    FImage sans(f.c->contexte(), t.fid());
    sans.ChargeImage(QStringLiteral("   "));
    EXPECT_FALSE(sans.imageChargee());
    EXPECT_FALSE(sans.Btn_LierImage->isEnabled()); // no edit rights
    EXPECT_FALSE(sans.Btn_Supprimer->isEnabled());
    EXPECT_FALSE(sans.cmdZoomIn->isEnabled());

    f.edition();
    FImage avec(f.c->contexte(), t.fid());
    avec.ChargeImage(QString());
    EXPECT_TRUE(avec.Btn_LierImage->isEnabled());
    EXPECT_FALSE(avec.Btn_Supprimer->isEnabled());
    FImage orpheline(f.c->contexte(), std::nullopt); // no plot: nothing to link
    orpheline.ChargeImage(QString());
    EXPECT_FALSE(orpheline.Btn_LierImage->isEnabled());
    const QString chemin = f.photo(QStringLiteral("b.jpg"), deuxCouleurs(40, 30));
    FImage chargee(f.c->contexte(), t.fid());
    chargee.ChargeImage(chemin);
    EXPECT_FALSE(chargee.Btn_LierImage->isEnabled());
    EXPECT_TRUE(chargee.Btn_Supprimer->isEnabled());
}

TEST(Visionneuse, LinksAndUnlinksInEditModeAsStepsOfTheHistory) {
    Visionneuse f;
    f.c->setAnnulation(true);
    f.edition();
    const carto::Feature t = f.premier();
    f.selectionne(t);
    const QString chemin = f.photo(QStringLiteral("c.jpg"), deuxCouleurs(120, 90));
    const QString pasImage = ecrit(f.dir.filePath(QStringLiteral("photos/faux.jpg")), "texte");
    QString choisi = pasImage;
    int dialogues = 0;
    f.dialogues([&](QDialog& d) {
        ++dialogues;
        if (auto* choix = qobject_cast<QFileDialog*>(&d)) {
            EXPECT_EQ(choix->windowTitle(), QStringLiteral("Choisissez la photo"));
            choix->selectFile(choisi);
            static_cast<QDialog*>(choix)->accept(); // QFileDialog::accept, checked
            return;
        }
        auto* v = qobject_cast<FImage*>(&d);
        ASSERT_NE(v, nullptr);
        ASSERT_TRUE(v->Btn_LierImage->isEnabled());
        v->Btn_LierImage->click(); // not a picture: said, and nothing linked
        EXPECT_FALSE(v->imageChargee());
        choisi = chemin;
        v->Btn_LierImage->click();
        EXPECT_TRUE(v->imageChargee());
        EXPECT_TRUE(v->Btn_Supprimer->isEnabled());
        EXPECT_FALSE(v->Btn_LierImage->isEnabled());
        v->Btn_Supprimer->click();
        EXPECT_FALSE(v->imageChargee());
        EXPECT_TRUE(v->Btn_LierImage->isEnabled());
        v->accept();
    });
    f.w<QPushButton>("Btn_Visu")->click();
    EXPECT_EQ(dialogues, 3);
    ASSERT_EQ(f.messages.size(), 1u);
    EXPECT_EQ(f.messages[0].titre, QStringLiteral("Btn_LierImage"));
    EXPECT_TRUE(f.messages[0].texte.contains(QStringLiteral("faux.jpg")));
    const auto photo = [&] { return f.tombes().feature(t.fid()).attribute(u"Photo").toString(); };
    EXPECT_EQ(photo(), QStringLiteral(" "));
    QUndoStack& h = *f.c->surface().Historique;
    ASSERT_EQ(h.count(), 2);
    EXPECT_EQ(h.text(0), QStringLiteral("Lier une photo"));
    h.undo();
    EXPECT_EQ(photo(), chemin);
    h.undo();
    EXPECT_NE(photo(), chemin);
}

TEST(Visionneuse, AFileThatHasGoneIsSaidOnceAndItsLinkRemoved) {
    Visionneuse f;
    f.c->setAnnulation(true);
    const carto::Feature t = f.premier();
    QString id = f.cleTexte(t), parti = f.dir.filePath(QStringLiteral("photos/partie.jpg"));
    ASSERT_TRUE(f.c->AddPhoto(id, parti));
    f.selectionne(t);
    bool vide = false;
    f.dialogues([&](QDialog& d) {
        vide = !static_cast<FImage&>(d).imageChargee();
        d.reject();
    });
    f.w<QPushButton>("Btn_Visu")->click();
    ASSERT_EQ(f.messages.size(), 1u);
    EXPECT_EQ(f.messages[0].texte, QStringLiteral("Le fichier qui était lié à cette concession "
                                                  "a été déplacé ou supprimé !"));
    EXPECT_TRUE(vide);
    EXPECT_EQ(f.tombes().feature(t.fid()).attribute(u"Photo").toString(), QStringLiteral(" "));
    EXPECT_EQ(f.c->surface().Historique->count(), 0); // the control's doing, not the user's
    f.w<QPushButton>("Btn_Visu")->click(); // the next view shows no photo, and says nothing
    EXPECT_EQ(f.messages.size(), 1u);

    // Nothing selected in the plots layer.
    f.tombes().clearSelection();
    f.c->surface().Btn_Visu->click();
    ASSERT_EQ(f.messages.size(), 2u);
    EXPECT_EQ(f.messages[1].titre, QStringLiteral("Btn_Visu_Click"));
}

TEST(Visionneuse, HonoursTheExifOrientation) {
    Visionneuse f;
    const QByteArray jpeg = encode(deuxCouleurs(80, 40), "JPG");
    const QString chemin =
        ecrit(f.dir.filePath(QStringLiteral("photos/tournee.jpg")), avecOrientation(jpeg, 6));
    EXPECT_EQ(tailleImage(chemin), QSize(40, 80));
    // Turned clockwise: the left half (red) is now on top.
    const QImage droite = lisImage(chemin);
    ASSERT_EQ(droite.size(), QSize(40, 80));
    EXPECT_GT(droite.pixelColor(20, 10).red(), 200);
    EXPECT_GT(droite.pixelColor(20, 70).blue(), 200);
    const QImage reduite = lisImage(chemin, QSize(20, 40));
    EXPECT_EQ(reduite.size(), QSize(20, 40));
    FImage v(f.c->contexte(), std::nullopt);
    v.ChargeImage(chemin);
    EXPECT_NEAR(v.naturelleTwips().height(), 80 * f.twips, 0.01);
}

TEST(Visionneuse, HostilePicturesEndInAFrenchMessage) {
    Visionneuse f;
    const int limiteHote = QImageReader::allocationLimit();
    const QString d = f.dir.filePath(QStringLiteral("hostiles/"));
    const QByteArray png = encode(deuxCouleurs(300, 300), "PNG");
    const QByteArray jpg = encode(deuxCouleurs(300, 300), "JPG");
    QString longue = d;
    while (longue.size() < 300)
        longue +=
            QStringLiteral("dossier-aux-noms-tres-longs-") + QString::number(longue.size()) + u'/';
    longue += QStringLiteral("photo.jpg");
    struct Cas {
        QString chemin;
        bool refusee;
    };
    const std::vector<Cas> cas = {
        {ecrit(d + "enorme.bmp", bmpMenteur(30000, 30000)), true},
        {ecrit(d + "bombe.png", bombePng(20000)), true},
        {ecrit(d + "tronquee.png", png.left(png.size() / 2)), true},
        {ecrit(d + "entete.jpg", jpg.left(200)), true},
        {ecrit(d + "vide.jpg", {}), true},
        {ecrit(d + "texte.jpg", "ceci n'est pas une photo\n"), true},
        {d + "absente.jpg", true},
        {ecrit(longue, jpg), false},
        {ecrit(d + QStringLiteral("фото-墓地-γ.jpg"), jpg), false},
    };
    ASSERT_GT(longue.size(), 300);
    for (const Cas& k : cas) {
        f.messages.clear();
        QElapsedTimer montre;
        montre.start();
        FImage v(f.c->contexte(), std::nullopt);
        v.ChargeImage(k.chemin);
        EXPECT_LT(montre.elapsed(), 3000) << k.chemin.toStdString();
        if (!k.refusee) {
            EXPECT_TRUE(f.messages.empty()) << k.chemin.toStdString();
            EXPECT_FALSE(v.img2Show->estVide());
            continue;
        }
        ASSERT_EQ(f.messages.size(), 1u) << k.chemin.toStdString();
        EXPECT_EQ(f.messages[0].titre, QStringLiteral("ChargeImage"));
        const QString& texte = f.messages[0].texte;
        EXPECT_TRUE(texte.startsWith(QStringLiteral("Le fichier")) ||
                    texte.startsWith(QStringLiteral("L'image")))
            << texte.toStdString();
        EXPECT_TRUE(v.img2Show->estVide());
        EXPECT_FALSE(v.cmdZoomIn->isEnabled());
    }
    // A JPEG cut in its middle shows what it holds, or is refused; never more.
    f.messages.clear();
    FImage v(f.c->contexte(), std::nullopt);
    v.ChargeImage(ecrit(d + "coupee.jpg", jpg.left(jpg.size() / 2)));
    EXPECT_TRUE(f.messages.empty() || f.messages[0].titre == QStringLiteral("ChargeImage"));
    // The host's own reader limit is back as it was.
    EXPECT_EQ(QImageReader::allocationLimit(), limiteHote);
}
