#include "yedek/commandline.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <algorithm>
#include <array>
#include <cerrno>

#include "desktop/folders.h"
#include "yedek/backup.h"
#include "yedek/failure.h"
#include "yedek/places.h"
#include "yedek/restore.h"
#include "yedek/schedule.h"
#include "yedek/storage.h"
#include "yedek/words.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

CommandLine::CommandLine()
    : ToolCommandLine(u"kovanix-yedek"_s, u"Dükkânın yedeğini alır, denetler ve geri koyar."_s),
      take(u"al"_s, u"Yedek alır"_s),
      restore(u"don"_s, u"Dükkânı bir yedeğe döndürür; --evet iki kez yazılmalıdır"_s, u"DOSYA"_s),
      list(u"liste"_s, u"Yedekleri sıralar"_s),
      check(u"denetle"_s, u"Bir yedeği baştan sona denetler"_s, u"DOSYA"_s),
      scheduled(u"zamanla"_s, u"Her gün kendiliğinden yedek alınmasını sağlar"_s),
      unscheduled(u"zamanlama-kapat"_s, u"Kendiliğinden yedek almayı kapatır"_s),
      place(u"klasor"_s, u"Yedeklerin klasörü, yalnız bu kez"_s, u"DIR"_s),
      yes(u"evet"_s, u"--don için onay; iki kez yazılır"_s),
      inWindow(u"pencere"_s, u"--al ile: yedeği pencerede alır"_s) {
    addOptions({take, restore, list, check, scheduled, unscheduled, place, yes, inWindow});
}

qsizetype CommandLine::tasks() const {
    const std::array all{take, restore, list, check, scheduled, unscheduled};
    return std::ranges::count_if(all, [this](const QCommandLineOption& option) { return isSet(option); });
}

bool CommandLine::wantsWindow() const {
    return tasks() == 0 || (tasks() == 1 && isSet(take) && isSet(inWindow));
}

QString CommandLine::chosenFolder() const {
    return isSet(place) ? QDir(value(place)).absolutePath() : copyFolder(Shop::current());
}

int CommandLine::run() const {
    if (tasks() != 1 || isSet(inWindow) || !positionalArguments().isEmpty()) {
        tellError(u"kovanix-yedek: bir seferde tek bir iş istenir; --help seçenekleri sıralar"_s);
        return ToolExit::wrongUsage;
    }
    const bool found = findShop();
    heedRequestsToEnd();
    try {
        if (isSet(take) && !found) {
            tellError(u"Bu klasörde dükkân yok: "_s + applicationFolder());
            return ToolExit::failed;
        }
        if (isSet(take))
            return runTake();
        if (isSet(restore))
            return runRestore();
        if (isSet(list))
            return runList();
        if (isSet(check))
            return runCheck();
        if (isSet(scheduled)) {
            schedule(Shop::current());
            tellLine(u"Her gün kendiliğinden yedek alınacak."_s);
        } else {
            unschedule();
            tellLine(u"Kendiliğinden yedek alma kapatıldı."_s);
        }
    } catch (const Refusal& refusal) {
        tellError(refusal.description());
        return ToolExit::refused;
    } catch (const WorkProgress::Cancelled&) {
        tellError(u"Vazgeçildi, yarıda kalan iş geri alındı"_s);
        return ToolExit::cancelled;
    }
    return ToolExit::done;
}

int CommandLine::runTake() const {
    yieldToTheTill();
    const BackupResult result = backUp(Shop::current(), chosenFolder(), WorkProgress(tellWork));
    tellLine(u"Yedek alındı ve denetlendi: "_s + result.copy.path + u" (" + sizeWords(result.copy.bytes) +
             u')');
    for (const QString& stick : result.sticks)
        tellLine(u"USB belleğe de yazıldı: "_s + stick);
    for (const QString& trouble : result.troubles)
        tellError(u"USB belleğe yazılamadı; klasördeki yedek sağlam. "_s + trouble);
    return result.troubles.isEmpty() ? ToolExit::done : stickFailed;
}

int CommandLine::runRestore() const {
    const Shop shop = Shop::current();
    if (optionNames().count(u"evet"_s) < 2) {
        const QString what =
            shop.isOnServer()
                ? u"Bu bilgisayardaki kasa sunucudan ayrılacak (%1) ve yedekteki dükkânı bir dosyadan kullanacak.\nSunucudaki veriler değişmez, öteki kasalar sunucuda kalır."_s
                : u"Dükkânın bugünkü verileri bu yedektekilerle değiştirilecek: %1\nEskisi yanında saklanır."_s;
        tellError(what.arg(shop.data) + u" Emin iseniz --evet seçeneğini iki kez yazın."_s);
        return ToolExit::refused;
    }
    Storage storage;
    const Restored restored = restoreCopy(shop, value(restore), storage, WorkProgress(tellWork));
    tellLine(u"Dükkân %1 tarihli yedeğe döndü: %2"_s.arg(
        restored.manifest.moment.toString(u"dd.MM.yyyy HH:mm"_s), restored.data));
    if (restored.leftServer)
        tellLine(u"Sunucudaki veriler olduğu gibi duruyor: "_s + shop.data);
    if (!restored.keptData.isEmpty())
        tellLine(u"Önceki veriler: "_s + restored.keptData);
    if (!restored.keptConfig.isEmpty())
        tellLine(u"Önceki ayarlar: "_s + restored.keptConfig);
    return ToolExit::done;
}

int CommandLine::runList() const {
    const Shop shop = Shop::current();
    QStringList folders{chosenFolder()};
    if (const QFileInfo chosen(folders.first()); chosen.exists() && !(chosen.isDir() && chosen.isReadable()))
        throw Failure(systemWords(folders.first(), chosen.isDir() ? EACCES : ENOTDIR));
    for (const Stick& stick : sticks()) {
        if (stick.isMarked)
            folders << stick.folder;
    }
    for (const QString& each : folders) {
        const QList<Copy> copies = copiesIn(each);
        tellLine(u"%1: %2 yedek"_s.arg(each).arg(copies.size()));
        for (const Copy& copy : copies) {
            const bool isForeign = copy.manifest.shop != shop.id;
            tellLine(u"  %1  %2  %3%4"_s.arg(copy.manifest.moment.toString(u"dd.MM.yyyy HH:mm:ss"_s),
                                             sizeWords(copy.bytes), QFileInfo(copy.path).fileName(),
                                             isForeign ? u"  (başka bir dükkânın)"_s : QString()));
        }
    }
    return ToolExit::done;
}

int CommandLine::runCheck() const {
    // Among what everybody may write, under a name that nobody knows ahead.
    const QTemporaryDir work(QDir::temp().filePath(u"kovanix-yedek-XXXXXX"_s));
    if (!work.isValid())
        throw Failure(u"Geçici klasör açılamıyor: "_s + QDir::tempPath());
    const Manifest manifest = checkCopy(value(check), work.path(), WorkProgress(tellWork));
    tellLine(u"Yedek sağlam: %1, sürüm %2"_s.arg(manifest.moment.toString(u"dd.MM.yyyy HH:mm:ss"_s),
                                                 manifest.version));
    for (const TableSum& table : manifest.tables)
        tellLine(u"  %1: %2 satır"_s.arg(table.name).arg(table.rows));
    return ToolExit::done;
}

}  // namespace kovanix::yedek
