#pragma once

#include "app/ayarmodul.h"
#include "rows.h"
#include "salestest.h"

namespace kovanix {

/// The base of the tests of the quick-sale keys.
class QuickSaleTest : public SalesTest {
protected:
    using Settings = QList<std::pair<QString, QString>>;

    CommandButton& category(int page) const {
        return *m_shop->sales().findChild<CommandButton*>(QStringLiteral("kisayol%1").arg(page));
    }
    CommandButton& item(int index) const {
        return *m_shop->sales().findChild<CommandButton*>(QStringLiteral("kisayol_%1").arg(index));
    }

    /// Writes settings and lets the screen read its captions anew.
    void set(const Settings& settings) const {
        for (const auto& [key, value] : settings)
            ayarla(key, value);
        m_shop->sales().kisayolyukle();
    }
    /// All four pages: key 0 of page n is "n. ilk", 7 "n. son", both bread on page 1, milk on 2, tea on 3 and
    /// a bag on 4; the pages are called A to D.
    void fillPages() const {
        const QStringList barcodes{goods::bread, goods::milk, goods::tea, goods::bag};
        Settings settings;
        for (int page = 1; page <= 4; ++page) {
            const QString number = QString::number(page);
            settings += {{"hizliurunkat" + number, QString(QChar(u'A' + page - 1))},
                         {number + "hizliurun0", number + ". ilk"},
                         {number + "hizlibarkod0", barcodes.at(page - 1)},
                         {number + "hizliurun7", number + ". son"},
                         {number + "hizlibarkod7", barcodes.at(page - 1)}};
        }
        set(settings);
    }

    QStringList categoryCaptions() const {
        QStringList captions;
        for (int page = 1; page <= 4; ++page)
            captions.append(category(page).caption());
        return captions;
    }
    QStringList itemCaptions() const {
        QStringList captions;
        for (int index = 0; index < 8; ++index)
            captions.append(item(index).caption());
        return captions;
    }
    /// The captions that fillPages gives a page.
    static QStringList pageCaptions(int page) {
        return {QStringLiteral("%1. ilk").arg(page), "", "", "", "", "", "",
                QStringLiteral("%1. son").arg(page)};
    }

    bool panelIsOpen() const { return ui().Frame2->isVisible(); }
    /// What every way out of the panel leaves behind.
    void verifyClosed() const {
        QVERIFY(!panelIsOpen());
        QVERIFY(ui().kisayolklavye->isHidden());
        QVERIFY(!ui().kisayolurunbul->isHidden());
        QTRY_VERIFY(ui().barkod->hasFocus());
    }
};

}  // namespace kovanix
