#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

#include "runtime/runtimeerror.h"
#include "values/numbers.h"
#include "widgets/gridmodel.h"
#include "widgets/tdbgrid.h"

namespace kovanix {

using namespace Qt::StringLiterals;
namespace {

constexpr int pathAccessError = 75;
constexpr int pathNotFound = 76;
constexpr qsizetype chunkSize = 1 << 16;

[[noreturn]] void fail(const QSaveFile& file, const QString& path) {
    const bool folder = QFileInfo(path).absoluteDir().exists();
    throw RuntimeError(folder ? pathAccessError : pathNotFound, file.errorString(), u"TDBGrid"_s);
}

/// Appends a text as HTML shows it. Characters that no HTML text may hold are left out.
void appendEscaped(QString& html, QStringView text) {
    for (const QChar letter : text) {
        if (letter == u'&')
            html += u"&amp;";
        else if (letter == u'<')
            html += u"&lt;";
        else if (letter == u'>')
            html += u"&gt;";
        else if (letter == u'"')
            html += u"&quot;";
        else if (letter >= u' ' || letter == u'\n' || letter == u'\t')
            html += letter;
    }
}

}  // namespace

void TDBGrid::exportToFile(const QString& path, bool append, const QString& width) const {
    QFile before(path);
    QSaveFile file(path);
    const bool unreadable = append && before.exists() && !before.open(QIODevice::ReadOnly);
    if (unreadable || !file.open(QIODevice::WriteOnly))
        fail(file, path);
    while (before.isOpen() && !before.atEnd()) {
        if (file.write(before.read(chunkSize)) < 0)
            fail(file, path);
    }
    QString pending = file.pos() == 0 ? u"\ufeff"_s : QString();
    pending += QStringLiteral(
        "<!DOCTYPE html>\n<html>\n<head>\n"
        "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\">\n"
        "<style>\n"
        // A spreadsheet takes a text cell as it stands: no barcode loses digits, no "=…" becomes a formula.
        "td.t, th { mso-number-format:\"\\@\"; text-align:left; white-space:pre-wrap; }\n"
        "td.n { text-align:right; white-space:nowrap; }\n"
        "</style>\n</head>\n<body>\n");
    const auto flush = [&] {
        if (file.write(pending.toUtf8()) < 0)
            fail(file, path);
        pending.clear();
    };
    const auto cell = [&](bool numbers, const QString& text) {
        const bool number = numbers && isNumeric(text);  // a column of numbers may hold a text
        // Spreadsheets know the one or the other way of saying that a cell is text, and that a number is
        // written as in Turkey.
        pending += number ? u"<td class=\"n\" sdnum=\"1055;\">" : u"<td class=\"t\" sdnum=\"1055;0;@\">";
        appendEscaped(pending, number ? QStringView(text).trimmed() : QStringView(text));
        pending += u"</td>";
    };
    const auto line = [&](const auto& cells) {
        pending += u"<tr>";
        for (int index = 0; index < columnCount(); ++index) {
            if (column(index).width() > 0 || index == columnCount() - 1)
                cells(index);
        }
        pending += u"</tr>\n";
        if (pending.size() >= chunkSize)
            flush();
    };

    pending += u"<table border=\"1\"";
    if (!width.isEmpty()) {
        pending += u" width=\"";
        appendEscaped(pending, width);
        pending += u'"';
    }
    pending += u">\n<thead>\n";
    line([&](int index) {
        pending += u"<th>";
        appendEscaped(pending, column(index).caption());
        pending += u"</th>";
    });
    pending += u"</thead>\n<tbody>\n";
    for (int row = 0; row < m_rows->rowCount(); ++row)
        line([&](int index) { cell(m_rows->isNumber(index), m_rows->text(row, index)); });
    // An ordinary row: a spreadsheet may drop the table's foot.
    if (const QStringList footers = footerTexts(); !footers.join(QString()).isEmpty())
        line([&](int index) { cell(m_rows->isNumber(index), footers[index]); });
    pending += u"</tbody>\n</table>\n</body>\n</html>\n";
    flush();
    if (!file.commit())
        fail(file, path);
}

}  // namespace kovanix
