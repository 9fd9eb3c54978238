// velarc_scripted_https: a provider on loopback for tests of whole programs.
//
// Usage: velarc_scripted_https PORT AUTHORITY_FILE HOST...
//
// Writes the certificate of a new authority into AUTHORITY_FILE, and serves the hosts with it on
// 127.0.0.1. Standard input is the script, an answer a line:
//   {"status": 200, "headers": {"name": "value"}, "body": "text"}
//   {"silence": true}
//   {"late": true, "status": 200, ...}   to those that met with silence, at once
//   {"close": true}
// Each whole request uses up one answer; without one it is answered with status 500. Standard
// output has a line {"listening": true} at the start and one a request:
//   {"method": "POST", "path": "/v1/messages", "headers": {"name": "value"}, "body": "text"}
// It ends with standard input.

#include "support/scripted_https_server.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSocketNotifier>

#include <unistd.h>

#include <cstdio>
#include <deque>
#include <exception>

using namespace velarc;
using namespace Qt::StringLiterals;

namespace {

void say(const QJsonObject &object)
{
    const QByteArray line = QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
    std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stdout);
    std::fflush(stdout);
}

ScriptedAnswer answerOf(const QJsonObject &line)
{
    if (line.contains("silence"_L1)) {
        return {};
    }
    if (line.contains("close"_L1)) {
        return endingAt(Stage::RequestRead, Ending::Close);
    }
    HeaderList headers;
    const QJsonObject named = line.value("headers"_L1).toObject();
    for (auto header = named.begin(); header != named.end(); ++header) {
        headers.emplace_back(header.key().toUtf8(), header.value().toString().toUtf8());
    }
    const int status = line.value("status"_L1).toInt(200);
    return reply(status, line.value("body"_L1).toString().toUtf8(), headers);
}

QJsonObject objectOf(const ReceivedRequest &request)
{
    QJsonObject headers;
    for (const auto &[name, value] : request.headers) {
        headers.insert(QString::fromUtf8(name).toLower(), QString::fromUtf8(value));
    }
    return {{u"method"_s, QString::fromUtf8(request.method)},
        {u"path"_s, QString::fromUtf8(request.path)}, {u"headers"_s, headers},
        {u"body"_s, QString::fromUtf8(request.body)}};
}

// Answers by what standard input said so far.
class Provider
{
public:
    Provider(ServerIdentity identity, quint16 port) : m_server(std::move(identity), port)
    {
        m_server.answerAlways([this](const ReceivedRequest &request) { return next(request); });
        QObject::connect(&m_input, &QSocketNotifier::activated, &m_input, [this] { readScript(); });
    }

private:
    ScriptedHttpsServer m_server;
    QSocketNotifier m_input{STDIN_FILENO, QSocketNotifier::Read};
    QByteArray m_unread;
    std::deque<ScriptedAnswer> m_answers;

    ScriptedAnswer next(const ReceivedRequest &request)
    {
        say(objectOf(request));
        if (m_answers.empty()) {
            return reply(500, "unscripted request");
        }
        ScriptedAnswer answer = std::move(m_answers.front());
        m_answers.pop_front();
        return answer;
    }

    void take(const QJsonObject &line)
    {
        if (line.contains("late"_L1)) {
            m_server.sendMore(answerOf(line).bytes);
        } else {
            m_answers.push_back(answerOf(line));
        }
    }

    void readScript()
    {
        constexpr std::size_t kPieceBytes = 64 * 1024;
        QByteArray piece(kPieceBytes, Qt::Uninitialized);
        const ssize_t count = read(STDIN_FILENO, piece.data(), kPieceBytes);
        if (count <= 0) {
            QCoreApplication::quit();
            return;
        }
        m_unread += piece.left(count);
        for (qsizetype end = m_unread.indexOf('\n'); end >= 0; end = m_unread.indexOf('\n')) {
            take(QJsonDocument::fromJson(m_unread.left(end)).object());
            m_unread.remove(0, end + 1);
        }
    }
};

int serve(const QStringList &arguments)
{
    TestAuthority authority;
    QFile file(arguments.at(2));
    if (!file.open(QIODevice::WriteOnly) || file.write(authority.certificate().toPem()) < 0) {
        throw std::runtime_error("the certificate cannot be written");
    }
    file.close();
    const Provider provider(authority.issueFor(arguments.mid(3)), arguments.at(1).toUShort());
    say({{u"listening"_s, true}});
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (argc < 4) {
        std::fputs("Usage: velarc_scripted_https PORT AUTHORITY_FILE HOST...\n", stderr);
        return 2;
    }
    try {
        return serve(QCoreApplication::arguments());
    } catch (const std::exception &error) {
        std::fprintf(stderr, "velarc_scripted_https: %s\n", error.what());
        return 1;
    }
}
