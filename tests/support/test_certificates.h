#pragma once

// Certificates for servers of tests, made on the spot and trusted by nobody else.

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QTemporaryDir>

namespace velarc {

// What a server shows and proves.
struct ServerIdentity
{
    QSslCertificate certificate;
    QSslKey key;
};

// A throw-away authority. Needs the openssl program; throws std::runtime_error where it fails.
class TestAuthority
{
public:
    TestAuthority();

    [[nodiscard]] QSslCertificate certificate() const;

    // For localhost and 127.0.0.1.
    [[nodiscard]] ServerIdentity issue();
    // For these hosts.
    [[nodiscard]] ServerIdentity issueFor(const QStringList &hosts);
    // The same, but no longer valid.
    [[nodiscard]] ServerIdentity issueExpired();
    // Valid, for another host.
    [[nodiscard]] ServerIdentity issueForAnotherHost();
    // For localhost and 127.0.0.1, signed by itself.
    [[nodiscard]] ServerIdentity selfSigned();

private:
    QTemporaryDir m_folder;

    void run(const QStringList &arguments) const;
    [[nodiscard]] QString path(const QString &name) const;
    [[nodiscard]] ServerIdentity issue(const QString &alternativeNames, int days);
    [[nodiscard]] ServerIdentity read(const QString &name) const;
};

// Has this process trust the authority for as long as it stands.
class ScopedTrust
{
public:
    explicit ScopedTrust(const TestAuthority &authority);
    ~ScopedTrust();
    ScopedTrust(const ScopedTrust &) = delete;
    ScopedTrust &operator=(const ScopedTrust &) = delete;

private:
    QSslConfiguration m_old;
};

} // namespace velarc
