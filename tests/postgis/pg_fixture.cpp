#include "pg_fixture.h"

#include <memory>

namespace {

std::unique_ptr<veldra::testpg::PgServer>& serveur() {
    static std::unique_ptr<veldra::testpg::PgServer> s;
    return s;
}

QString& raison() {
    static QString why;
    return why;
}

// Stops the server after the last test, while Qt is still there to run pg_ctl.
class Arret : public ::testing::Environment {
public:
    void TearDown() override { serveur().reset(); }
};

[[maybe_unused]] const auto* const arret = ::testing::AddGlobalTestEnvironment(new Arret);

} // namespace

veldra::testpg::PgServer* serveurPg(QString* why) {
    static bool essaye = false;
    if (!essaye) {
        essaye = true;
        serveur() = veldra::testpg::PgServer::start(&raison());
    }
    *why = raison();
    return serveur().get();
}

QVariant relu(const QString& plan, qint64 fid, const char* column) {
    carto::Map m;
    m.loadMapSet(plan);
    return m.requireLayer(u"Tombes").feature(fid).attribute(QString::fromLatin1(column));
}
