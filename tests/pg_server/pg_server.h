#pragma once
// A throw-away PostgreSQL server with PostGIS: initdb in a temporary folder, a free port on
// 127.0.0.1 and a socket in that folder, fsync off. As root (CI) the server runs as an
// unprivileged system user, created when missing, through runuser. Databases are made
// from a template that already holds PostGIS, so a test gets a fresh one in a blink.
// The server stops, and its folder goes, with the object.

#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <memory>

namespace veldra::testpg {

class PgServer {
public:
    // The server, or nullptr with `why` saying in one line why it could not start (no
    // PostgreSQL binaries, no PostGIS, a server that would not come up).
    static std::unique_ptr<PgServer> start(QString* why);
    ~PgServer();
    PgServer(const PgServer&) = delete;
    PgServer& operator=(const PgServer&) = delete;

    // The OGR connection string of a database: through the socket, as the superuser.
    QString connection(const QString& database) const;
    // Through TCP on 127.0.0.1, where a password is asked for every user but the superuser.
    QString tcpConnection(const QString& database, const QString& user,
                          const QString& password) const;
    int port() const { return port_; }

    // A new, empty database (with PostGIS unless `postgis` is false); its name.
    QString createDatabase(bool postgis = true);
    // Runs SQL statements through psql in `database`, in one transaction; false (and
    // `output` holds psql's message) when one fails.
    bool sql(const QString& database, const QString& statements, QString* output = nullptr) const;

    // Kills the server at once, as a crash would, and starts it again.
    void kill();
    bool restart(QString* why);

private:
    PgServer() = default;
    bool runAsServer(const QStringList& command, QString* output, int timeoutMs = 60000) const;
    bool startServer(QString* why);

    std::unique_ptr<QTemporaryDir> dir_;
    QString bin_;
    QString user_; // the system user the server runs as; empty: ourselves
    int port_ = 0;
    int databases_ = 0;
    bool running_ = false;
};

// The one line a skipped test prints; scripts/test shows it.
QString unavailableLine(const QString& why);

} // namespace veldra::testpg
