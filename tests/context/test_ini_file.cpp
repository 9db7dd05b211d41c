#include "base/erreur.h"
#include "context/ini_file/ini_file.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace veldra;

namespace {

class IniFile : public testing::Test {
protected:
    QTemporaryDir dir;
    INI_FILE ini;

    void SetUp() override {
        ini.setPath_Fichier_Ini(dir.path());
        ini.setNom_Fichier_Ini(QStringLiteral("UserParam.INI"));
    }
    void put(const QString& name, const QByteArray& bytes) const {
        QFile f(dir.filePath(name));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(bytes);
    }
    QByteArray bytes(const QString& name) const {
        QFile f(dir.filePath(name));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    QString value(const QString& section, const QString& key, const QString& def = {}) {
        QString v = QStringLiteral("unchanged");
        ini.Get_Key_Of_Section(section, key, def, v);
        return v;
    }
};

// Points XDG_CONFIG_HOME, hence the system profile, at a folder for one test.
class ConfigHome {
public:
    explicit ConfigHome(const QString& path)
        : had_(qEnvironmentVariableIsSet("XDG_CONFIG_HOME")), old_(qgetenv("XDG_CONFIG_HOME")) {
        qputenv("XDG_CONFIG_HOME", path.toLocal8Bit());
    }
    ~ConfigHome() {
        if (had_)
            qputenv("XDG_CONFIG_HOME", old_);
        else
            qunsetenv("XDG_CONFIG_HOME");
    }
    ConfigHome(const ConfigHome&) = delete;
    ConfigHome& operator=(const ConfigHome&) = delete;

private:
    bool had_;
    QByteArray old_;
};

} // namespace

TEST(IniFileNames, TheFolderEndsWithASlashAndAFullNameIsSplit) {
    INI_FILE ini;
    ini.setPath_Fichier_Ini(QStringLiteral("/opt/veldra"));
    EXPECT_EQ(ini.Path_Fichier_Ini(), u"/opt/veldra/");
    ini.setPath_Fichier_Ini(QStringLiteral("/opt/veldra/"));
    EXPECT_EQ(ini.Path_Fichier_Ini(), u"/opt/veldra/");
    ini.setNom_Fichier_Ini(QStringLiteral("/home/admin/plans/UserParam.INI"));
    EXPECT_EQ(ini.Path_Fichier_Ini(), u"/home/admin/plans/");
    EXPECT_EQ(ini.Nom_Fichier_Ini(), u"UserParam.INI");
    ini.setNom_Fichier_Ini(QStringLiteral("Autre.ini")); // a bare name keeps the folder
    EXPECT_EQ(ini.Path_Fichier_Ini(), u"/home/admin/plans/");
    EXPECT_EQ(ini.Nom_Fichier_Ini(), u"Autre.ini");
    ini.setPath_Fichier_Ini(QString());
    EXPECT_EQ(ini.Path_Fichier_Ini(), u"");
}

TEST_F(IniFile, ExisteComparesNamesWithoutRegardToCase) {
    EXPECT_FALSE(ini.Existe());
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("userparam.INI"))); // a folder is no file
    EXPECT_FALSE(ini.Existe());
    put(QStringLiteral("USERPARAM.ini"), "[s]\r\n");
    EXPECT_TRUE(ini.Existe());
    ini.setNom_Fichier_Ini(QString());
    EXPECT_FALSE(ini.Existe());
}

TEST_F(IniFile, AFileNamedInAnotherCaseServesReadsAndWrites) {
    put(QStringLiteral("userparam.ini"), "[Param\xE8tres]\r\nSituation=1\r\n");
    EXPECT_EQ(value(QStringLiteral("Paramètres"), QStringLiteral("Situation")), u"1");
    EXPECT_EQ(ini.Set_Key_Of_Section(QStringLiteral("Paramètres"), QStringLiteral("Bibliotheque"),
                                     QStringLiteral("1")),
              1);
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files),
              QStringList{QStringLiteral("userparam.ini")});
    EXPECT_EQ(bytes(QStringLiteral("userparam.ini")),
              QByteArray("[Param\xE8tres]\r\nSituation=1\r\nBibliotheque=1\r\n"));
    EXPECT_EQ(ini.Get_Liste_Of_Sections(), u"Paramètres-KVL-");
}

TEST_F(IniFile, AValueOf145CharactersComesBackAsItsFirst144) {
    QString long145;
    for (int i = 0; i < 145; ++i)
        long145 += QChar(u'a' + i % 26);
    ASSERT_EQ(ini.Set_Key_Of_Section(QStringLiteral("s"), QStringLiteral("k"), long145), 1);
    EXPECT_EQ(value(QStringLiteral("s"), QStringLiteral("k")), long145.left(144));
    ASSERT_EQ(ini.Set_Key_Of_Section(QStringLiteral("s"), QStringLiteral("k"), long145.left(144)),
              1);
    EXPECT_EQ(value(QStringLiteral("s"), QStringLiteral("k")), long145.left(144));
}

