#include "photos_demo.h"

#include "carto/model/layer.h"
#include "control/veldra.h"
#include "registre.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace veldra::demo {

namespace {

// A headstone in a lawn under the sky, the family's name carved on it.
QImage photo(const QString& famille, int variante) {
    QImage image(640, 480, QImage::Format_RGB32);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient ciel(0, 0, 0, 300);
    ciel.setColorAt(0, QColor(110, 160, 215));
    ciel.setColorAt(1, QColor(205, 225, 240));
    p.fillRect(0, 0, 640, 300, ciel);
    p.fillRect(0, 300, 640, 180, QColor(90 + variante * 6, 140, 70));
    // A cypress behind the stone.
    p.setBrush(QColor(40, 80, 45));
    p.setPen(Qt::NoPen);
    p.drawEllipse(QRectF(60 + variante * 70, 120, 70, 200));
    const QColor pierre = variante % 2 ? QColor(170, 170, 165) : QColor(120, 115, 110);
    QPainterPath stele;
    stele.moveTo(220, 400);
    stele.lineTo(220, 180);
    stele.quadTo(320, 110, 420, 180);
    stele.lineTo(420, 400);
    stele.closeSubpath();
    p.setBrush(pierre);
    p.setPen(QPen(pierre.darker(140), 3));
    p.drawPath(stele);
    p.fillRect(190, 395, 260, 40, pierre.darker(115));
    p.setPen(QPen(pierre.darker(220), 6));
    p.drawLine(320, 175, 320, 235);
    p.drawLine(298, 195, 342, 195);
    QFont f(QStringLiteral("DejaVu Serif"));
    f.setPixelSize(26);
    f.setBold(true);
    p.setFont(f);
    p.drawText(QRectF(220, 250, 200, 40), Qt::AlignCenter, QStringLiteral("FAMILLE"));
    p.drawText(QRectF(200, 290, 240, 40), Qt::AlignCenter, famille.toUpper());
    return image;
}

} // namespace

QString dossierPhotos(const QString& cheminPlan) {
    return QFileInfo(cheminPlan).dir().filePath(QStringLiteral("Photos"));
}

QStringList creePhotosDemo(Veldra& plan, const Registre& registre, const QString& cheminPlan,
                           int n) {
    const QDir dossier(dossierPhotos(cheminPlan));
    if (!plan.Calque_Tombe || !QDir().mkpath(dossier.path()))
        return {};
    std::vector<int> cles;
    QHash<int, QString> liees;
    plan.Calque_Tombe->forEachFeature([&](const carto::Feature& t) {
        if (const int id = t.attribute(u"IDGCF").toInt(); id > 0) {
            cles.push_back(id);
            liees.insert(id, t.attribute(u"Photo").toString().trimmed());
        }
    });
    QStringList ecrites;
    if (cles.empty())
        return ecrites;
    const size_t pas = std::max<size_t>(1, cles.size() / size_t(n + 1));
    for (int k = 0; k < n && size_t(k + 1) * pas < cles.size(); ++k) {
        const int id = cles[size_t(k + 1) * pas];
        const QStringList titulaires = registre.personnes(id).titulaires;
        const QString famille =
            titulaires.isEmpty() ? QStringLiteral("Inconnue") : titulaires[0].section(u' ', 1);
        QString chemin = dossier.filePath(QStringLiteral("concession-%1.jpg").arg(id));
        if (!QFileInfo::exists(chemin) && !photo(famille, k).save(chemin, "JPG", 88))
            continue;
        QString cle = QString::number(id);
        if (liees.value(id) == chemin || plan.AddPhoto(cle, chemin))
            ecrites << chemin;
    }
    return ecrites;
}

} // namespace veldra::demo
