#include "veldra-plan/layer_writer.h"

#include "veldra-plan/gdal_support.h"

namespace veldra::plantool {

LayerWriter::LayerWriter(GDALDataset& ds, const TableDef& table) {
    const QuietGdal quiet;
    const QString name = QString::fromUtf8(table.name);
    // Without a reference GDAL files the table under "undefined geographic" (srs_id 0) and
    // reads it back in degrees; the plan is a local plane in metres, "undefined Cartesian".
    OGRSpatialReference local;
    local.importFromWkt("LOCAL_CS[\"Undefined cartesian SRS\"]");
    layer_ = ds.CreateLayer(table.name, &local, wkbUnknown, nullptr);
    if (layer_ == nullptr)
        fail(QStringLiteral("Impossible de créer la table « %1 »").arg(name));
    const auto create = [&](const char* fieldName, OGRFieldType type, int width) {
        OGRFieldDefn defn(fieldName, type);
        defn.SetWidth(width);
        if (layer_->CreateField(&defn) != OGRERR_NONE)
            fail(QStringLiteral("Impossible de créer la colonne « %1 » de « %2 »")
                     .arg(QString::fromUtf8(fieldName), name));
    };
    for (const ColumnDef& f : table.fields)
        create(f.name, f.type, f.width);
    create(StyleColumn, OFTString, 0);
    styleField_ = field(StyleColumn);
}

int LayerWriter::field(const char* name) const {
    const int i = layer_->GetLayerDefn()->GetFieldIndex(name);
    if (i < 0)
        throw Erreur(err::AppelIncorrect,
                     QStringLiteral("Colonne inconnue : %1 de %2")
                         .arg(QString::fromUtf8(name), QString::fromUtf8(layer_->GetName())));
    return i;
}

OGRFeatureUniquePtr LayerWriter::blank() const {
    return OGRFeatureUniquePtr(OGRFeature::CreateFeature(layer_->GetLayerDefn()));
}

void LayerWriter::add(OGRFeature& feature, OGRGeometryUniquePtr geometry, const QString& style) {
    const QuietGdal quiet;
    feature.SetGeometryDirectly(geometry.release());
    setText(feature, styleField_, style);
    if (layer_->CreateFeature(&feature) != OGRERR_NONE)
        fail(QStringLiteral("Impossible d'écrire dans la table « %1 »")
                 .arg(QString::fromUtf8(layer_->GetName())));
}

void setText(OGRFeature& f, int field, const QString& value) {
    f.SetField(field, value.toUtf8().constData());
}

OGRGeometryUniquePtr polygon(const Ring& ring) {
    auto poly = std::make_unique<OGRPolygon>();
    if (ring.empty())
        return OGRGeometryUniquePtr(poly.release());
    auto shell = std::make_unique<OGRLinearRing>();
    shell->setNumPoints(static_cast<int>(ring.size()) + 1, FALSE);
    for (std::size_t i = 0; i <= ring.size(); ++i) {
        const Point& p = ring[i % ring.size()];
        shell->setPoint(static_cast<int>(i), p.x, p.y);
    }
    poly->addRingDirectly(shell.release());
    return OGRGeometryUniquePtr(poly.release());
}

OGRGeometryUniquePtr multiPolygon(const std::vector<Ring>& rings) {
    auto out = std::make_unique<OGRMultiPolygon>();
    for (const Ring& ring : rings)
        out->addGeometryDirectly(polygon(ring).release());
    return OGRGeometryUniquePtr(out.release());
}

OGRGeometryUniquePtr lineString(const Polyline& line) {
    auto out = std::make_unique<OGRLineString>();
    out->setNumPoints(static_cast<int>(line.size()), FALSE);
    for (std::size_t i = 0; i < line.size(); ++i)
        out->setPoint(static_cast<int>(i), line[i].x, line[i].y);
    return OGRGeometryUniquePtr(out.release());
}

OGRGeometryUniquePtr point(Point p) {
    auto out = std::make_unique<OGRPoint>(p.x, p.y);
    return OGRGeometryUniquePtr(out.release());
}

} // namespace veldra::plantool
