#pragma once

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QVariant>
#include <functional>

#include "database/connection.h"
#include "database/recordset.h"
#include "database/rowwalk.h"

namespace kovanix {

// Which database file the shop uses, the one shared connection to it, and the literals that its SQL is joined
// from. Everything that touches the database asks baglantihazir first.

/// The shared connection and the shared recordset: created on first touch, there until the process ends.
Connection& baglanti();
Recordset& kayit();

/// 1 after a successful open; 0 after a close, a failed open, or when the connection was found not open.
inline int baglantidurumu = 0;

/// The connection string that baglantiyukle computed last.
inline QString baglantimetni;

/// Set once the schema check has found its last column; keeps the check from running again.
inline bool semahazir = false;

/// Path of the database file: the configured one where it exists, else a local file (the present name before
/// the older one), else the configured path, else the local one of the present name; the last two don't
/// exist.
QString veritabaniyolu();

/// The connection string for a database file, with the password that the configuration holds. Nothing is
/// quoted.
QString baglantimetniyap(const QString& path);
QString baglantimetnial();

/// Writes `ip` where it is empty, and `ConnectionString` and `con` where they differ from what is in use.
/// Never makes the configuration.
void ayarlaribaglantiyaesitle();

/// Computes baglantimetni afresh and brings the configuration into step.
void baglantiyukle();

/// The start-up maintenance of the configuration; runs before the other procedures here.
void ilkayarlar();

/// The connection string to open with, computed afresh.
QString baglantiyazisi();

/// Opens the shared connection anew and runs the schema check. A failure shows one message box with the
/// file's path and the engine's words, and is not raised.
void baglantiac();

void baglantikapat();
/// The same, with errors passed over: for leaving the program.
void baglantikapatsessiz();

/// Sets baglantidurumu to 0 when the connection is found not open.
void baglantidurumuyenile();

/// Whether the shared connection is open; opens it where it isn't.
bool baglantihazir();

/// How far a read came.
enum class ReadEnd {
    whole,
    part,    ///< a file's: it broke off, and what came before counts
    nothing  ///< a server's: it failed, and what came before is to be shown to nobody
};

/// Runs a read whose failures nobody is told of, save one: where a server's connection is lost with it,
/// baglantihazir is asked, which opens it again or says that it can't. Opened again, the read is made once
/// more.
/// @param read  begins from the start at each call; throws RuntimeError where it fails
ReadEnd readToEnd(const std::function<void()>& read);
/// The same with baglantihazir ahead of it, as a report begins.
ReadEnd readReport(const std::function<void()>& read);

/// Closes the shared recordset if it is open.
void kayitkapat();

/// Runs the statements of one press on the shared connection. When it returns they are safe from a power cut.
/// @throws RuntimeError what the statements throw, and that the database file has gone from its path
void storeTogether(const std::function<void()>& statements);

/// Has what is stored moved into the database file itself, so that a plain copy of it is whole, as soon as
/// the till has painted and nobody waits for it.
void restWhenIdle();

/// Whether the database file exists and the connection string is plausible.
bool veritabanivarmi();

/// Opens the shared connection where veritabanivarmi would say yes. @return whether it is open.
bool veritabaninibagla();

/// Has the engine keep an index on the barcodes and one on the moments of sale, which every scan and report
/// goes through. They are no part of the schema: a file that can't take them does without.
void keepAccessPaths(Connection& connection);

// --- literals and values
// -------------------------------------------------------------------------------------------

/// A text for use between single quotes: every apostrophe doubled.
QString sqlmetin(const QString& text);

/// A text for use between the single quotes of a LIKE pattern, its wildcards bracketed.
QString sqllike(const QString& text);

/// A date-time literal, month first: "#5/3/2021 07:05:09#". An invalid moment stands for the present one.
QString sqltarih(const QDateTime& moment);

/// A date-time literal of a day and a time text ("7", "7:5", "12:30:15"; empty is midnight). An invalid day
/// stands for today. Ranges aren't checked: the engine refuses what is no time.
QString sqltarihsaat(const QDate& day, const QString& time);

/// The tail of a BETWEEN expression: two literals of sqltarihsaat joined by " and ".
QString sqltarihbetween(const QDate& day1, const QString& time1, const QDate& day2, const QString& time2);

/// A number literal with a dot, unquoted.
QString sqlsayi(double value);

/// Tolerant reading of a number. A text that passes the regional test is read by it; any other takes
/// whichever of comma and dot stands last as its decimal sign. What can't be read is 0, and so are null and
/// the empty text.
double sayicevir(const QString& text);
double sayicevir(const QVariant& value);
double sayicevir(const RowWalk::Row& row, int field);

/// The trimmed text of a field value; empty for null.
QString nullmetin(const QVariant& value);

/// The text of the manager's role.
QString yoneticiyetkisi();

/// Whether the session is a manager's.
bool yoneticimi();

}  // namespace kovanix
