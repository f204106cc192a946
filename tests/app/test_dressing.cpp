#include <QAccessible>
#include <QCheckBox>
#include <QGroupBox>
#include <QHashSeed>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QTabWidget>
#include <QVBoxLayout>
#include <array>

#include "app/modTurkce.h"
#include "rows.h"
#include "runtests.h"
#include "runtime/screen.h"
#include "widgets/activeresize.h"
#include "widgets/caption.h"
#include "widgets/drawnbutton.h"
#include "widgets/drawnframe.h"
#include "widgets/tdbgrid.h"
#include "widgets/vklabel.h"
#include "widgets/vsflexgrid.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

// A screen's title and the way it is dressed hang on its name alone.
namespace named {
class urunler : public Screen {
    Q_OBJECT
};
class stokraporu : public Screen {
    Q_OBJECT
};
class liste : public Screen {
    Q_OBJECT
};
class urunbul : public Screen {
    Q_OBJECT
};
class satisraporlar : public Screen {
    Q_OBJECT
};
class zparogu : public Screen {
    Q_OBJECT
};
class raporlarmenu : public Screen {
    Q_OBJECT
};
class kullanicilar : public Screen {
    Q_OBJECT
};
class menu : public Screen {
    Q_OBJECT
};
class frmLogin : public Screen {
    Q_OBJECT
};
class satisekrani : public Screen {
    Q_OBJECT
};
class tema : public Screen {
    Q_OBJECT
};
class toplamtema : public Screen {
    Q_OBJECT
};
class sifresorur : public Screen {
    Q_OBJECT
};
class hallimzda : public Screen {
    Q_OBJECT
};
class uyari : public Screen {
    Q_OBJECT
};
class klavyesayi : public Screen {
    Q_OBJECT
};
class saatt : public Screen {
    Q_OBJECT
};
}  // namespace named

namespace {

struct NamedScreen {
    const char* name;
    std::unique_ptr<Screen> (*make)();
    QStringView title;
};

template <class S>
std::unique_ptr<Screen> make() {
    return std::make_unique<S>();
}

const QString storedTitle = u"Saklı #"_s;

const std::array<NamedScreen, 18> namedScreens{{
    {"urunler", make<named::urunler>, u"URUN LISTESI"},
    {"stokraporu", make<named::stokraporu>, u"STOK RAPORU"},
    {"liste", make<named::liste>, u"MUSTERI LISTESI"},
    {"urunbul", make<named::urunbul>, u"URUN ARA"},
    {"satisraporlar", make<named::satisraporlar>, u"SATIS RAPORLARI"},
    {"zparogu", make<named::zparogu>, u"Z RAPORU"},
    {"raporlarmenu", make<named::raporlarmenu>, u"RAPORLAR"},
    {"kullanicilar", make<named::kullanicilar>, u"KULLANICILAR"},
    {"menu", make<named::menu>, u"MENU"},
    {"frmLogin", make<named::frmLogin>, u"Kovanix"},
    {"satisekrani", make<named::satisekrani>, u"Kovanix Satis"},
    {"tema", make<named::tema>, u"TEMA"},
    {"toplamtema", make<named::toplamtema>, u"TOPLAM RENGI"},
    {"sifresorur", make<named::sifresorur>, u"SIFRE"},
    {"hallimzda", make<named::hallimzda>, u"Kovanix"},
    {"uyari", make<named::uyari>, u"UYARI"},
    {"klavyesayi", make<named::klavyesayi>, u"SAYILAR"},
    {"a screen without a title of its own keeps the stored one", make<named::saatt>, u"Saklı #"},
}};

std::unique_ptr<Screen> screenNamed(const QByteArray& name) {
    for (const NamedScreen& entry : namedScreens) {
        if (name == entry.name)
            return entry.make();
    }
    return nullptr;
}

QWidget* makeControl(const QString& kind, QWidget* parent) {
    if (kind == u"QLabel")
        return new QLabel(parent);
    if (kind == u"QPushButton")
        return new QPushButton(parent);
    if (kind == u"QCheckBox")
        return new QCheckBox(parent);
    if (kind == u"QGroupBox")
        return new QGroupBox(parent);
    if (kind == u"QLineEdit")
        return new QLineEdit(parent);
    if (kind == u"vkCommand")
        return new vkCommand(parent);
    if (kind == u"vkToggleButton")
        return new vkToggleButton(parent);
    if (kind == u"vkFrame")
        return new vkFrame(parent);
    if (kind == u"vkLabel")
        return new vkLabel(parent);
    if (kind == u"ActiveResize")
        return new ActiveResize(parent);
    if (kind == u"TDBGrid")
        return new TDBGrid(parent);
    if (kind == u"VSFlexGrid")
        return new VSFlexGrid(parent);
    if (kind == u"QScrollArea")
        return new QScrollArea(parent);
    if (kind == u"QTabWidget")
        return new QTabWidget(parent);
    return new QWidget(parent);
}

/// Puts a control into a container the way a screen does: through a layout, a viewport or a page.
void put(QWidget& control, QWidget& container) {
    if (auto* area = qobject_cast<QScrollArea*>(&container)) {
        if (!area->widget())
            area->setWidget(&control);
        else
            control.setParent(area->viewport());
    } else if (auto* tabs = qobject_cast<QTabWidget*>(&container)) {
        tabs->addTab(&control, QString());
    } else {
        if (!container.layout())
            new QVBoxLayout(&container);
        container.layout()->addWidget(&control);
    }
}

QString accessibleName(QWidget& control) {
    const QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&control);
    return interface ? interface->text(QAccessible::Name) : QString();
}

}  // namespace

