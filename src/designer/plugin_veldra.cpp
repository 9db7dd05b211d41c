#include "plugin_veldra.h"

#include "control/veldra.h"

#include <QIcon>
#include <QPainter>
#include <QPixmap>

namespace veldra {

PluginVeldra::PluginVeldra(QObject* parent) : QObject(parent) {}

QString PluginVeldra::name() const {
    return QStringLiteral("veldra::Veldra");
}

QString PluginVeldra::group() const {
    return QStringLiteral("Veldra");
}

QString PluginVeldra::toolTip() const {
    return QStringLiteral("Plan du cimetière");
}

QString PluginVeldra::whatsThis() const {
    return QStringLiteral("Le contrôle Veldra : il affiche et modifie le plan d'un cimetière, que "
                          "le programme hôte ouvre avec OuvreCimetiere.");
}

QString PluginVeldra::includeFile() const {
    return QStringLiteral("control/veldra.h");
}

QIcon PluginVeldra::icon() const {
    // A plot on its alley, drawn rather than shipped as a file.
    QPixmap image(32, 32);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setPen(QPen(QColor(0x30, 0x30, 0x30), 2));
    p.setBrush(QColor(0xC0, 0xFF, 0xC0));
    p.drawRect(3, 3, 26, 26);
    p.setBrush(QColor(0xEC, 0xE8, 0xE0));
    p.drawRect(10, 8, 12, 16);
    return QIcon(image);
}

bool PluginVeldra::isContainer() const {
    return false;
}

QWidget* PluginVeldra::createWidget(QWidget* parent) {
    return new Veldra(parent);
}

bool PluginVeldra::isInitialized() const {
    return initialise_;
}

void PluginVeldra::initialize(QDesignerFormEditorInterface* /*core*/) {
    initialise_ = true;
}

QString PluginVeldra::domXml() const {
    return QStringLiteral(R"(<ui language="c++">
 <widget class="veldra::Veldra" name="plan">
  <property name="geometry">
   <rect><x>0</x><y>0</y><width>800</width><height>600</height></rect>
  </property>
 </widget>
</ui>
)");
}

} // namespace veldra
