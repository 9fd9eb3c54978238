#include "support/test_certificates.h"

#include "engines/openssl_end.h"

#include <QFile>
#include <QProcess>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace velarc {

namespace {

const QString kLoopback = u"subjectAltName=DNS:localhost,IP:127.0.0.1"_s;
const QString kElsewhere = u"subjectAltName=DNS:elsewhere.invalid"_s;

constexpr int kDaysValid = 2;
constexpr int kDaysExpired = -1;

QStringList newKey(const QString &file)
{
    return {u"-newkey"_s, u"ec"_s, u"-pkeyopt"_s, u"ec_paramgen_curve:P-256"_s, u"-nodes"_s,
        u"-keyout"_s, file};
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error("cannot read what openssl wrote");
    }
    return file.readAll();
}

} // namespace

TestAuthority::TestAuthority()
{
    leaveOpenSslUncleaned(); // as the client under test would, were it the first to use it
    run(QStringList{u"req"_s, u"-x509"_s, u"-subj"_s, u"/CN=Authority of a test"_s, u"-days"_s,
            QString::number(kDaysValid), u"-out"_s, path(u"ca.pem"_s)}
        + newKey(path(u"ca.key"_s)));
}

QSslCertificate TestAuthority::certificate() const
{
    return QSslCertificate(contents(path(u"ca.pem"_s)));
}

ServerIdentity TestAuthority::issue()
{
    return issue(kLoopback, kDaysValid);
}

ServerIdentity TestAuthority::issueFor(const QStringList &hosts)
{
    return issue(u"subjectAltName=DNS:"_s + hosts.join(u",DNS:"_s), kDaysValid);
}

ServerIdentity TestAuthority::issueExpired()
{
    return issue(kLoopback, kDaysExpired);
}

ServerIdentity TestAuthority::issueForAnotherHost()
{
    return issue(kElsewhere, kDaysValid);
}

ServerIdentity TestAuthority::selfSigned()
{
    run(QStringList{u"req"_s, u"-x509"_s, u"-subj"_s, u"/CN=localhost"_s, u"-addext"_s, kLoopback,
            u"-days"_s, QString::number(kDaysValid), u"-out"_s, path(u"server.pem"_s)}
        + newKey(path(u"server.key"_s)));
    return read(u"server"_s);
}

ServerIdentity TestAuthority::issue(const QString &alternativeNames, int days)
{
    const QString request = path(u"server.csr"_s);
    run(QStringList{u"req"_s, u"-subj"_s, u"/CN=localhost"_s, u"-addext"_s, alternativeNames,
            u"-out"_s, request}
        + newKey(path(u"server.key"_s)));
    run({u"x509"_s, u"-req"_s, u"-in"_s, request, u"-copy_extensions"_s, u"copy"_s, u"-CA"_s,
        path(u"ca.pem"_s), u"-CAkey"_s, path(u"ca.key"_s), u"-days"_s, QString::number(days),
        u"-out"_s, path(u"server.pem"_s)});
    return read(u"server"_s);
}

ServerIdentity TestAuthority::read(const QString &name) const
{
    return {QSslCertificate(contents(path(name + u".pem"_s))),
        QSslKey(contents(path(name + u".key"_s)), QSsl::Ec)};
}

QString TestAuthority::path(const QString &name) const
{
    return m_folder.filePath(name);
}

void TestAuthority::run(const QStringList &arguments) const
{
    QProcess openssl;
    openssl.start(u"openssl"_s, arguments);
    if (!openssl.waitForFinished() || openssl.exitCode() != 0) {
        throw std::runtime_error("openssl: " + openssl.readAllStandardError().toStdString());
    }
}

ScopedTrust::ScopedTrust(const TestAuthority &authority)
    : m_old(QSslConfiguration::defaultConfiguration())
{
    QSslConfiguration trusting = m_old;
    trusting.setCaCertificates({authority.certificate()});
    QSslConfiguration::setDefaultConfiguration(trusting);
}

ScopedTrust::~ScopedTrust()
{
    QSslConfiguration::setDefaultConfiguration(m_old);
}

} // namespace velarc
