#include <QAbstractButton>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include "desktop/messagebox.h"
#include "rows.h"
#include "runtests.h"

using namespace kovanix;

/// The toolkit's own dialogs speak Turkish, and nothing else changes with it.
class TestToolkitWords : public QObject {
    Q_OBJECT

    struct BoxesKeepOurWordsRow {
        int style;
        QStringList words;
    };

private Q_SLOTS:
    void itsDialogsSpeakTurkish() {
        QColorDialog dialog;
        dialog.setOption(QColorDialog::DontUseNativeDialog);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Renk Seç"));
        const auto* buttons = dialog.findChild<QDialogButtonBox*>();
        QVERIFY(buttons);
        QCOMPARE(buttons->button(QDialogButtonBox::Ok)->text(), QStringLiteral("Tamam"));
        QCOMPARE(buttons->button(QDialogButtonBox::Cancel)->text(), QStringLiteral("İptal"));
    }

    void boxesKeepOurWords_data() {
        addRows<BoxesKeepOurWordsRow>(
            {{"ok", {0, QStringList{QStringLiteral("Tamam")}}},
             {"ok, cancel", {1, QStringList{QStringLiteral("Tamam"), QStringLiteral("İptal")}}},
             {"yes, no", {4, QStringList{QStringLiteral("Evet"), QStringLiteral("Hayır")}}},
             {"retry, cancel", {5, QStringList{QStringLiteral("Yeniden dene"), QStringLiteral("İptal")}}},
             {"cancel, try, go on",
              {6, QStringList{QStringLiteral("İptal"), QStringLiteral("Yeniden dene"),
                              QStringLiteral("Devam")}}}});
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
        messageBox(QStringLiteral("?"), row.style, QStringLiteral("Kovanix"));
        shown.sort();
        row.words.sort();
        QCOMPARE(shown, row.words);
    }

    // Numbers are written by platform/values and by no locale: words must not bring one.
    void numbersStayAsTheyWere() {
        QCOMPARE(QLocale(), QLocale::system());
        QCOMPARE(QLocale().toString(1234.5), QLocale::system().toString(1234.5));
        QCOMPARE(QString::number(1234.5), QStringLiteral("1234.5"));
        QCOMPARE(QStringLiteral("%L1").arg(1234.5), QLocale::system().toString(1234.5));
        QCOMPARE(QApplication::layoutDirection(), Qt::LeftToRight);
    }
};

int main(int argc, char** argv) {
    return runTests<TestToolkitWords>(argc, argv);
}

#include "test_toolkitwords.moc"