class TestDressing : public QObject {
    Q_OBJECT

    struct TitlesRow {
        size_t index;
        QString title;
    };
    struct DressesByNameRow {
        bool captions, headings;
    };
    struct DressesKindsRow {
        QString kind, stored, dressed, tip;
    };
    struct OneSymbolCaptionsRow {
        QString kind, stored, dressed;
    };
    struct LeavesOneKeyAloneRow {
        QString kind, name;
        QVariant left, top;
        QString stored, shown;
    };
    struct NamesControlsRow {
        QString kind, stored, tip, own, name;
    };

private Q_SLOTS:
    void hashesInNarrowRegisters() { QCOMPARE(std::size_t(QHashSeed::globalSeed()), std::size_t(0)); }

    void titles_data() {
        QTest::addColumn<TitlesRow>("row");
        for (size_t index = 0; index < namedScreens.size(); ++index)
            QTest::newRow(namedScreens[index].name) << TitlesRow{index, namedScreens[index].title.toString()};
    }
    void titles() {
        QFETCH(const TitlesRow, row);
        const std::unique_ptr<Screen> screen = namedScreens[row.index].make();
        screen->setWindowTitle(storedTitle);
        ekranbasligi(*screen);
        QCOMPARE(screen->windowTitle(), row.title);
        screen->setWindowTitle(storedTitle);
        ekrandonat(*screen);
        QCOMPARE(screen->windowTitle(), row.title);
    }

    void dressesByName_data() {
        addRows<DressesByNameRow>({{"menu", {true, true}},
                                   {"urunler", {true, true}},
                                   {"hallimzda", {true, false}},
                                   {"frmLogin", {false, false}},
                                   {"satisekrani", {false, false}}});
    }
    void dressesByName() {
        QFETCH(const DressesByNameRow, row);
        const std::unique_ptr<Screen> screen = screenNamed(QTest::currentDataTag());
        QVERIFY(screen);
        auto* label = new QLabel(u"~R~N"_s, screen.get());
        auto* grid = new TDBGrid(screen.get());
        grid->setColumnCaptions({u"id"_s, u"~R~N"_s});
        ekrandonat(*screen);
        QCOMPARE(label->text(), row.captions ? u"ÜRÜN"_s : u"~R~N"_s);
        QCOMPARE(grid->columnCaption(0), row.headings ? u"NO"_s : u"id"_s);
        QCOMPARE(grid->columnCaption(1), row.headings ? u"ÜRÜN"_s : u"~R~N"_s);
    }

