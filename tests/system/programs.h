#pragma once

#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <memory>

#include "shopfixture.h"

namespace kovanix {

/// How long a test waits for what another process does, in milliseconds.
inline constexpr int patience = 30000;

/// The programs under test, as they were built.
QString kovanixProgram();
QString replayProgram();
QString demoShopProgram();

/// This process's environment without a printer, a shop's folder or a display of the developer's own.
QProcessEnvironment tillEnvironment();

/// The words to put before a command so that an ordinary user runs it; empty where this user is one already.
QStringList asOrdinaryUser();
/// Why an ordinary user can't run the programs here; empty when one can.
QString ordinaryUserTrouble();

/// Whether the name that one till of the machine holds is taken, and its holder hears others.
bool someTillAnswers();
/// Gives this process and what it starts a machine-wide name of their own where the system allows that, so
/// that a till that stands open on the same machine doesn't take part in the test.
void isolateFromOtherTills();

/// How a program ended and what it said.
struct Outcome {
    bool ended = false;  ///< by itself, within the test's patience
    int status = -1;
    QString output;
    QString errors;
};

/// Starts a program, waits for its end, and kills it when it doesn't come.
Outcome runProgram(const QStringList& command, const QProcessEnvironment& environment = tillEnvironment());

/// A program that runs beside the test; killed with the object.
class Program {
public:
    explicit Program(const QStringList& command, const QProcessEnvironment& environment = tillEnvironment());
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    bool isRunning() const { return m_process.state() == QProcess::Running; }
    qint64 id() const { return m_process.processId(); }

    /// Waits until the program has written this line so many times to standard output.
    bool waitForLine(const QString& line, qsizetype times = 1);
    /// How often it has written this line so far.
    qsizetype count(const QString& line) const { return m_lines.count(line); }
    /// The whole lines of its standard output so far.
    const QStringList& lines() const { return m_lines; }

    /// Sends an empty line: ends a replay script's pause.
    void goOn();
    /// SIGKILL; returns when it is gone and all of its output is read.
    void killHard();
    /// Waits for its own end.
    Outcome finish();

private:
    void read();

    QProcess m_process;
    QByteArray m_unread;
    QString m_output;
    QStringList m_lines;
};

/// A shop's folder whose file nobody has open: what a program is started on.
class ClosedShop : public ShopFixture {
public:
    /// A file with the five tables and a few products; with a password where one is given.
    explicit ClosedShop(const QString& password = {});

    /// Writes a replay script into the folder. @return its path
    QString script(const QStringList& lines) const;
    /// The command that plays a script on this shop, or on a copy of it in another folder, and tells of every
    /// message box.
    QStringList replay(const QStringList& lines, const QString& elsewhere = {}) const;
    /// The command that starts the till on this shop.
    QStringList till() const;

    /// Lets every user of the machine read the folder and what is in it.
    void openToEveryone() const;

    /// The one value that a select gives.
    QVariant value(const QString& sql) const;
    double stock(const QString& barcode) const;
};

/// The shop's products.
namespace shelf {
inline const QString bread = QStringLiteral("8690000000012");  ///< 10,00; 7,00 at purchase
inline const QString milk = QStringLiteral("8690000000029");   ///< 32,50; 25,00 at purchase
inline const QString tomatoes = QStringLiteral("0012");        ///< by weight, 40,00; 30,00 at purchase
inline constexpr double startStock = 100000;
}  // namespace shelf

}  // namespace kovanix
