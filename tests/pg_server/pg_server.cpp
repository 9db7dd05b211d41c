#include "pg_server.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <arpa/inet.h>
#include <netinet/in.h>
#include <pwd.h>
#include <sys/socket.h>
#include <unistd.h>

namespace veldra::testpg {

namespace {

constexpr char kSuperuser[] = "veldra";
constexpr char kSystemUser[] = "veldra-pg";

QString binaries() {
    const QString chosen = qEnvironmentVariable("VELDRA_PG_BINDIR");
    if (!chosen.isEmpty())
        return chosen;
    if (QFileInfo::exists(QStringLiteral("/usr/lib/postgresql/15/bin/postgres")))
        return QStringLiteral("/usr/lib/postgresql/15/bin");
    const QDir versions(QStringLiteral("/usr/lib/postgresql"));
    for (const QString& v : versions.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name))
        if (QFileInfo::exists(versions.filePath(v + QStringLiteral("/bin/postgres"))))
            return versions.filePath(v + QStringLiteral("/bin"));
    return {};
}

// A port nobody listens on now: the kernel's choice for a socket bound to port 0.
int freePort() {
    const int s = ::socket(AF_INET, SOCK_STREAM, 0);
    if (s < 0)
        return 0;
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    addr.sin_port = 0;
    socklen_t len = sizeof addr;
    int port = 0;
    if (::bind(s, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0 &&
        ::getsockname(s, reinterpret_cast<sockaddr*>(&addr), &len) == 0)
        port = ntohs(addr.sin_port);
    ::close(s);
    return port;
}

// The unprivileged user the server runs as under root, created on first need. Two test
// programs may race to create it: the loser finds it made.
const passwd* systemUser(QString* why) {
    if (const passwd* pw = ::getpwnam(kSystemUser))
        return pw;
    QProcess add;
    add.start(QStringLiteral("useradd"),
              {QStringLiteral("--system"), QStringLiteral("--no-create-home"),
               QStringLiteral("--home-dir"), QStringLiteral("/nonexistent"),
               QStringLiteral("--shell"), QStringLiteral("/usr/sbin/nologin"),
               QString::fromLatin1(kSystemUser)});
    add.waitForFinished(30000);
    if (const passwd* pw = ::getpwnam(kSystemUser))
        return pw;
    *why = QStringLiteral("impossible de créer l'utilisateur %1 : %2")
               .arg(QLatin1String(kSystemUser),
                    QString::fromLocal8Bit(add.readAllStandardError()).trimmed());
    return nullptr;
}

bool run(QProcess& p, const QString& program, const QStringList& args, QString* output,
         int timeoutMs) {
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(program, args);
    const bool done = p.waitForFinished(timeoutMs);
    if (!done)
        p.kill();
    const QString text = QString::fromLocal8Bit(p.readAll()).trimmed();
    if (output)
        *output = text.isEmpty() && !done ? QStringLiteral("délai dépassé") : text;
    return done && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
}

QString lastLine(const QString& text) {
    const QStringList lines = text.split(u'\n', Qt::SkipEmptyParts);
    return lines.isEmpty() ? QStringLiteral("sans message") : lines.last().trimmed();
}

} // namespace

QString unavailableLine(const QString& why) {
    return QStringLiteral("PostGIS indisponible : %1 ; tests PostGIS ignorés").arg(why);
}

std::unique_ptr<PgServer> PgServer::start(QString* why) {
    std::unique_ptr<PgServer> s(new PgServer);
    s->bin_ = binaries();
    if (s->bin_.isEmpty()) {
        *why = QStringLiteral("PostgreSQL n'est pas installé (postgresql-15-postgis-3)");
        return nullptr;
    }
    // A short path: the server's socket lives in it, and socket paths are short.
    s->dir_ = std::make_unique<QTemporaryDir>(QStringLiteral("/tmp/veldra-pg-XXXXXX"));
    if (!s->dir_->isValid()) {
        *why = QStringLiteral("pas de dossier temporaire");
        return nullptr;
    }
    if (::geteuid() == 0) {
        const passwd* pw = systemUser(why);
        if (!pw)
            return nullptr;
        s->user_ = QString::fromLatin1(kSystemUser);
        const QByteArray path = QFile::encodeName(s->dir_->path());
        if (::chown(path.constData(), pw->pw_uid, pw->pw_gid) != 0) {
            *why = QStringLiteral("impossible de donner le dossier du serveur à %1").arg(s->user_);
            return nullptr;
        }
    }
    QString out;
    const QString data = s->dir_->filePath(QStringLiteral("data"));
    if (!s->runAsServer({s->bin_ + QStringLiteral("/initdb"), QStringLiteral("-D"), data,
                         QStringLiteral("-A"), QStringLiteral("trust"), QStringLiteral("-U"),
                         QString::fromLatin1(kSuperuser), QStringLiteral("-N"),
                         QStringLiteral("-E"), QStringLiteral("UTF8"),
                         QStringLiteral("--no-locale")},
                        &out)) {
        *why = QStringLiteral("initdb a échoué : %1").arg(lastLine(out));
        return nullptr;
    }
    // The superuser comes in without a password; everyone else over TCP gives one.
    QFile hba(data + QStringLiteral("/pg_hba.conf"));
    if (!hba.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
        hba.write("local all all trust\n"
                  "host all veldra 127.0.0.1/32 trust\n"
                  "host all all 127.0.0.1/32 scram-sha-256\n") < 0) {
        *why = QStringLiteral("pg_hba.conf ne peut pas être écrit");
        return nullptr;
    }
    hba.close();
    if (!s->startServer(why))
        return nullptr;
    if (!s->sql(QStringLiteral("postgres"),
                QStringLiteral("CREATE ROLE commis LOGIN PASSWORD 'secret'"), &out) ||
        !s->sql(QStringLiteral("postgres"), QStringLiteral("CREATE DATABASE modele_postgis"),
                &out)) {
        *why = QStringLiteral("le serveur ne répond pas : %1").arg(lastLine(out));
        return nullptr;
    }
    if (!s->sql(QStringLiteral("modele_postgis"), QStringLiteral("CREATE EXTENSION postgis;"),
                &out)) {
        *why = QStringLiteral("l'extension PostGIS manque : %1").arg(lastLine(out));
        return nullptr;
    }
    return s;
}

bool PgServer::startServer(QString* why) {
    QString out;
    const int known = port_; // a restart keeps its port, so connection strings stay good
    for (int attempt = 0; attempt < 3; ++attempt) { // a port taken meanwhile: another one
        port_ = known != 0 && attempt == 0 ? known : freePort();
        const QString options =
            QStringLiteral("-p %1 -k %2 -c listen_addresses=127.0.0.1 -c fsync=off "
                           "-c full_page_writes=off "
                           "-c max_connections=40")
                .arg(port_)
                .arg(dir_->path());
        if (runAsServer({bin_ + QStringLiteral("/pg_ctl"), QStringLiteral("-D"),
                         dir_->filePath(QStringLiteral("data")), QStringLiteral("-l"),
                         dir_->filePath(QStringLiteral("server.log")), QStringLiteral("-w"),
                         QStringLiteral("-t"), QStringLiteral("60"), QStringLiteral("-o"), options,
                         QStringLiteral("start")},
                        &out)) {
            running_ = true;
            return true;
        }
    }
    QFile log(dir_->filePath(QStringLiteral("server.log")));
    const QString logText =
        log.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(log.readAll()) : QString();
    *why = QStringLiteral("le serveur n'a pas démarré : %1")
               .arg(lastLine(logText.isEmpty() ? out : logText));
    return false;
}

PgServer::~PgServer() {
    if (running_)
        runAsServer({bin_ + QStringLiteral("/pg_ctl"), QStringLiteral("-D"),
                     dir_->filePath(QStringLiteral("data")), QStringLiteral("-m"),
                     QStringLiteral("fast"), QStringLiteral("-w"), QStringLiteral("stop")},
                    nullptr);
}

bool PgServer::runAsServer(const QStringList& command, QString* output, int timeoutMs) const {
    QProcess p;
    p.setWorkingDirectory(dir_->path());
    if (user_.isEmpty())
        return run(p, command.first(), command.mid(1), output, timeoutMs);
    return run(p, QStringLiteral("runuser"),
               QStringList{QStringLiteral("-u"), user_, QStringLiteral("--")} + command, output,
               timeoutMs);
}

QString PgServer::connection(const QString& database) const {
    return QStringLiteral("PG:host=%1 port=%2 dbname=%3 user=%4")
        .arg(dir_->path())
        .arg(port_)
        .arg(database, QLatin1String(kSuperuser));
}

QString PgServer::tcpConnection(const QString& database, const QString& user,
                                const QString& password) const {
    return QStringLiteral("PG:host=127.0.0.1 port=%1 dbname=%2 user=%3 password=%4")
        .arg(port_)
        .arg(database, user, password);
}

QString PgServer::createDatabase(bool postgis) {
    const QString name = QStringLiteral("plan%1").arg(++databases_);
    QString out;
    const QString statement =
        postgis ? QStringLiteral("CREATE DATABASE %1 TEMPLATE modele_postgis;").arg(name)
                : QStringLiteral("CREATE DATABASE %1;").arg(name);
    if (!sql(QStringLiteral("postgres"), statement, &out))
        qWarning("createDatabase: %s", qPrintable(out));
    return name;
}

bool PgServer::sql(const QString& database, const QString& statements, QString* output) const {
    QProcess p;
    return run(p, bin_ + QStringLiteral("/psql"),
               {QStringLiteral("-X"), QStringLiteral("-q"), QStringLiteral("-v"),
                QStringLiteral("ON_ERROR_STOP=1"), QStringLiteral("-h"), dir_->path(),
                QStringLiteral("-p"), QString::number(port_), QStringLiteral("-U"),
                QString::fromLatin1(kSuperuser), QStringLiteral("-d"), database,
                QStringLiteral("-c"), statements},
               output, 60000);
}

void PgServer::kill() {
    runAsServer({bin_ + QStringLiteral("/pg_ctl"), QStringLiteral("-D"),
                 dir_->filePath(QStringLiteral("data")), QStringLiteral("-m"),
                 QStringLiteral("immediate"), QStringLiteral("-w"), QStringLiteral("stop")},
                nullptr);
    running_ = false;
}

bool PgServer::restart(QString* why) {
    return startServer(why);
}

} // namespace veldra::testpg
