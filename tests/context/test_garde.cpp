// The control's error boundary: what a slot or a map tool throws reaches the user as one
// message, never the event loop.
#include "base/erreur.h"
#include "context/garde.h"
#include "control_fixture.h"

#include <QPushButton>
#include <QTest>
#include <stdexcept>

using namespace veldra;

TEST(Garde, WhatASlotThrowsBecomesOneMessage) {
    ControleFixture f;
    Contexte& ctx = f.c->contexte();
    QPushButton bouton(f.c.get());
    int etape = 0;
    QObject::connect(&bouton, &QPushButton::clicked, f.c.get(), garde(ctx, [&](bool) {
        switch (++etape) {
        case 1:
            throw Erreur(err::CoucheInconnue, QStringLiteral("Pas de couche."));
        case 2:
            throw std::runtime_error("panne");
        case 3:
            throw std::bad_alloc();
        default:
            throw 42;
        }
    }));
    for (int i = 0; i < 4; ++i)
        QTest::mouseClick(&bouton, Qt::LeftButton);
    ASSERT_EQ(f.messages.size(), 4u);
    EXPECT_EQ(f.messages[0].texte, QStringLiteral("20011 : Pas de couche."));
    EXPECT_EQ(f.messages[1].texte, QStringLiteral("51 : panne"));
    EXPECT_EQ(f.messages[2].texte, QStringLiteral("7 : Mémoire insuffisante"));
    EXPECT_EQ(f.messages[3].texte, QStringLiteral("51 : Erreur interne"));
}

TEST(Garde, AMapToolFailureIsShownToTheUser) {
    ControleFixture f;
    emit f.c->surface().Map1->failed(
        Erreur(err::EcritureImpossible, QStringLiteral("Écriture impossible dans « Tombes »")));
    ASSERT_EQ(f.messages.size(), 1u);
    EXPECT_EQ(f.messages[0].texte, QStringLiteral("20014 : Écriture impossible dans « Tombes »"));
    EXPECT_EQ(f.messages[0].style, boutons::Ok);
}
