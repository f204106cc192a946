#pragma once

#include <QFile>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextTable>

namespace kovanix {

/// The rows of the tables in a file, cell by cell, as the toolkit's reader of HTML finds them.
inline QList<QStringList> htmlTable(const QString& path) {
    QFile file(path);
    QTextDocument document;
    document.setHtml(file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString());
    QList<QStringList> rows;
    const QList<QTextFrame*> frames = document.rootFrame()->childFrames();
    for (const QTextFrame* frame : frames) {
        const auto* table = qobject_cast<const QTextTable*>(frame);
        for (int row = 0; table && row < table->rows(); ++row) {
            QStringList cells;
            for (int column = 0; column < table->columns(); ++column) {
                const QTextTableCell cell = table->cellAt(row, column);
                QTextCursor cursor = cell.firstCursorPosition();
                cursor.setPosition(cell.lastPosition(), QTextCursor::KeepAnchor);
                // Cells that break no lines come with blanks that can't be broken.
                cells << cursor.selectedText().replace(QChar::Nbsp, u' ');
            }
            rows << cells;
        }
    }
    return rows;
}

}  // namespace kovanix
