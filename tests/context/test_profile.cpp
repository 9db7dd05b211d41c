#include "context/ini_file/profile.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <random>
#include <unistd.h>

using namespace veldra;

namespace {

class Profile : public testing::Test {
protected:
    QTemporaryDir dir;
    QString path = dir.filePath(QStringLiteral("profil.ini"));

    void put(const QByteArray& bytes) const {
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(bytes);
    }
    QByteArray bytes() const {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    QString get(QStringView section, QStringView key, QStringView def = u"DEF",
                qint32 size = 256) const {
        QString buffer;
        const qint32 n = profile::getString(section, key, def, buffer, size, path);
        EXPECT_EQ(n, buffer.size());
        return buffer;
    }
    qint32 write(QStringView section, QStringView key, QStringView value) const {
        return profile::writeString(section, key, value, path);
    }
};

} // namespace

TEST_F(Profile, SectionsAndKeysIgnoreCaseAndBlanksAroundThem) {
    put("[Param\xE8tres]\r\n"
        "  Panel Infos =  1 \t\r\n"
        "\t[ Espac\xE9 ] trailing text\r\n"
        "k=v\r\n");
    EXPECT_EQ(get(u"PARAMÈTRES", u"panel infos"), u"1");
    EXPECT_EQ(get(u" paramètres\t", u"  PANEL INFOS"), u"1");
    EXPECT_EQ(get(u"espacé", u"K"), u"v");
    EXPECT_EQ(get(u"Paramètres", u"k"), u"DEF"); // k belongs to the next section
}

TEST_F(Profile, MatchingQuotesAroundAValueAreRemoved) {
    put("[s]\r\n"
        "dq = \"  spaced  \" \r\n"
        "sq='x'\r\n"
        "mixed=\"x'\r\n"
        "alone=\"\r\n"
        "inner=a\"b\"\r\n");
    EXPECT_EQ(get(u"s", u"dq"), u"  spaced  ");
    EXPECT_EQ(get(u"s", u"sq"), u"x");
    EXPECT_EQ(get(u"s", u"mixed"), u"\"x'");
    EXPECT_EQ(get(u"s", u"alone"), u"\"");
    EXPECT_EQ(get(u"s", u"inner"), u"a\"b\"");
}

TEST_F(Profile, EveryKindOfLineEndSeparatesLines) {
    put("[a]\nx=1\r[b]\r\ny=2\n\rz=3");
    EXPECT_EQ(get(u"a", u"x"), u"1");
    EXPECT_EQ(get(u"b", u"y"), u"2");
    EXPECT_EQ(get(u"b", u"z"), u"3");
    EXPECT_EQ(get(u"a", u"y"), u"DEF");
}

TEST_F(Profile, FirstOccurrenceWinsAndNonKeyLinesAreSkipped) {
    put("k=before any section\r\n"
        "[s]\r\n"
        ";k=comment\r\n"
        "k=first\r\n"
        "K=second\r\n"
        "no key here\r\n"
        "=orphan\r\n"
        "[S]\r\n"
        "k=third\r\n"
        "late=4\r\n");
    EXPECT_EQ(get(u"s", u"k"), u"first");
    EXPECT_EQ(get(u"s", u"late"), u"DEF");
    QString buffer;
    EXPECT_EQ(profile::getKeyNames(u"s", buffer, 100, path), 2);
    EXPECT_EQ(buffer, QStringView(u"k\0\0", 3));
}

TEST_F(Profile, TheDefaultLosesItsTrailingBlanksWhenNothingIsFound) {
    EXPECT_EQ(get(u"s", u"k", u" abc \t "), u" abc"); // no file
    put("[s]\r\nk=v\r\n");
    EXPECT_EQ(get(u"t", u"k", u"abc  "), u"abc");
    EXPECT_EQ(get(u"s", u"other", u"abc  "), u"abc");
    EXPECT_EQ(get(u"", u"k", u"abc"), u"abc");
    EXPECT_EQ(get(u"s", u" ", u"abc"), u"abc");
    QString buffer;
    EXPECT_EQ(profile::getString(u"s", u"k", u"d", buffer, 10, dir.path()), 1); // a folder
    EXPECT_EQ(profile::getString(u"s", u"k", u"d", buffer, 10, QString()), 1);
    // A device is not read: it would never end.
    EXPECT_EQ(profile::getString(u"s", u"k", u"d", buffer, 10, QStringLiteral("/dev/zero")), 1);
    EXPECT_EQ(buffer, u"d");
}

TEST_F(Profile, ValuesAndDefaultsAreCutToTheBuffer) {
    put("[s]\r\nk=0123456789\r\n");
    EXPECT_EQ(get(u"s", u"k", u"", 11), u"0123456789");
    EXPECT_EQ(get(u"s", u"k", u"", 5), u"0123");
    EXPECT_EQ(get(u"s", u"k", u"", 1), u"");
    EXPECT_EQ(get(u"s", u"k", u"", 0), u"");
    EXPECT_EQ(get(u"s", u"x", u"abcdef", 4), u"abc");
}

TEST_F(Profile, KeyNamesComeOnceEachBetweenNuls) {
    put("[s]\r\nbeta=1\r\nalpha=2\r\nBETA=3\r\n[empty]\r\n; nothing\r\n");
    QString buffer;
    EXPECT_EQ(profile::getKeyNames(u"S", buffer, 100, path), 11);
    EXPECT_EQ(buffer, QStringView(u"beta\0alpha\0\0", 12));
    EXPECT_EQ(profile::getKeyNames(u"empty", buffer, 100, path), 0);
    EXPECT_TRUE(buffer.isEmpty());
    EXPECT_EQ(profile::getKeyNames(u"missing", buffer, 100, path), 0);
    EXPECT_TRUE(buffer.isEmpty());
    EXPECT_EQ(profile::getKeyNames(u"s", buffer, 100, dir.filePath(QStringLiteral("no.ini"))), 0);
}

TEST_F(Profile, AKeyListThatDoesNotFitEndsWithTwoNuls) {
    put("[s]\r\nalpha=1\r\nbeta=2\r\n");
    QString buffer;
    // "alpha\0beta\0" and the final NUL take exactly 12.
    EXPECT_EQ(profile::getKeyNames(u"s", buffer, 12, path), 11);
    EXPECT_EQ(buffer, QStringView(u"alpha\0beta\0\0", 12));
    EXPECT_EQ(profile::getKeyNames(u"s", buffer, 11, path), 9);
    EXPECT_EQ(buffer, QStringView(u"alpha\0bet\0\0", 11));
    EXPECT_EQ(profile::getKeyNames(u"s", buffer, 2, path), 0);
    EXPECT_EQ(buffer, QStringView(u"\0\0", 2));
}

TEST_F(Profile, AFirstWriteCreatesTheFileInWindows1252WithCrLf) {
    EXPECT_EQ(write(u" Paramètres ", u"Couleur ", u"bleu é €"), 1);
    EXPECT_EQ(bytes(), QByteArray("[Param\xE8tres]\r\nCouleur=bleu \xE9 \x80\r\n"));
    EXPECT_EQ(get(u"paramètres", u"couleur"), u"bleu é €");
}

TEST_F(Profile, WritesKeepEveryOtherLine) {
    put("; r\xE9glages\r\n"
        "[Autre]\r\n"
        "x = 1\n"
        "\r\n"
        "[PARAM\xC8TRES]\r\n"
        "  Situation = 0 \r\n"
        "Panel Infos=1\r\n"
        "; fin\r\n"
        "\r\n"
        "[Fin]\r\n"
        "y=2");
    // An existing key keeps its spelling; the other lines keep their text.
    EXPECT_EQ(write(u"paramètres", u"SITUATION", u"1"), 1);
    // A new key goes after the last key of its section, before the comment.
    EXPECT_EQ(write(u"Paramètres", u"Bibliotheque", u"0"), 1);
    // A new section goes at the end; the last line gets its line end.
    EXPECT_EQ(write(u"Nouvelle", u"k", u"v"), 1);
    EXPECT_EQ(bytes(), QByteArray("; r\xE9glages\r\n"
                                  "[Autre]\r\n"
                                  "x = 1\r\n"
                                  "\r\n"
                                  "[PARAM\xC8TRES]\r\n"
                                  "Situation=1\r\n"
                                  "Panel Infos=1\r\n"
                                  "Bibliotheque=0\r\n"
                                  "; fin\r\n"
                                  "\r\n"
                                  "[Fin]\r\n"
                                  "y=2\r\n"
                                  "[Nouvelle]\r\n"
                                  "k=v\r\n"));
}

TEST_F(Profile, ANewKeyOfASectionWithoutKeysFollowsItsHeader) {
    put("[a]\r\n; comment\r\n[b]\r\n[a]\r\nlater=1\r\n");
    EXPECT_EQ(write(u"a", u"k", u"v"), 1);
    EXPECT_EQ(bytes(), QByteArray("[a]\r\nk=v\r\n; comment\r\n[b]\r\n[a]\r\nlater=1\r\n"));
}

TEST_F(Profile, CharactersOutsideTheCodePageBecomeQuestionMarks) {
    EXPECT_EQ(write(u"Ω", u"clé", u"Ω mètres"), 1);
    EXPECT_EQ(bytes(), QByteArray("[?]\r\ncl\xE9=? m\xE8tres\r\n"));
    EXPECT_EQ(get(u"Ω", u"CLÉ"), u"? mètres"); // the name passes through the code page too
    EXPECT_EQ(get(u"?", u"clé"), u"? mètres");
}

TEST_F(Profile, TextsThatWouldChangeTheFileStructureAreRefused) {
    const QByteArray before("[s]\r\nk=v\r\n");
    put(before);
    struct Case {
        QString section, key, value;
    };
    const Case refused[] = {
        {QStringLiteral("s"), QStringLiteral("k"), QStringLiteral("a\r\nb")},
        {QStringLiteral("s"), QStringLiteral("k"), QStringLiteral("a\nb=1")},
        {QStringLiteral("s"), QStringLiteral("k"), QStringLiteral("a\r[t]")},
        {QStringLiteral("s"), QStringLiteral("k"), QStringView(u"a\0b", 3).toString()},
        {QStringLiteral("s"), QStringLiteral("k\n"), QStringLiteral("v")},
        {QStringLiteral("s\r"), QStringLiteral("k"), QStringLiteral("v")},
        {QStringLiteral("s"), QStringLiteral("a=b"), QStringLiteral("v")},
        {QStringLiteral("s"), QStringLiteral("[x]y"), QStringLiteral("v")},
        {QStringLiteral("s"), QStringLiteral(" ;x"), QStringLiteral("v")},
        {QStringLiteral("a]b"), QStringLiteral("k"), QStringLiteral("v")},
        {QStringLiteral(" \t"), QStringLiteral("k"), QStringLiteral("v")},
        {QStringLiteral("s"), QStringLiteral("  "), QStringLiteral("v")},
    };
    for (const Case& c : refused) {
        EXPECT_EQ(write(c.section, c.key, c.value), 0)
            << c.section.toStdString() << " / " << c.key.toStdString();
        EXPECT_EQ(bytes(), before);
    }
    EXPECT_EQ(profile::writeString(u"s", u"k", u"v", QString()), 0);
}

TEST_F(Profile, WhatIsWrittenReadsBack) {
    const QString values[] = {QStringLiteral(""), QStringLiteral("=="), QStringLiteral("[x]"),
                              QStringLiteral("; not a comment"), QStringLiteral("a ; b")};
    for (const QString& v : values) {
        ASSERT_EQ(write(u"[s", u"k]", v), 1);
        EXPECT_EQ(get(u"[S", u"K]"), v);
    }
    EXPECT_EQ(write(u"s", u"k", u"  'quoted'  "), 1);
    EXPECT_EQ(get(u"s", u"k"), u"quoted"); // the platform's trimming applies on the way back
}

TEST_F(Profile, AMissingFolderIsNotCreated) {
    const QString inMissing = dir.filePath(QStringLiteral("absent/profil.ini"));
    EXPECT_EQ(profile::writeString(u"s", u"k", u"v", inMissing), 0);
    EXPECT_FALSE(QDir(dir.filePath(QStringLiteral("absent"))).exists());
    EXPECT_EQ(profile::writeString(u"s", u"k", u"v", dir.path()), 0); // a folder
}

TEST_F(Profile, FilesWithoutPermissionAreNeitherReadNorReplaced) {
    if (geteuid() == 0)
        GTEST_SKIP() << "permissions do not bind root";
    const QByteArray before("[s]\r\nk=v\r\n");
    put(before);
    QFile::setPermissions(path, QFileDevice::ReadOwner);
    EXPECT_EQ(write(u"s", u"k", u"w"), 0);
    EXPECT_EQ(bytes(), before);
    QFile::setPermissions(path, {});
    EXPECT_EQ(get(u"s", u"k"), u"DEF");
    EXPECT_EQ(write(u"s", u"k", u"w"), 0);
    QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    EXPECT_EQ(bytes(), before);
}

TEST_F(Profile, BinaryGarbageReadsAndWritesSafely) {
    std::mt19937 random(1234);
    QByteArray garbage(1 << 20, Qt::Uninitialized);
    for (char& c : garbage)
        c = char(random() % 8 == 0 ? "[]=;\r\n\0 "[random() % 8] : char(random()));
    put(garbage);
    QString buffer;
    profile::getKeyNames(u"s", buffer, 1024, path);
    get(u"\x01", u"\x02");
    ASSERT_EQ(write(u"section", u"clé", u"valeur"), 1);
    EXPECT_EQ(get(u"section", u"clé"), u"valeur");
    EXPECT_TRUE(bytes().endsWith("[section]\r\ncl\xE9=valeur\r\n"));
}

TEST_F(Profile, HugeLinesAreReadInLinearTime) {
    const QByteArray huge(10 << 20, 'x');
    const QByteArray files[] = {huge,
                                "[" + huge,
                                "[s]\r\nk=" + huge,
                                "[s]\r\n" + huge + "=1",
                                QByteArray(5 << 20, '\n'),
                                QByteArray(5 << 20, '=')};
    QElapsedTimer clock;
    clock.start();
    for (const QByteArray& file : files) {
        put(file);
        get(u"s", u"k");
        QString buffer;
        profile::getKeyNames(u"s", buffer, 1024, path);
        ASSERT_EQ(write(u"s", u"k", u"v"), 1);
        EXPECT_EQ(get(u"s", u"k"), u"v");
    }
    put("[s]\r\nk=" + huge);
    EXPECT_EQ(get(u"s", u"k", u"", 145), QString(144, u'x'));
    EXPECT_LT(clock.elapsed(),
              20000); // about a second unless sanitized; a quadratic pass takes hours
}
