#include "yedek/shop.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QSysInfo>

#include "app/ayarmodul.h"
#include "data/baglanmamodulu.h"
#include "database/filereader.h"
#include "desktop/folders.h"
#include "yedek/servershop.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

Shop Shop::current() {
    Shop shop;
    shop.folder = applicationFolder();
    shop.config = ayardosyasi();
    const QString path = veritabaniyolu();
    const QString followed = QFileInfo(path).canonicalFilePath();
    shop.data = followed.isEmpty() ? path : followed;
    shop.password = ConnectionString::parse(baglantimetnial()).password;
    constexpr int digits = 12;
    QByteArray identity = QSysInfo::machineUniqueId();
    identity += '\n';
    identity += shop.data.toUtf8();
    shop.id = QString::fromLatin1(
        QCryptographicHash::hash(identity, QCryptographicHash::Sha256).toHex().first(digits));
    return shop;
}

bool Shop::isOnServer() const {
    return data.endsWith(".sunucu"_L1, Qt::CaseInsensitive);
}

void copyShopData(const Shop& shop, const QString& target,
                  const std::function<void(qint64 done, qint64 total)>& progress) {
    if (shop.isOnServer())
        copyServerShop(shop.data, target, shop.password, progress);
    else
        FileReader(shop.data, shop.password, progress).copyTo(target, progress);
}

}  // namespace kovanix::yedek