    void dressesKinds_data() {
        QTest::addColumn<DressesKindsRow>("row");
        const QString stored = u"S!L & {IK 10%"_s;
        const QString dressed = u"SİL ö çIK 10Ğ"_s;
        const QString tip = u"G^n%"_s;
        const QString dressedTip = u"GünĞ"_s;
        for (const char* kind :
             {"QLabel", "QPushButton", "QCheckBox", "QGroupBox", "vkCommand", "vkToggleButton", "vkFrame"})
            QTest::newRow(kind) << DressesKindsRow{QString::fromLatin1(kind), stored, dressed, dressedTip};
        QTest::newRow("vkLabel is left alone") << DressesKindsRow{u"vkLabel"_s, stored, stored, tip};
        QTest::newRow("TDBGrid is left alone") << DressesKindsRow{u"TDBGrid"_s, QString(), QString(), tip};
        QTest::newRow("VSFlexGrid is left alone")
            << DressesKindsRow{u"VSFlexGrid"_s, QString(), QString(), tip};
        QTest::newRow("ActiveResize has no text of its own")
            << DressesKindsRow{u"ActiveResize"_s, QString(), QString(), tip};
        QTest::newRow("QLineEdit has a tip only")
            << DressesKindsRow{u"QLineEdit"_s, QString(), QString(), dressedTip};
        QTest::newRow("QWidget has a tip only")
            << DressesKindsRow{u"QWidget"_s, QString(), QString(), dressedTip};
        QTest::newRow("empty caption") << DressesKindsRow{u"QLabel"_s, QString(), QString(), dressedTip};
        QTest::newRow("no symbol in the caption")
            << DressesKindsRow{u"QPushButton"_s, u"EKLE"_s, u"EKLE"_s, dressedTip};
        QTest::newRow("letters already") << DressesKindsRow{u"vkCommand"_s, u"ÖDEŞ"_s, u"ÖDEŞ"_s, dressedTip};
    }
    void dressesKinds() {
        QFETCH(const DressesKindsRow, row);
        Screen screen;
        QWidget* control = makeControl(row.kind, &screen);
        QCOMPARE(controlKind(*control), row.kind);
        if (!row.stored.isEmpty())
            QVERIFY(setCaption(*control, row.stored));
        control->setToolTip(u"G^n%"_s);
        if (auto* field = qobject_cast<QLineEdit*>(control))
            field->setText(u"^r^n"_s);
        kontrolleridolas(screen);
        QCOMPARE(caption(*control), row.dressed);
        QCOMPARE(control->toolTip(), row.tip);
        if (const auto* field = qobject_cast<QLineEdit*>(control))
            QCOMPARE(field->text(), u"^r^n"_s);
    }

    void dressesSevenLevels_data() {
        QTest::addColumn<QStringList>("kinds");
        QTest::newRow("plain containers") << QStringList{u"QWidget"_s};
        QTest::newRow("ActiveResize") << QStringList{u"ActiveResize"_s};
        QTest::newRow("vkFrame") << QStringList{u"vkFrame"_s};
        QTest::newRow("QGroupBox") << QStringList{u"QGroupBox"_s};
        QTest::newRow("scroll areas, their viewports don't count") << QStringList{u"QScrollArea"_s};
        QTest::newRow("scroll areas and their contents") << QStringList{u"QScrollArea"_s, u"QWidget"_s};
        QTest::newRow("pages, their stack doesn't count") << QStringList{u"QTabWidget"_s, u"QWidget"_s};
        QTest::newRow("all kinds") << QStringList{u"ActiveResize"_s, u"vkFrame"_s, u"QGroupBox"_s,
                                                  u"QWidget"_s};
    }
    void dressesSevenLevels() {
        QFETCH(const QStringList, kinds);
        constexpr int levels = 9;
        Screen screen;
        QWidget* container = &screen;
        std::vector<QWidget*> containers;
        std::vector<QLabel*> labels;
        for (int level = 0; level < levels; ++level) {
            QWidget* inner = makeControl(kinds[level % kinds.size()], nullptr);
            setCaption(*inner, u"{ER{EVE"_s);
            put(*inner, *container);
            auto* label = new QLabel(u"~R~N"_s);
            put(*label, *container);
            containers.push_back(inner);
            labels.push_back(label);
            container = inner;
        }
        kontrolleridolas(screen);
        for (size_t level = 0; level < levels; ++level) {
            QVERIFY(screen.isAncestorOf(labels[level]));
            const bool dressed = level < 7;
            QCOMPARE(labels[level]->text(), dressed ? u"ÜRÜN"_s : u"~R~N"_s);
            if (!caption(*containers[level]).isEmpty())
                QCOMPARE(caption(*containers[level]), dressed ? u"çERçEVE"_s : u"{ER{EVE"_s);
        }
    }

