#include "editing/dialogue_taille.h"

#include "context/nombres.h"

#include <QEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace veldra {

namespace {

QLineEdit* boite(QWidget* parent, const char* nom, double valeur) {
    auto* b = new QLineEdit(nombreSimple(valeur), parent);
    b->setObjectName(QString::fromLatin1(nom));
    return b;
}

} // namespace

Define_Taille::Define_Taille(double longueur, double largeur, double aire, QWidget* parent)
    : QDialog(parent), Text1(boite(this, "Text1", longueur)), Text2(boite(this, "Text2", largeur)),
      Text3(boite(this, "Text3", aire)), Command1(new QPushButton(QStringLiteral("Annuler"), this)),
      Command2(new QPushButton(QStringLiteral("Valider"), this)) {
    setObjectName(QStringLiteral("Define_Taille"));
    setWindowTitle(QStringLiteral("Définir la taille"));
    Command1->setObjectName(QStringLiteral("Command1"));
    Command2->setObjectName(QStringLiteral("Command2"));
    Command2->setDefault(true);

    auto* champs = new QFormLayout;
    champs->addRow(QStringLiteral("Longueur (m) :"), Text1);
    champs->addRow(QStringLiteral("Largeur (m) :"), Text2);
    champs->addRow(QStringLiteral("Surface (m²) :"), Text3);
    auto* boutons = new QHBoxLayout;
    boutons->addStretch();
    boutons->addWidget(Command1);
    boutons->addWidget(Command2);
    auto* tout = new QVBoxLayout(this);
    tout->addLayout(champs);
    tout->addLayout(boutons);

    for (QLineEdit* b : {Text1, Text2, Text3})
        b->installEventFilter(this);
    connect(Text1, &QLineEdit::editingFinished, this, &Define_Taille::quitteLongueur);
    connect(Text3, &QLineEdit::editingFinished, this, &Define_Taille::quitteAire);
    connect(Command1, &QPushButton::clicked, this, [this] {
        valide_ = false;
        reject();
    });
    connect(Command2, &QPushButton::clicked, this, [this] {
        valide_ = true;
        longueur_ = nombreLu(Text1->text());
        largeur_ = nombreLu(Text2->text());
        accept();
    });
}

bool Define_Taille::eventFilter(QObject* watched, QEvent* event) {
    // Entering a box selects its whole text, once the click that entered it is over.
    if (event->type() == QEvent::FocusIn)
        if (auto* b = qobject_cast<QLineEdit*>(watched))
            QTimer::singleShot(0, b, &QLineEdit::selectAll);
    return QDialog::eventFilter(watched, event);
}

void Define_Taille::quitteLongueur() {
    Text3->setText(nombreSimple(nombreLu(Text1->text()) * nombreLu(Text2->text())));
}

void Define_Taille::quitteAire() {
    const double aire = nombreLu(Text3->text());
    const double longueur = nombreLu(Text1->text()), largeur = nombreLu(Text2->text());
    if (longueur == 0) {
        if (largeur != 0)
            Text1->setText(nombreSimple(aire / largeur));
    } else {
        Text2->setText(nombreSimple(aire / longueur));
    }
}

} // namespace veldra
