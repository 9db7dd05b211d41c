// The plugin as Qt Designer uses it: loaded from its file, asked for its class, its header
// and a widget, whose design-time properties the property editor reads and writes.
#include <QMetaProperty>
#include <QPluginLoader>
#include <QWidget>
#include <QXmlStreamReader>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>
#include <gtest/gtest.h>
#include <memory>

namespace {

QDesignerCustomWidgetInterface* plugin() {
    static QPluginLoader loader(QStringLiteral(VELDRA_PLUGIN_DESIGNER));
    QObject* instance = loader.instance();
    EXPECT_NE(instance, nullptr) << qPrintable(loader.errorString());
    return qobject_cast<QDesignerCustomWidgetInterface*>(instance);
}

bool designable(const QObject& o, const char* name) {
    const QMetaObject* meta = o.metaObject();
    const int i = meta->indexOfProperty(name);
    return i >= 0 && meta->property(i).isDesignable();
}

} // namespace

TEST(PluginDesigner, DescribesTheControlForTheGeneratedCode) {
    QDesignerCustomWidgetInterface* p = plugin();
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->name(), "veldra::Veldra");
    EXPECT_EQ(p->includeFile(), "control/veldra.h");
    EXPECT_FALSE(p->isContainer());
    EXPECT_FALSE(p->icon().isNull());
    // The widget Designer drops first: the control's class, under a name of its own.
    QXmlStreamReader xml(p->domXml());
    QString classe, nom;
    while (!xml.atEnd() && classe.isEmpty())
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == u"widget") {
            classe = xml.attributes().value(QStringLiteral("class")).toString();
            nom = xml.attributes().value(QStringLiteral("name")).toString();
        }
    EXPECT_FALSE(xml.hasError()) << qPrintable(xml.errorString());
    EXPECT_EQ(classe, p->name());
    EXPECT_FALSE(nom.isEmpty());
}

TEST(PluginDesigner, CreatesAControlWhosePropertiesTheEditorReadsBack) {
    QDesignerCustomWidgetInterface* p = plugin();
    ASSERT_NE(p, nullptr);
    QWidget formulaire;
    QWidget* w = p->createWidget(&formulaire);
    ASSERT_NE(w, nullptr);
    EXPECT_EQ(w->parentWidget(), &formulaire);
    EXPECT_STREQ(w->metaObject()->className(), "veldra::Veldra");

    // Defaults, then values typed into the property editor, read back as it reads them.
    EXPECT_EQ(w->property("RepFicAnalyse").toString(), "AnalysePlan.txt");
    EXPECT_TRUE(w->property("RepCurseurs").toString().endsWith(u"/Images/Curseurs/"));
    ASSERT_TRUE(w->setProperty("RepCurseurs", QStringLiteral("/opt/cimetiere/curseurs")));
    ASSERT_TRUE(w->setProperty("RepFicAnalyse", QStringLiteral("/srv/rapports")));
    EXPECT_EQ(w->property("RepCurseurs").toString(), "/opt/cimetiere/curseurs/");
    EXPECT_EQ(w->property("RepFicAnalyse").toString(), "/srv/rapports/AnalysePlan.txt");

    EXPECT_TRUE(designable(*w, "RepCurseurs"));
    EXPECT_TRUE(designable(*w, "RepFicAnalyse"));
    // What only a running host sets stays out of the editor.
    EXPECT_FALSE(designable(*w, "FontMax"));
    EXPECT_FALSE(designable(*w, "Repertoire_Export"));
    EXPECT_FALSE(designable(*w, "ImageLocalisationTerminee"));
}
