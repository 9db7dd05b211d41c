#pragma once
// The control as Qt Designer sees it: its class, its header for the generated code, and a
// new control for every one a developer drops on a form. The property editor shows the
// control's designable properties, among them the design-time ones, "RepCurseurs" and
// "RepFicAnalyse"; uic turns them into calls of their setters.

#include <QObject>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

namespace veldra {

class PluginVeldra : public QObject, public QDesignerCustomWidgetInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetInterface")
    Q_INTERFACES(QDesignerCustomWidgetInterface)

public:
    explicit PluginVeldra(QObject* parent = nullptr);

    QString name() const override;
    QString group() const override;
    QString toolTip() const override;
    QString whatsThis() const override;
    QString includeFile() const override;
    QIcon icon() const override;
    bool isContainer() const override;
    QWidget* createWidget(QWidget* parent) override;
    bool isInitialized() const override;
    void initialize(QDesignerFormEditorInterface* core) override;
    QString domXml() const override;

private:
    bool initialise_ = false;
};

} // namespace veldra
