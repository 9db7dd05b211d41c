#include "base/teste_fichier.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace veldra;

namespace {

void write(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

} // namespace

TEST(TesteFichier, ReadableEmptyAndMissing) {
    QTemporaryDir dir;
    write(dir.filePath("photo.jpg"), "\xFF\xD8 data");
    write(dir.filePath("vide.txt"), "");
    write(dir.filePath("ligne.txt"), "\r\n");
    EXPECT_EQ(TesteFichier(dir.filePath("photo.jpg"), "/nulle/part"), 0);
    EXPECT_EQ(TesteFichier(dir.filePath("ligne.txt"), "/nulle/part"), 0);
    EXPECT_EQ(TesteFichier(dir.filePath("vide.txt"), "/nulle/part"), 2);
    EXPECT_EQ(TesteFichier(dir.filePath("absent.jpg"), "/nulle/part"), 1);
    EXPECT_EQ(TesteFichier(dir.path(), "/nulle/part"), 1); // a folder is not a file
}

TEST(TesteFichier, RelativeNamesAreTakenInTheControlsFolder) {
    QTemporaryDir dir;
    QDir(dir.path()).mkdir("Photos");
    write(dir.filePath("Photos/a.jpg"), "x");
    EXPECT_EQ(TesteFichier("Photos/a.jpg", dir.path()), 0);
    EXPECT_EQ(TesteFichier("Photos/a.jpg", dir.path() + "/"), 0);
    EXPECT_EQ(cheminDansDossier("a.jpg", "/x/"), QStringLiteral("/x/a.jpg"));
    EXPECT_EQ(cheminDansDossier("/y/a.jpg", "/x"), QStringLiteral("/y/a.jpg"));
}

TEST(TesteFichier, UnreadableFileCannotBeOpened) {
    if (geteuid() == 0)
        GTEST_SKIP() << "root reads every file";
    QTemporaryDir dir;
    write(dir.filePath("secret.jpg"), "x");
    QFile::setPermissions(dir.filePath("secret.jpg"), QFileDevice::Permissions());
    EXPECT_EQ(TesteFichier(dir.filePath("secret.jpg"), dir.path()), 1);
}
