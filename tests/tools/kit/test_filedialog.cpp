#include <QAbstractItemView>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QLineEdit>
#include <QTranslator>
#include <QTreeView>
#include <algorithm>

#include "desktop/messagebox.h"
#include "desktop/screensize.h"
#include "kit/filedialog.h"
#include "paintedtext.h"
#include "rows.h"
#include "runtests.h"
#include "screencontract.h"
#include "shopfixture.h"
#include "widgets/drawnbutton.h"
#include "widgets/fittedlabel.h"

namespace kovanix {

using namespace Qt::StringLiterals;
using What = FileQuestion::What;

struct SizeRow {
    What what;
    QSize display;
};

struct WordsRow {
    What what;
    QStringList words;  ///< painted besides the names of files and folders
};

/// What is typed, what the dialog asks or tells of it, and what comes out.
struct TypedRow {
    What what;
    QString typed;
    QString box;  ///< empty: none
    int answer = MessageBoxAnswer::ok;
    QString chosen;  ///< below the folder; empty: the dialog stays
};

struct PlacesRow {
    QStringList folders;  ///< in the user's own
    QStringList mounts;
    QStringList captions;
};

class FileDialogTest : public QObject {
    Q_OBJECT

    std::optional<ShopFixture> m_shop;
    std::optional<QWidget> m_above;
    QString m_chosen;

    QString file(const QString& name) const { return m_shop->file(u"ev/"_s + name); }
    void write(const QString& name, qsizetype bytes) const {
        QFile written(file(name));
        QVERIFY(written.open(QIODevice::WriteOnly));
        written.write(QByteArray(bytes, 'x'));
        QVERIFY(written.setFileTime(QDateTime(QDate(2026, 11, 3), QTime(7, 5)),
                                    QFileDevice::FileModificationTime));
    }
    FileDialog& ask(What what) {
        m_chosen.clear();
        const QStringList kinds{u"Tablolar (*.csv *.xlsx *.xls *.txt)"_s, u"Bütün dosyalar (*)"_s};
        askForFile(*m_above,
                   {what,
                    u"Hangi dosya?"_s,
                    file({}),
                    what == What::fileToRead ? kinds : QStringList(),
                    {},
                    u"csv"_s},
                   [this](const QString& path) { m_chosen = path; });
        auto* const dialog = m_above->findChild<FileDialog*>();
        const int rows = what == What::folder ? 2 : 4;
        if (!QTest::qWaitFor([&] { return rowCount(*dialog) == rows && dialog->isActiveWindow(); }))
            qFatal("%d rows", rowCount(*dialog));
        return *dialog;
    }
    static QTreeView& list(const QWidget& dialog) { return *dialog.findChild<QTreeView*>(); }
    static int rowCount(const QWidget& dialog) {
        return list(dialog).model()->rowCount(list(dialog).rootIndex());
    }
    static QModelIndex entry(const QWidget& dialog, const QString& name) {
        const QTreeView& view = list(dialog);
        for (int row = 0; row < rowCount(dialog); ++row) {
            const QModelIndex index = view.model()->index(row, 0, view.rootIndex());
            if (index.data().toString() == name)
                return index;
        }
        return {};
    }
    static void touch(const QWidget& dialog, const QString& name, bool twice = false) {
        QTreeView& view = list(dialog);
        const QPoint place = view.visualRect(entry(dialog, name)).center();
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, place);
        if (twice)
            QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, place);
    }
    static DrawnButton& button(const QWidget& dialog, const QString& name) {
        return *dialog.findChild<DrawnButton*>(name);
    }
    static QLineEdit& field(const QWidget& dialog) {
        return *dialog.findChild<QLineEdit*>(u"fileNameEdit"_s);
    }
    static QString folder(const QWidget& dialog) {
        return dialog.findChild<FittedLabel*>(u"klasor"_s)->text();
    }
    bool hasGone() const { return !m_above->findChild<FileDialog*>(); }

