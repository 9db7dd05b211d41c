#include "style_string.h"

#include "carto/storage/gdal_handles.h"

#include <QRegularExpression>
#include <QStringList>
#include <cmath>
#include <memory>
#include <ogr_featurestyle.h>

namespace carto {
namespace {

// A text of s points is s / 100 map units high: in OGR terms, ground = paper x scale with
// 1 pt of paper = 0.01 m of ground.
constexpr double kGroundPerPaper = 0.01 / (0.0254 / 72.0);

// Pattern codes <-> OGR brush ids (the ones other tools know).
constexpr int kBrushOfPattern[] = {-1, 1, 0, 2, 3, 4, 5, 6, 7};
// Line style codes <-> OGR pen ids.
constexpr int kPenOfStyle[] = {-1, 1, 0, 2, 5, 6, 7, 4};

Colour colourOf(const char* text, Colour fallback) {
    int r = 0, g = 0, b = 0, a = 255;
    if (!text || !OGRStyleTool::GetRGBFromString(text, r, g, b, a))
        return fallback;
    return Colour(r | (g << 8) | (b << 16));
}

// Shortest decimal form, never in exponent notation.
QByteArray number(double d) {
    QByteArray s = QByteArray::number(d, 'f', 6);
    while (s.endsWith('0'))
        s.chop(1);
    if (s.endsWith('.'))
        s.chop(1);
    return s == "-0" ? QByteArray("0") : s;
}

// OGR converts sizes through millimetres with rounded factors: keep what was meant.
double roundedSize(double d) {
    return std::round(d * 1000.0) / 1000.0;
}

// The size of a SYMBOL or LABEL in points. Given in ground units ("s:5.35g"), as this
// writer writes it, it is read from the text itself: s points are s / 100 metres, exactly,
// where OGR's conversion would shave a little off at every save. Other units go through
// OGR's conversion.
double sizeInPoints(const QByteArray& toolText, double converted) {
    static const QRegularExpression strings(QStringLiteral(R"("(?:[^"\\]|\\.)*")"));
    static const QRegularExpression ground(QStringLiteral("(?:^|[(,])s:([-+0-9.eE]+)g(?=[,)])"));
    // Quoted names and texts may hold anything, "s:1g" included: they are left out.
    const QString bare = QString::fromUtf8(toolText).replace(strings, QStringLiteral("\"\""));
    const QRegularExpressionMatch m = ground.match(bare);
    bool ok = false;
    const double metres = m.hasMatch() ? m.captured(1).toDouble(&ok) : 0;
    return ok ? roundedSize(metres * 100) : roundedSize(converted);
}

// The numbers of the ids "<prefix>N" in an id list such as "veldra-brush-14,ogr-brush-4".
int idNumber(const char* ids, const char* prefix) {
    if (!ids)
        return -1;
    for (const QByteArray& id : QByteArray(ids).split(',')) {
        const QByteArray t = id.trimmed();
        if (t.startsWith(prefix)) {
            bool ok = false;
            const int n = t.mid(int(qstrlen(prefix))).toInt(&ok);
            if (ok)
                return n;
        }
    }
    return -1;
}

int codeFromIds(const char* ids, const char* own, const char* ogr, const int* table, int size,
                int fallback) {
    if (const int n = idNumber(ids, own); n >= 0)
        return n;
    const int o = idNumber(ids, ogr);
    for (int code = 0; code < size; ++code)
        if (o >= 0 && table[code] == o)
            return code;
    return fallback;
}

QByteArray idsFor(int code, const char* own, const char* ogr, const int* table, int size) {
    const int o = code >= 0 && code < size ? table[code] : -1;
    QByteArray ids = QByteArray(own) + QByteArray::number(code);
    if (o >= 0)
        ids += "," + QByteArray(ogr) + QByteArray::number(o);
    return "\"" + ids + "\"";
}

// A quoted string of the style syntax: backslashes and quotes escaped, so that a name or
// a text ending in a backslash cannot swallow its closing quote.
QByteArray quoted(const QString& s) {
    QString escaped = s;
    escaped.replace(u'\\', QStringLiteral("\\\\"));
    escaped.replace(u'"', QStringLiteral("\\\""));
    return "\"" + escaped.toUtf8() + "\"";
}

} // namespace

QByteArray colourText(Colour c) {
    return QByteArray("#") +
           QByteArray::number((c & 0xFF) << 16 | (c & 0xFF00) | ((c >> 16) & 0xFF), 16)
               .rightJustified(6, '0')
               .toUpper();
}

ParsedStyle parseStyleString(const QByteArray& ogrStyle) {
    ParsedStyle out;
    if (ogrStyle.trimmed().isEmpty())
        return out;
    const gdal::QuietErrors quiet; // a foreign string OGR cannot read gives the defaults
    OGRStyleMgr mgr;
    if (!mgr.InitStyleString(ogrStyle.constData()))
        return out;
    Style& s = out.style;
    bool brushSeen = false;
    GBool isDefault = FALSE;
    for (int i = 0; i < mgr.GetPartCount(); ++i) {
        const std::unique_ptr<OGRStyleTool> tool(mgr.GetPart(i));
        if (!tool)
            continue;
        const QByteArray toolText(tool->GetStyleString()); // as written, before any unit change
        switch (tool->GetType()) {
        case OGRSTCPen: {
            auto* pen = static_cast<OGRStylePen*>(tool.get());
            pen->SetUnit(OGRSTUPixel);
            const Colour c = colourOf(pen->Color(isDefault), 0);
            const double w = pen->Width(isDefault);
            const int width = isDefault ? 1 : std::max(0, int(std::lround(w)));
            const int st = codeFromIds(pen->Id(isDefault), "veldra-pen-", "ogr-pen-", kPenOfStyle,
                                       int(std::size(kPenOfStyle)), linestyle::Solid);
            s.lineColor = s.regionBorderColor = c;
            s.lineWidth = s.regionBorderWidth = width;
            s.lineStyle = s.regionBorderStyle = st;
            break;
        }
        case OGRSTCBrush: {
            auto* brush = static_cast<OGRStyleBrush*>(tool.get());
            brushSeen = true;
            s.regionColor = colourOf(brush->ForeColor(isDefault), 0xFFFFFF);
            const char* back = brush->BackColor(isDefault);
            s.regionTransparent = isDefault || !back;
            s.regionBackColor = colourOf(back, 0xFFFFFF);
            s.regionPattern =
                codeFromIds(brush->Id(isDefault), "veldra-brush-", "ogr-brush-", kBrushOfPattern,
                            int(std::size(kBrushOfPattern)), pattern::Solid);
            break;
        }
        case OGRSTCSymbol: {
            auto* sym = static_cast<OGRStyleSymbol*>(tool.get());
            sym->SetUnit(OGRSTUPoints, kGroundPerPaper);
            out.kind = FeatureKind::Symbol;
            if (const int n = idNumber(sym->Id(isDefault), "font-sym-"); n > 0)
                s.symbolCharacter = n;
            s.symbolColor = colourOf(sym->Color(isDefault), 0);
            const double size = sizeInPoints(toolText, sym->Size(isDefault));
            if (!isDefault && size > 0)
                s.symbolSize = size;
            if (const char* f = sym->FontName(isDefault); f && !isDefault)
                s.symbolFont = QString::fromUtf8(f);
            break;
        }
        case OGRSTCLabel: {
            auto* label = static_cast<OGRStyleLabel*>(tool.get());
            label->SetUnit(OGRSTUPoints, kGroundPerPaper);
            out.kind = FeatureKind::Text;
            if (const char* f = label->FontName(isDefault); f && !isDefault)
                s.textFont = QString::fromUtf8(f);
            const double size = sizeInPoints(toolText, label->Size(isDefault));
            if (!isDefault && size > 0)
                s.textSize = size;
            const char* t = label->TextString(isDefault);
            if (t && !isDefault) {
                const QString text = QString::fromUtf8(t);
                if (text.startsWith(u'{') && text.endsWith(u'}'))
                    out.textField = text.mid(1, text.size() - 2).trimmed();
                else
                    out.literalText = text;
            }
            s.textRotation = label->Angle(isDefault);
            s.textColor = colourOf(label->ForeColor(isDefault), 0);
            if (const char* box = label->BackColor(isDefault); box && !isDefault) {
                s.textBox = true;
                s.textBackColor = colourOf(box, 0xFFFFFF);
            }
            if (const char* halo = label->OutlineColor(isDefault); halo && !isDefault) {
                s.textHalo = true;
                s.textBackColor = colourOf(halo, 0xFFFFFF);
            }
            if (const char* ombre = label->ShadowColor(isDefault); ombre && !isDefault)
                s.textShadow = true;
            s.textBold = label->Bold(isDefault) != 0;
            s.textUnderline = label->Underline(isDefault) != 0;
            break;
        }
        default:
            break;
        }
    }
    if (!brushSeen && !out.kind)
        s.regionPattern = pattern::None;
    return out;
}

QByteArray styleString(FeatureKind kind, const Style& s, const QString& text,
                       const QString& textField) {
    QByteArray out;
    switch (kind) {
    case FeatureKind::Region:
        out = "PEN(c:" + colourText(s.regionBorderColor) +
              ",w:" + QByteArray::number(s.regionBorderWidth) + "px,id:" +
              idsFor(s.regionBorderStyle, "veldra-pen-", "ogr-pen-", kPenOfStyle,
                     int(std::size(kPenOfStyle))) +
              ");BRUSH(fc:" + colourText(s.regionColor);
        if (!s.regionTransparent && s.regionPattern > pattern::Solid)
            out += ",bc:" + colourText(s.regionBackColor);
        out += ",id:" +
               idsFor(s.regionPattern, "veldra-brush-", "ogr-brush-", kBrushOfPattern,
                      int(std::size(kBrushOfPattern))) +
               ")";
        break;
    case FeatureKind::Line:
        out = "PEN(c:" + colourText(s.lineColor) + ",w:" + QByteArray::number(s.lineWidth) +
              "px,id:" +
              idsFor(s.lineStyle, "veldra-pen-", "ogr-pen-", kPenOfStyle,
                     int(std::size(kPenOfStyle))) +
              ")";
        break;
    case FeatureKind::Symbol:
        out = "SYMBOL(id:\"font-sym-" + QByteArray::number(s.symbolCharacter) +
              ",ogr-sym-0\",f:" + quoted(s.symbolFont) + ",c:" + colourText(s.symbolColor) +
              ",s:" + number(s.symbolSize / 100.0) + "g)";
        break;
    case FeatureKind::Text:
        out = "LABEL(f:" + quoted(s.textFont) + ",s:" + number(s.textSize / 100.0) +
              "g,t:" + (textField.isEmpty() ? quoted(text) : "{" + textField.toUtf8() + "}") +
              ",c:" + colourText(s.textColor) + ",a:" + number(s.textRotation) + ",p:5";
        if (s.textBold)
            out += ",bo:1";
        if (s.textUnderline)
            out += ",un:1";
        if (s.textHalo)
            out += ",o:" + colourText(s.textBackColor);
        if (s.textBox)
            out += ",b:" + colourText(s.textBackColor);
        if (s.textShadow)
            out += ",h:#808080";
        out += ")";
        break;
    }
    return out;
}

} // namespace carto