    void oneSymbolCaptions_data() {
        QTest::addColumn<OneSymbolCaptionsRow>("row");
        const QString signs = u"|!#$@%&*^{}~"_s;
        const QString letters = u"ıİşğŞĞöÖüçÇÜ"_s;
        for (const char* kind : {"QPushButton", "QLabel", "vkCommand"}) {
            for (qsizetype i = 0; i < signs.size(); ++i)
                QTest::addRow("%s %c", kind, signs[i].toLatin1()) << OneSymbolCaptionsRow{
                    QString::fromLatin1(kind), QString(signs[i]), QString(letters[i])};
        }
        for (const QChar other : u"a?.+-/1,ş"_s)
            QTest::addRow("no symbol, code point %d", other.unicode())
                << OneSymbolCaptionsRow{u"QPushButton"_s, QString(other), QString(other)};
    }
    void oneSymbolCaptions() {
        QFETCH(const OneSymbolCaptionsRow, row);
        Screen screen;
        QWidget* key = makeControl(row.kind, &screen);
        QVERIFY(setCaption(*key, row.stored));
        kontrolleridolas(screen);
        QCOMPARE(caption(*key), row.dressed);
    }

    void leavesOneKeyAlone_data() {
        const QString button = u"QPushButton"_s;
        const QString tus = u"x_21"_s;
        addRows<LeavesOneKeyAloneRow>(
            {{"the key", {button, tus, 30, 1680, u"#"_s, u"#"_s}},
             {"the key of another array", {button, u"harf_21"_s, 30, 1680, u"#"_s, u"#"_s}},
             {"the key with a longer caption", {button, tus, 30, 1680, u"#!"_s, u"#!"_s}},
             {"the key as a label", {u"QLabel"_s, tus, 30, 1680, u"#"_s, u"#"_s}},
             {"drawn buttons know no exception", {u"vkCommand"_s, tus, 30, 1680, u"#"_s, u"ş"_s}},
             {"another index", {button, u"x_20"_s, 30, 1680, u"#"_s, u"ş"_s}},
             {"no member of an array", {button, u"x21"_s, 30, 1680, u"#"_s, u"ş"_s}},
             {"another left", {button, tus, 31, 1680, u"#"_s, u"ş"_s}},
             {"another top", {button, tus, 30, 1681, u"#"_s, u"ş"_s}},
             {"left and top exchanged", {button, tus, 1680, 30, u"#"_s, u"ş"_s}},
             {"no place", {button, tus, {}, {}, u"#"_s, u"ş"_s}}});
    }
    void leavesOneKeyAlone() {
        QFETCH(const LeavesOneKeyAloneRow, row);
        Screen screen;
        QWidget* key = makeControl(row.kind, &screen);
        key->setObjectName(row.name);
        key->setProperty("left", row.left);
        key->setProperty("top", row.top);
        QVERIFY(setCaption(*key, row.stored));
        key->setToolTip(u"#"_s);
        kontrolleridolas(screen);
        QCOMPARE(caption(*key), row.shown);
        QCOMPARE(key->toolTip(), u"ş"_s);
    }

