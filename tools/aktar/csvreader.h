#pragma once

#include <QChar>
#include <QStringDecoder>
#include <QStringView>
#include <functional>

#include "aktar/celltable.h"

class QIODevice;

namespace kovanix::aktar {

enum class TextEncoding { utf8, windows1254, utf16 };

/// How a text file is written.
struct CsvFormat {
    TextEncoding encoding = TextEncoding::utf8;
    QChar separator = u';';
};

/// Takes a file's text apart into cells, in pieces as they come: quotes around cells, doubled ones within,
/// any kind of line end. Guards of spreadsheets are taken off.
class CsvParser {
public:
    CsvParser(CellTable& table, QChar separator) : m_table(table), m_separator(separator) {}

    /// @throws RuntimeError where the table takes no more
    void feed(QStringView text);
    /// Ends the last row. @throws RuntimeError where a quote is still open
    void finish();

private:
    enum class Place { cellStart, plain, quoted, quoteInQuoted };

    void take(QChar letter);
    void endCell();
    void endRow();

    CellTable& m_table;
    QChar m_separator;
    Place m_place = Place::cellStart;
    QString m_cell;
    bool m_wasQuoted = false;
    bool m_hasCells = false;
    bool m_afterReturn = false;
    qint64 m_line = 1;
    qint64 m_rowLine = 1;
    qint64 m_quoteLine = 0;
};

/// Told how many bytes of a file have been read.
using BytesRead = std::function<void(qint64 bytes)>;

/// Finds out in which letters a file is written, from all of it: what isn't UTF-8 throughout, and has no mark
/// of UTF-16, is Windows-1254.
TextEncoding findEncoding(QIODevice& file);

/// Turns a file's bytes into text, piece by piece.
class TextDecoder {
public:
    explicit TextDecoder(TextEncoding encoding);
    QString decode(const QByteArray& bytes);

private:
    bool m_isCodePage;
    QStringDecoder m_decoder;
};

/// Finds out how a file is written: its letters, and its separator (; , tab or |) from its beginning, as the
/// one by which headings are known and rows are equally wide.
CsvFormat findCsvFormat(QIODevice& file);

/// Reads a file from its beginning. @throws RuntimeError in words for the one who chose the file
CellTable readCsv(QIODevice& file, const CsvFormat& format, const BytesRead& progress = {});

}  // namespace kovanix::aktar