private Q_SLOTS:
    void init() {
        m_shop.emplace();
        qputenv("HOME", QFile::encodeName(m_shop->file(u"ev"_s)));
        for (const QString& name : {u"Documents"_s, u"Eski/Daha eski"_s})
            QVERIFY(QDir().mkpath(file(name)));
        write(u"fiyatlar.csv"_s, 125);
        write(u"uzun adı olan bir stok listesi, yaz sonu sayımından.xlsx"_s, 1258291);
        m_above.emplace();
        m_above->resize(800, 560);
        m_above->show();
    }
    void cleanup() {
        m_above.reset();
        QVERIFY(allAnswered(m_shop->boxes));
        m_shop.reset();
    }

    void sizes_data() {
        QTest::addColumn<SizeRow>("row");
        for (const QSize display : displays()) {
            const auto add = [&](const char* name, What what) {
                QTest::addRow("%s %dx%d", name, display.width(), display.height()) << SizeRow{what, display};
            };
            add("read", What::fileToRead);
            add("write", What::fileToWrite);
            add("folder", What::folder);
        }
    }
    void sizes() {
        QFETCH(const SizeRow, row);
        setScreenMetricsSource([&] { return ScreenMetrics{row.display, 15, 15}; });
        const FileDialog& dialog = ask(row.what);
        QVERIFY(QRect({}, row.display).contains(QRect({}, dialog.size())));
        QTRY_COMPARE(layoutFaults(dialog).join(u'\n'), QString());
        constexpr int touch = 44;
        for (DrawnButton* const one : dialog.findChildren<DrawnButton*>()) {
            QVERIFY2(one->height() >= touch && one->width() >= touch, qPrintable(one->objectName()));
            QVERIFY2(one->captionSize() >= 11, qPrintable(one->objectName()));
        }
        QVERIFY(field(dialog).height() >= touch);
        QVERIFY(list(dialog).header()->height() >= touch);
        QVERIFY(list(dialog).visualRect(entry(dialog, u"Eski"_s)).height() >= touch);
        QVERIFY(list(dialog).viewport()->height() >= 3 * touch);
        if (auto& kinds = *dialog.findChild<QComboBox*>(u"fileTypeCombo"_s); kinds.isVisible()) {
            QVERIFY(kinds.height() >= touch);
            kinds.showPopup();
            QVERIFY(kinds.view()->visualRect(kinds.model()->index(1, 0)).height() >= touch);
            kinds.hidePopup();
        }
        if (row.what == What::folder)
            return;
        // Size and moment are whole, in letters of the list's own size.
        const int letters = list(dialog).font().pixelSize();
        for (const PaintedText& text : paintedTexts(const_cast<FileDialog&>(dialog))) {
            if (text.text == u"03.11.2026 07:05" || text.text == u"1,2 MB")
                QCOMPARE(text.letters, letters);
            QVERIFY2(!text.text.contains(u"###") && text.letters >= 11, qPrintable(text.text));
        }
    }

    void words_data() {
        const QStringList always{u"Hangi dosya?"_s, u"Üst klasör"_s,   u"Belgeler"_s, u"Ad"_s,
                                 u"Boyut"_s,        u"Değiştirilme"_s, u"klasör"_s,   u"Vazgeç"_s};
        const QStringList files{u"125 bayt"_s, u"1,2 MB"_s, u"03.11.2026 07:05"_s, u"Dosya adı"_s,
                                u"Bir klasöre iki kez dokunun: açılır."_s};
        const QStringList kinds{u"Tablolar (*.csv *.xlsx *.xls *.txt)"_s};
        addRows<WordsRow>(
            {{"read", {What::fileToRead, always + files + kinds + QStringList{u"Aç"_s}}},
             {"write", {What::fileToWrite, always + files + QStringList{u"Kaydet"_s}}},
             {"folder",
              {What::folder,
               always + QStringList{u"Klasör adı"_s, u"Seç"_s,
                                    u"Bir klasöre bir kez dokunun: seçilir; iki kez: açılır."_s}}}});
    }
    /// On a machine that lacks the toolkit's Turkish words, too.
    void words() {
        QFETCH(const WordsRow, row);
        const auto translators = qApp->findChildren<QTranslator*>();
        for (QTranslator* const words : translators)
            QCoreApplication::removeTranslator(words);
        const auto back = qScopeGuard([&] {
            for (QTranslator* const words : translators)
                QCoreApplication::installTranslator(words);
        });
        FileDialog& dialog = ask(row.what);
        touch(dialog, row.what == What::folder ? u"Eski"_s : u"fiyatlar.csv"_s);  // enables all
        QStringList missing = row.words;
        for (const PaintedText& text : paintedTexts(dialog)) {
            // Names, paths and moments of folders are this machine's own.
            const bool isName =
                file({}).contains(text.text) || text.text.startsWith(u"/") || text.text.contains(u".2") ||
                text.text.contains(u"eski", Qt::CaseInsensitive) || text.text == u"Documents" ||
                text.text == u"fiyatlar.csv" || text.text.contains(u"stok") || text.text.contains(u".xlsx");
            QVERIFY2(isName || row.words.contains(text.text), qPrintable(text.text));
            missing.removeAll(text.text);
        }
        QCOMPARE(missing.join(u'\n'), QString());
        for (const QWidget* const part : dialog.findChildren<QWidget*>())
            QVERIFY2(!part->isVisible() || part->toolTip().isEmpty(), qPrintable(part->toolTip()));
    }

    void aTouchedFileIsTaken() {
        const FileDialog& dialog = ask(What::fileToRead);
        QVERIFY(!button(dialog, u"sec"_s).isEnabled());
        touch(dialog, u"fiyatlar.csv"_s);
        QCOMPARE(field(dialog).text(), u"fiyatlar.csv"_s);
        QCOMPARE(field(dialog).cursorPosition(), 0);
        QVERIFY(m_chosen.isEmpty());
        button(dialog, u"sec"_s).click();
        QCOMPARE(m_chosen, file(u"fiyatlar.csv"_s));
        QTRY_VERIFY(hasGone());
    }

    void foldersAreGoneThrough() {
        const FileDialog& dialog = ask(What::fileToRead);
        QCOMPARE(QDir(folder(dialog)), QDir(file({})));
        touch(dialog, u"Eski"_s, true);
        QTRY_COMPARE(folder(dialog), file(u"Eski"_s));
        button(dialog, u"ustklasor"_s).click();
        QCOMPARE(QDir(folder(dialog)), QDir(file({})));
        button(dialog, u"yer0"_s).click();
        QCOMPARE(folder(dialog), file(u"Documents"_s));
        for (int step = 0; button(dialog, u"ustklasor"_s).isEnabled() && step < 50; ++step)
            button(dialog, u"ustklasor"_s).click();
        QCOMPARE(folder(dialog), u"/"_s);
        QVERIFY(m_chosen.isEmpty());
        QTest::keyClick(&list(dialog), Qt::Key_Escape);
        QTRY_VERIFY(hasGone());
        QVERIFY(m_chosen.isEmpty());
    }

    void aFolderIsTaken() {
        const FileDialog& dialog = ask(What::folder);
        touch(dialog, u"Eski"_s);
        button(dialog, u"sec"_s).click();
        QCOMPARE(m_chosen, file(u"Eski"_s));
    }

    void theFolderThatIsOpenIsTaken() {
        const FileDialog& dialog = ask(What::folder);
        touch(dialog, u"Eski"_s, true);
        QTRY_COMPARE(folder(dialog), file(u"Eski"_s));
        button(dialog, u"sec"_s).click();
        QCOMPARE(m_chosen, file(u"Eski"_s));
    }

    void nothingIsRenamedOrDeletedHere() {
        const FileDialog& dialog = ask(What::fileToRead);
        touch(dialog, u"fiyatlar.csv"_s);
        QTest::keyClick(&list(dialog), Qt::Key_Delete);
        QTest::keyClick(&list(dialog), Qt::Key_F2);
        QVERIFY(!list(dialog).findChild<QLineEdit*>());
        QVERIFY(QFile::exists(file(u"fiyatlar.csv"_s)));
        QCOMPARE(list(dialog).contextMenuPolicy(), Qt::NoContextMenu);
        QCOMPARE(list(dialog).header()->contextMenuPolicy(), Qt::NoContextMenu);
    }

    void typed_data() {
        using namespace MessageBoxAnswer;
        const QString missing = u"Böyle bir dosya yok:\n"_s;
        const QString there = u"Bu dosya var. Üzerine yazılsın mı?\n"_s;
        const QString make = u"Böyle bir klasör yok. Açılsın mı?\n"_s;
        const QString prices = u"fiyatlar.csv"_s;
        addRows<TypedRow>({
            {"a file to read", {What::fileToRead, prices, {}, ok, prices}},
            {"one that isn't there", {What::fileToRead, u"yok.csv"_s, missing, ok, {}}},
            {"a new file", {What::fileToWrite, u"yeni.csv"_s, {}, ok, u"yeni.csv"_s}},
            {"one without its ending", {What::fileToWrite, u"yeni"_s, {}, ok, u"yeni.csv"_s}},
            {"one to write over", {What::fileToWrite, prices, there, yes, prices}},
            {"one that stays", {What::fileToWrite, prices, there, no, {}}},
            {"one to write over without its ending", {What::fileToWrite, u"fiyatlar"_s, there, no, {}}},
            {"a folder that is there", {What::folder, u"Eski"_s, {}, ok, u"Eski"_s}},
            {"a new folder", {What::folder, u"Yeni/alt"_s, make, yes, u"Yeni/alt"_s}},
            {"no new folder", {What::folder, u"Yeni"_s, make, no, {}}},
            {"a folder that is a file", {What::folder, prices, u"Bu bir klasör değil:\n"_s, ok, {}}},
        });
    }
    void typed() {
        QFETCH(const TypedRow, row);
        FileDialog& dialog = ask(row.what);
        const QString ending =
            row.typed.contains(u'.') || row.what != What::fileToWrite ? QString() : u".csv"_s;
        if (!row.box.isEmpty())
            m_shop->boxes.expect(u"Hangi dosya?"_s, row.box + file(row.typed) + ending, row.answer);
        field(dialog).setText(row.typed);
        QTest::keyClick(&field(dialog), Qt::Key_Return);
        QCOMPARE(m_chosen, row.chosen.isEmpty() ? QString() : file(row.chosen));
        if (row.chosen.isEmpty())
            QVERIFY(dialog.isVisible());
        if (row.what == What::folder)
            QCOMPARE(QDir(file(row.typed)).exists(), !row.chosen.isEmpty());
    }

    void places_data() {
        const QString stick = u"/media/ali/KASA"_s;
        addRows<PlacesRow>(
            {{"none of one's own", {{}, {u"/"_s, u"/boot"_s}, {u"Ev klasörü"_s}}},
             {"one's own and a stick",
              {{u"Documents"_s, u"Downloads"_s, u"Desktop"_s},
               {u"/"_s, stick},
               {u"Belgeler"_s, u"İndirilenler"_s, u"Masaüstü"_s, u"USB: KASA"_s}}},
             {"more than there is room for",
              {{u"Documents"_s, u"Downloads"_s, u"Desktop"_s},
               {stick, u"/run/media/ali/B"_s, u"/media/ali/C"_s},
               {u"Belgeler"_s, u"İndirilenler"_s, u"Masaüstü"_s, u"USB: KASA"_s, u"USB: B"_s}}}});
    }
    void places() {
        QFETCH(const PlacesRow, row);
        const QString home = m_shop->file(u"ev2"_s);
        qputenv("HOME", QFile::encodeName(home));
        for (const QString& folder : row.folders)
            QVERIFY(QDir().mkpath(home + u'/' + folder));
        QStringList captions;
        for (const Place& place : placesToGo(row.mounts))
            captions << place.caption;
        QCOMPARE(captions, row.captions);
    }
};

}  // namespace kovanix

int main(int argc, char** argv) {
    return kovanix::runTests<kovanix::FileDialogTest>(argc, argv);
}
#include "test_filedialog.moc"