    void repeatChangesNothing() {
        named::menu screen;
        for (const char* kind : {"QLabel", "QPushButton", "QGroupBox", "vkCommand", "vkFrame", "vkLabel"}) {
            QWidget* control = makeControl(QString::fromLatin1(kind), &screen);
            QVERIFY(setCaption(*control, u"|!#$@%&*^{}~ && a"_s));
            control->setToolTip(u"|!#$@%&*^{}~ && a"_s);
        }
        auto* grid = new TDBGrid(&screen);
        grid->setColumnCaptions({u"personeladi"_s, u"sifre"_s, u"id"_s, u"~R~N"_s});
        const auto texts = [&screen, grid] {
            QStringList all{screen.windowTitle()};
            for (const QWidget* control : screen.findChildren<QWidget*>())
                all << caption(*control) << control->toolTip() << control->accessibleName();
            for (int column = 0; column < grid->columnCount(); ++column)
                all << grid->columnCaption(column);
            return all;
        };
        const QStringList stored = texts();
        ekrandonat(screen);
        const QStringList dressed = texts();
        QVERIFY(dressed != stored);
        ekrandonat(screen);
        QCOMPARE(texts(), dressed);
    }

    void leavesOtherWindowsAlone() {
        Screen screen;
        Screen child(&screen);
        QLabel label(u"~R~N"_s, &child);
        kontrolleridolas(screen);
        QVERIFY(child.isWindow());
        QCOMPARE(label.text(), u"~R~N"_s);
    }

    void namesControls_data() {
        const QString none;
        addRows<NamesControlsRow>(
            {{"label by its caption", {u"QLabel"_s, u"^r^n"_s, u"tip"_s, none, u"ürün"_s}},
             {"button by its caption", {u"QPushButton"_s, u"^r^n"_s, u"tip"_s, none, u"ürün"_s}},
             {"check box by its caption", {u"QCheckBox"_s, u"^r^n"_s, none, none, u"ürün"_s}},
             {"group by its caption", {u"QGroupBox"_s, u"^r^n"_s, none, none, u"ürün"_s}},
             {"drawn button by its caption", {u"vkCommand"_s, u"^r^n"_s, u"tip"_s, none, u"ürün"_s}},
             {"drawn frame by its caption", {u"vkFrame"_s, u"^r^n"_s, none, none, u"ürün"_s}},
             {"field by its tip", {u"QLineEdit"_s, none, u"f|yat"_s, none, u"fıyat"_s}},
             {"button without a caption by its tip", {u"QPushButton"_s, none, u"f|yat"_s, none, u"fıyat"_s}},
             {"drawn button without a caption by its tip",
              {u"vkCommand"_s, none, u"f|yat"_s, none, u"fıyat"_s}},
             {"a name of its own stays", {u"QLineEdit"_s, none, u"f|yat"_s, u"Barkod"_s, u"Barkod"_s}},
             {"a name of its own stays before the caption",
              {u"QPushButton"_s, u"^r^n"_s, none, u"Barkod"_s, u"Barkod"_s}}});
    }
    void namesControls() {
        QFETCH(const NamesControlsRow, row);
        Screen screen;
        QWidget* control = makeControl(row.kind, &screen);
        if (!row.stored.isEmpty())
            setCaption(*control, row.stored);
        control->setToolTip(row.tip);
        if (!row.own.isEmpty())
            control->setAccessibleName(row.own);
        kontrolleridolas(screen);
        QCOMPARE(accessibleName(*control), row.name);
    }

    void namesFollowCaptions() {
        Screen screen;
        std::vector<QWidget*> controls;
        for (const char* kind : {"QLabel", "QPushButton", "QCheckBox", "QGroupBox", "vkCommand", "vkFrame"}) {
            QWidget* control = makeControl(QString::fromLatin1(kind), &screen);
            setCaption(*control, u"@!FRE G*STER"_s);
            controls.push_back(control);
        }
        kontrolleridolas(screen);
        for (QWidget* control : controls) {
            QCOMPARE(accessibleName(*control), u"ŞİFRE GÖSTER"_s);
            setCaption(*control, u"ŞİFRE GİZLE"_s);
            QCOMPARE(accessibleName(*control), u"ŞİFRE GİZLE"_s);
        }
    }
};

int main(int argc, char** argv) {
    return runTests<TestDressing>(argc, argv);
}
#include "test_dressing.moc"
