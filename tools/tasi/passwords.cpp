#include "passwords.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <QByteArray>
#include <QDir>

#include "failure.h"
#include "profile/profilefile.h"

namespace kovanix::tasi {

using namespace Qt::StringLiterals;

namespace {

/// The terminal of this process, which standard input may not be, with its echo off.
class QuietTerminal {
public:
    QuietTerminal() : m_file(::open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY)) {
        if (m_file < 0 || ::tcgetattr(m_file, &m_before) != 0)
            throw Failure(
                ExitCode::usage,
                u"Parola sorulamıyor: uçbirim yok. KOVANIX_DOSYA_PAROLA ya da KOVANIX_SUNUCU_PAROLA "
                u"değişkeniyle verin."_s);
        termios quiet = m_before;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        ::tcsetattr(m_file, TCSAFLUSH, &quiet);
    }
    ~QuietTerminal() {
        if (m_file < 0)
            return;
        ::tcsetattr(m_file, TCSAFLUSH, &m_before);
        ::close(m_file);
    }
    QuietTerminal(const QuietTerminal&) = delete;
    QuietTerminal& operator=(const QuietTerminal&) = delete;

    QString ask(const QString& question) const {
        write(question.toUtf8() + ": ");
        QByteArray line;
        char letter = 0;
        while (::read(m_file, &letter, 1) == 1 && letter != '\n')
            line += letter;
        write("\n");
        return QString::fromUtf8(line);
    }

private:
    void write(const QByteArray& text) const {
        // A question that can't be shown is no failure: what is typed counts.
        [[maybe_unused]] const ssize_t written =
            ::write(m_file, text.constData(), static_cast<std::size_t>(text.size()));
    }

    int m_file;
    termios m_before{};
};

}  // namespace

QString askPassword(const QString& question, bool twice) {
    const QuietTerminal terminal;
    for (;;) {
        const QString password = terminal.ask(question);
        if (!twice || terminal.ask(question + u" (yeniden)"_s) == password)
            return password;
    }
}

QString configuredPassword(const QString& folder) {
    const QString settings = QDir(folder).filePath(u"Kovanix.config"_s);
    for (const QString& key : {u"dbpass"_s, u"mdbparola"_s}) {
        const QString password = ProfileFile::value(settings, u"ayar"_s, key).trimmed();
        if (!password.isEmpty())
            return password;
    }
    return {};
}

}  // namespace kovanix::tasi
