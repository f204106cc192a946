#include <QDir>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QTextDocumentFragment>
#include <QXmlStreamReader>
#include <algorithm>

#include "app/modTurkce.h"
#include "desktop/folders.h"
#include "runtests.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

constexpr int mostPictures = 25;
constexpr qint64 mostPictureBytes = 3'000'000;

QDir manual() {
    return QFileInfo(sharedFile(u"kullanim/index.html"_s)).dir();
}

QString textOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList captured(const QString& text, const QString& pattern) {
    QStringList found;
    for (const QRegularExpressionMatch& match : QRegularExpression(pattern).globalMatch(text))
        found.append(match.captured(1));
    return found;
}

/// As a reader sees it: without marks, each run of blanks as one.
QString words(const QString& html) {
    return QTextDocumentFragment::fromHtml(html).toPlainText().simplified();
}

/// The captions of a form as its screen shows them, but for single signs.
QStringList captionsOf(const QString& path) {
    QFile form(path);
    QStringList captions;
    if (!form.open(QIODevice::ReadOnly))
        return captions;
    QXmlStreamReader reader(&form);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement || reader.name() != u"property")
            continue;
        const QString property = reader.attributes().value("name").toString();
        if (property != u"caption" && property != u"text" && property != u"title")
            continue;
        if (!reader.readNextStartElement() || reader.name() != u"string")
            continue;
        const QString shown = harfcevir(reader.readElementText()).simplified();
        if (shown.size() > 1 && std::ranges::any_of(shown, [](QChar sign) { return sign.isLetter(); }))
            captions.append(shown);
    }
    return captions;
}

}  // namespace

class ManualTest : public QObject {
    Q_OBJECT

    static void addPages() {
        QTest::addColumn<QString>("row");
        for (const QString& page : manual().entryList({u"*.html"_s}))
            QTest::newRow(qPrintable(page)) << manual().filePath(page);
    }

private Q_SLOTS:
    void standsByItself_data() { addPages(); }
    void standsByItself() {
        QFETCH(const QString, row);
        const QString page = textOf(row);
        for (const char* loading : {"<script", "<link", "<iframe", "@import", "src=\"http", "href=\"http"})
            QVERIFY2(!page.contains(QLatin1StringView(loading)), loading);
        QVERIFY2(!page.contains(QRegularExpression(u"@[A-Z]+@"_s)), "a part wasn't put in");
        // A painted gradient of the page's own is all that an url may name.
        QVERIFY(!page.contains(QRegularExpression(u"url\\((?!#)"_s)));
        QVERIFY(page.contains(u"<html lang=\"tr\">"_s));
        QVERIFY(page.contains(u"Kovanix "_s + QCoreApplication::applicationVersion()));
    }

    void linksLeadSomewhere_data() { addPages(); }
    void linksLeadSomewhere() {
        QFETCH(const QString, row);
        const QString page = textOf(row);
        const QStringList targets = captured(page, u"href=\"([^\"]*)\""_s);
        QVERIFY(targets.size() >= manual().entryList({u"*.html"_s}).size() - 1);  // the bar of all pages
        for (const QString& target : targets) {
            const QString file = target.section(u'#', 0, 0);
            const QString place = target.section(u'#', 1);
            const QString other = file.isEmpty() ? page : textOf(manual().filePath(file));
            QVERIFY2(!other.isEmpty(), qPrintable(target));
            QVERIFY2(place.isEmpty() || other.count(u"id=\""_s + place + u'"') == 1, qPrintable(target));
        }
    }

    void picturesAreThereAndTold_data() { addPages(); }
    void picturesAreThereAndTold() {
        QFETCH(const QString, row);
        for (const QString& picture : captured(textOf(row), u"(<img[^>]*>)"_s)) {
            const QString file = captured(picture, u"src=\"([^\"]*)\""_s).value(0);
            QVERIFY2(!QImage(manual().filePath(file)).isNull(), qPrintable(picture));
            QVERIFY2(captured(picture, u"alt=\"([^\"]*)\""_s).value(0).size() > 20, qPrintable(picture));
        }
    }

    void noPictureIsLeftOver() {
        QString pages;
        for (const QString& page : manual().entryList({u"*.html"_s}))
            pages += textOf(manual().filePath(page));
        const QStringList pictures = QDir(manual().filePath(u"resim"_s)).entryList({u"*.png"_s});
        QVERIFY(!pictures.isEmpty());
        for (const QString& picture : pictures)
            QVERIFY2(pages.contains(u"src=\"resim/"_s + picture + u'"'), qPrintable(picture));
    }

    void picturesAreFewAndSmall() {
        const QFileInfoList pictures =
            QDir(PROJECT_FOLDER "/docs/screenshots"_L1).entryInfoList({u"*.png"_s});
        qint64 bytes = 0;
        for (const QFileInfo& picture : pictures)
            bytes += picture.size();
        QVERIFY(!pictures.isEmpty());
        QVERIFY(pictures.size() <= mostPictures);
        QVERIFY(bytes <= mostPictureBytes);
    }

    void questionsAreAnswered() {
        const QString page = textOf(manual().filePath(u"sorular.html"_s));
        const QString list = page.mid(page.indexOf(u"<main>"_s));
        const QStringList questions = captured(list, u"<li><a href=\"[^\"]+\">([^<]*)</a></li>"_s);
        QVERIFY(questions.size() >= 40);
        QCOMPARE(list.count(u"<li>"_s), questions.size());  // none without an answer
        QCOMPARE(QSet<QString>(questions.begin(), questions.end()).size(), questions.size());
        for (const QString& question : questions)
            QVERIFY2(question.endsWith(u'?'), qPrintable(question));
        QVERIFY(questions.contains(u"Fiyatı nasıl değiştiririm?"_s));
    }

    void captionsAreExplained_data() {
        QTest::addColumn<QString>("row");
        const QDir sources(PROJECT_FOLDER "/src"_L1);
        for (const QString& room : sources.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            for (const QString& form : QDir(sources.filePath(room)).entryList({u"*.ui"_s}))
                QTest::newRow(qPrintable(form)) << sources.filePath(room + u'/' + form);
        }
    }
    void captionsAreExplained() {
        QFETCH(const QString, row);
        QStringList explained;
        for (const QString& heading :
             captured(textOf(manual().filePath(u"sozluk.html"_s)), u"<th scope=\"row\">([^<]*)</th>"_s)) {
            for (const QString& word : words(heading).split(u", "_s))
                explained.append(word);
        }
        const QStringList captions = captionsOf(row);
        QVERIFY(!captions.isEmpty());
        for (const QString& caption : captions)
            QVERIFY2(explained.contains(caption), qPrintable(caption));
    }
};

int main(int argc, char** argv) {
    return runTests<ManualTest>(argc, argv);
}
#include "test_manual.moc"
