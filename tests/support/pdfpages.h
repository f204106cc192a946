#pragma once

#include <QList>
#include <QProcess>
#include <QRectF>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

namespace kovanix {

// What stands in a PDF, as poppler's tools read it.

/// The standard output of a program; ends the test program where it fails.
inline QString outputOf(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        qFatal("%s (package poppler-utils) fails: %s", qPrintable(program),
               process.readAllStandardError().constData());
    return QString::fromUtf8(process.readAllStandardOutput());
}

/// The lines of each page, runs of blanks counted as one, empty lines left out.
inline QList<QStringList> pagesOf(const QString& file) {
    QList<QStringList> pages;
    QStringList texts =
        outputOf(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), file, QStringLiteral("-")})
            .split(u'\f');
    texts.removeLast();  // behind the last page's form feed
    for (const QString& text : texts) {
        QStringList lines;
        for (const QString& line : text.split(u'\n')) {
            if (!line.trimmed().isEmpty())
                lines << line.simplified();
        }
        pages << lines;
    }
    return pages;
}

/// Where a word stands on the first page that it is on, in points from the page's upper left corner; invalid
/// where it isn't.
inline QRectF placeOf(const QString& word, const QString& file) {
    const QString text =
        outputOf(QStringLiteral("pdftotext"), {QStringLiteral("-bbox"), file, QStringLiteral("-")});
    const QRegularExpression pattern(
        QStringLiteral("xMin=\"([\\d.]+)\" yMin=\"([\\d.]+)\" xMax=\"([\\d.]+)\" yMax=\"([\\d.]+)\">%1<")
            .arg(QRegularExpression::escape(word)));
    const auto match = pattern.match(text);
    if (!match.hasMatch())
        return {};
    const auto side = [&match](int number) { return match.captured(number).toDouble(); };
    return {QPointF(side(1), side(2)), QPointF(side(3), side(4))};
}

}  // namespace kovanix
