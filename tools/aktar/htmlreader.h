#pragma once

#include "aktar/celltable.h"
#include "aktar/csvreader.h"

namespace kovanix::aktar {

/// Whether a file's beginning is that of a page with a table: what the till's own exports are, whatever their
/// name ends in.
bool looksLikeHtml(const QByteArray& beginning);

/// Takes the rows of a page's tables out of its text, in pieces as they come.
class HtmlParser {
public:
    explicit HtmlParser(CellTable& table) : m_table(table) {}
    void feed(QStringView text);
    void finish();

private:
    void endTag();
    void endCell();
    void endRow();

    CellTable& m_table;
    QString m_tag;  // what has come of the tag that is open
    QString m_cell;
    bool m_inTag = false;
    bool m_inCell = false;
    bool m_inRow = false;
    QString m_hidden;  // what ends the style or script that is passed over
    qint64 m_row = 0;
};

/// Reads a page from its beginning; its lines count as rows of tables. @throws RuntimeError
CellTable readHtml(QIODevice& file, const BytesRead& progress = {});

}  // namespace kovanix::aktar