TEST_F(IniFile, NamesAreTrimmedAndAMissingKeyGivesTheDefault) {
    EXPECT_EQ(
        value(QStringLiteral("Paramètres"), QStringLiteral("Panel Infos"), QStringLiteral("1")),
        u"1");
    put(QStringLiteral("UserParam.INI"), "[Param\xE8tres]\r\nSituation=1\r\n");
    EXPECT_EQ(value(QStringLiteral("  Paramètres "), QStringLiteral(" Situation  ")), u"1");
    EXPECT_EQ(
        value(QStringLiteral("Paramètres"), QStringLiteral("Panel Infos"), QStringLiteral("1")),
        u"1");
}

TEST_F(IniFile, KeyListsEndWithAnEmptyElement) {
    put(QStringLiteral("UserParam.INI"), "[s]\r\na=1\r\nb=2\r\n[vide]\r\n");
    EXPECT_EQ(ini.Get_Keys_of_Section(QStringLiteral("s")),
              (QStringList{QStringLiteral("a"), QStringLiteral("b"), {}}));
    EXPECT_EQ(ini.Get_Keys_of_Section(QStringLiteral("vide")), QStringList{QString()});
    EXPECT_EQ(ini.Get_Keys_of_Section(QStringLiteral("absente")), QStringList{QString()});
    ini.setNom_Fichier_Ini(QStringLiteral("absent.ini"));
    EXPECT_EQ(ini.Get_Keys_of_Section(QStringLiteral("s")), QStringList{QString()});
}

TEST_F(IniFile, AKeyListLongerThanTheBufferIsCutInsideAName) {
    QByteArray file("[s]\r\n");
    for (int i = 0; i < 300; ++i)
        file += "k" + QByteArray::number(i).rightJustified(3, '0') + "=1\r\n";
    put(QStringLiteral("UserParam.INI"), file);
    // 204 names of 5 characters fill 1020 of the 1022 kept, then "k2" of "k204".
    const QStringList keys = ini.Get_Keys_of_Section(QStringLiteral("s"));
    ASSERT_EQ(keys.size(), 206);
    EXPECT_EQ(keys.front(), u"k000");
    EXPECT_EQ(keys[203], u"k203");
    EXPECT_EQ(keys[204], u"k2");
    EXPECT_EQ(keys[205], u"");
}

TEST_F(IniFile, SectionsAreListedWithTheirMarker) {
    EXPECT_EQ(ini.Get_Liste_Of_Sections(), u"");
    put(QStringLiteral("UserParam.INI"), "[Param\xE8tres]\r\n"
                                         "Situation=1\n"
                                         " [indent\xE9]\r\n" // not at the line's start
                                         "k=[value]\r\n"
                                         "[Autre] ; note ]\r"
                                         "[]\r\n");
    EXPECT_EQ(ini.Get_Liste_Of_Sections(), u"Paramètres-KVL-Autre-KVL--KVL-");
}

TEST_F(IniFile, ASectionLineWithoutItsBracketIsAnError) {
    put(QStringLiteral("UserParam.INI"), "[Param\xE8tres]\r\n[Autre\r\n");
    try {
        ini.Get_Liste_Of_Sections();
        FAIL() << "no error";
    } catch (const Erreur& e) {
        EXPECT_EQ(e.numero(), err::AppelIncorrect);
    }
}

TEST_F(IniFile, AnUnreadableFileCannotBeListed) {
    if (geteuid() == 0)
        GTEST_SKIP() << "permissions do not bind root";
    put(QStringLiteral("UserParam.INI"), "[s]\r\n");
    QFile::setPermissions(dir.filePath(QStringLiteral("UserParam.INI")), {});
    try {
        ini.Get_Liste_Of_Sections();
        FAIL() << "no error";
    } catch (const Erreur& e) {
        EXPECT_EQ(e.numero(), err::AccesRefuse);
    }
}

TEST_F(IniFile, WithoutAFileNameTheSystemProfileServes) {
    const ConfigHome home(dir.path());
    INI_FILE sansNom;
    ASSERT_EQ(
        sansNom.Set_Key_Of_Section(QStringLiteral("s"), QStringLiteral("k"), QStringLiteral("v")),
        1); // its folder is created
    EXPECT_EQ(bytes(QStringLiteral("veldra/profil.ini")), QByteArray("[s]\r\nk=v\r\n"));
    QString v;
    sansNom.Get_Key_Of_Section(QStringLiteral("s"), QStringLiteral("k"), QString(), v);
    EXPECT_EQ(v, u"v");
    EXPECT_EQ(sansNom.Get_Keys_of_Section(QStringLiteral("s")),
              (QStringList{QStringLiteral("k"), {}}));
    EXPECT_FALSE(sansNom.Existe());
    EXPECT_EQ(sansNom.Get_Liste_Of_Sections(), u"");
}
