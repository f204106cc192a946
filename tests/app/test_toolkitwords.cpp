#include <QAbstractButton>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <memory>

#include "desktop/messagebox.h"
#include "rows.h"
#include "runtests.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

/// What the toolkit itself says is in Turkish, and nothing else changes with it.
class TestToolkitWords : public QObject {
    Q_OBJECT

    struct BoxesKeepOurWordsRow {
        int style;
        QStringList words;
    };

private Q_SLOTS:
    void itsMenusSpeakTurkish() {
        QLineEdit field;
        const std::unique_ptr<QMenu> menu(field.createStandardContextMenu());
        QStringList words;
        for (const QAction* action : menu->actions())
            words.append(action->text().remove(u'&').section(u'\t', 0, 0));
        QVERIFY2(words.contains(u"Yapıştır"_s), qPrintable(words.join(u'|')));
    }

    void boxesKeepOurWords_data() {
        addRows<BoxesKeepOurWordsRow>(
            {{"ok", {0, QStringList{u"Tamam"_s}}},
             {"ok, cancel", {1, QStringList{u"Tamam"_s, u"İptal"_s}}},
             {"yes, no", {4, QStringList{u"Evet"_s, u"Hayır"_s}}},
             {"retry, cancel", {5, QStringList{u"Yeniden dene"_s, u"İptal"_s}}},
             {"cancel, try, go on", {6, QStringList{u"İptal"_s, u"Yeniden dene"_s, u"Devam"_s}}}});
    }
    void boxesKeepOurWords() {
        QFETCH(BoxesKeepOurWordsRow, row);
        QStringList shown;
        QTimer::singleShot(0, qApp, [&shown] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box)
                return;
            const auto buttons = box->buttons();
            for (const QAbstractButton* button : buttons)
                shown << button->text();
            box->done(-1);
        });
        messageBox(u"?"_s, row.style, u"Kovanix"_s);
        shown.sort();
        row.words.sort();
        QCOMPARE(shown, row.words);
    }

    // Numbers are written by platform/values and by no locale: words must not bring one.
    void numbersStayAsTheyWere() {
        QCOMPARE(QLocale(), QLocale::system());
        QCOMPARE(QLocale().toString(1234.5), QLocale::system().toString(1234.5));
        QCOMPARE(QString::number(1234.5), u"1234.5"_s);
        QCOMPARE(u"%L1"_s.arg(1234.5), QLocale::system().toString(1234.5));
        QCOMPARE(QApplication::layoutDirection(), Qt::LeftToRight);
    }
};

int main(int argc, char** argv) {
    return runTests<TestToolkitWords>(argc, argv);
}

#include "test_toolkitwords.moc"
