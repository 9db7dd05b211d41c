#pragma once
// Impression: the print settings the clerk gives before the map is printed. Its public
// variables hold what it hands back once it is hidden: the title, the comments, the scale
// (" Echelle courante", or the denominator of the line chosen: "500" for 1/500), the
// format ("A4"), whether the selection is printed, whether the clerk cancelled. Closed
// with the window's close box, it hands back empty texts and bAnnuler false.
//
// Beyond the original, when the host turns paper printing on, the dialog also offers to
// print on paper, to preview the page and to write a PDF, on A4 or A3, portrait or
// landscape; `Destination` then says which of them the clerk chose.

#include <QDialog>
#include <QPageLayout>
#include <QPageSize>
#include <QString>

class QCheckBox;
class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QPushButton;

namespace veldra {

class Impression : public QDialog {
    Q_OBJECT
public:
    // Where the clerk asked the map to go.
    enum class Destination { Hote, Papier, Apercu, Pdf };

    // `papier`: the paper printing choices are shown.
    explicit Impression(bool papier, QWidget* parent = nullptr);

    QString TitreImp;
    QString Commentaires;
    QString Echelle;
    QString Format;
    bool ImprimeSelection = false;
    bool bAnnuler = false;
    Destination destination = Destination::Hote;
    QPageSize::PageSizeId papier = QPageSize::A4;
    QPageLayout::Orientation orientation = QPageLayout::Portrait;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void valide(Destination d);
    void suitSelection();

    QLineEdit* sTitre;
    QPlainTextEdit* sCommentaires;
    QListWidget* Liste_Echelle;
    QCheckBox* Trame_Precise;
    QLabel* Label2;
    QCheckBox* Cb_ImpSelection;
    QLabel* Label5;
    QFrame* Frame_Papier;
    QComboBox* Combo_Papier;
    QComboBox* Combo_Orientation;
    QPushButton* Btn_ValiderImpression;
    QPushButton* Btn_AnnulerImpression;
};

} // namespace veldra
