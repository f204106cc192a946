#include "yedek/window.h"

#include <QDir>
#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>
#include <functional>
#include <memory>
#include <utility>

#include "desktop/messagebox.h"
#include "desktop/windowplace.h"
#include "kit/filedialog.h"
#include "runtime/attempt.h"
#include "runtime/clock.h"
#include "widgets/drawnbutton.h"
#include "yedek/backup.h"
#include "yedek/copylist.h"
#include "yedek/gzip.h"
#include "yedek/lastcopycard.h"
#include "yedek/places.h"
#include "yedek/restore.h"
#include "yedek/schedule.h"
#include "yedek/words.h"
#include "yedek/workfolder.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

namespace {

constexpr QSize designSize{920, 640};
constexpr int cardHeight = 132;

const QString title = u"Yedek"_s;

bool isYes(const QString& question) {
    return messageBox(question,
                      MessageBoxStyle::yesNo | MessageBoxStyle::warning | MessageBoxStyle::secondIsDefault,
                      title) == MessageBoxAnswer::yes;
}

}  // namespace

Window::Window(const QString& folder)
    : ToolWindow(title, u":/icons/save.svg"_s, designSize),
      m_folder(folder),
      m_last(new LastCopyCard),
      m_places(new QLabel),
      m_list(new CopyList) {
    m_last->setFixedHeight(cardHeight);
    content().addWidget(m_last);
    m_places->setObjectName(u"yerler"_s);
    m_places->setProperty("textRole", u"text"_s);
    m_places->setWordWrap(true);
    m_places->setTextFormat(Qt::PlainText);
    content().addWidget(m_places);
    m_list->setObjectName(u"yedekler"_s);
    content().addWidget(m_list, 1);

    addButton(u"yedekal"_s, u"Yedek al"_s, u":/icons/save.svg"_s, FaceRole::store, [this] { takeNow(); });
    addButton(u"yedektendon"_s, u"Yedekten dön"_s, u":/icons/refresh.svg"_s, FaceRole::danger,
              [this] { restoreChosen(); });
    addButton(u"klasorsec"_s, u"Klasör seç"_s, u":/icons/search.svg"_s, FaceRole::navy,
              [this] { chooseFolder(); });
    m_schedule = &addButton(u"herguen"_s, u"Her gün al"_s, u":/icons/calendar.svg"_s, FaceRole::navy,
                            [this] { switchSchedule(); });
    connect(&m_reader, &BackgroundWork::finished, this, [this] { keepRead(Soundness::sound); });
    connect(&m_reader, &BackgroundWork::failed, this, [this] { keepRead(Soundness::harmed); });
    finishLayout();
    m_scheduled = isScheduled();
    refresh();
}

QString Window::folder() const {
    return m_folder.isEmpty() ? copyFolder(m_shop) : m_folder;
}

void Window::refresh() {
    m_shop = Shop::current();
    m_copies.clear();
    for (const Copy& copy : copiesIn(folder()))
        m_copies.append({copy, u"klasörde"_s});
    for (const Stick& stick : sticks()) {
        if (!stick.isMarked)
            continue;
        for (const Copy& copy : copiesIn(stick.folder))
            m_copies.append({copy, u"USB bellek "_s + stick.name});
    }
    std::ranges::stable_sort(m_copies, std::greater(),
                             [](const Listed& listed) { return listed.copy.manifest.moment; });
    m_list->clear();  // what was chosen may stand in another row now
    tellPlaces();
    tellLastCopy();
}

void Window::listCopies() {
    const QDateTime now = Clock::now();
    const int chosen = m_list->currentRow();
    m_list->clear();
    m_list->setScale(screenScale());
    for (const Listed& listed : std::as_const(m_copies)) {
        QStringList notes;
        if (listed.copy.manifest.shop != m_shop.id)
            notes << u"başka bir dükkânın "_s + listed.copy.manifest.shop;
        if (known(listed.copy.path) == Soundness::harmed)
            notes << u"bozuk"_s;
        m_list->addCopy(momentWords(listed.copy.manifest.moment, now),
                        notes.isEmpty() ? listed.place : listed.place + u" (" + notes.join(u", "_s) + u')',
                        sizeWords(listed.copy.bytes));
    }
    m_list->setCurrentRow(chosen);
    setNote(u"%1 yedek"_s.arg(m_copies.size()));
}

void Window::read(const QString& path) {
    if (m_reader.isRunning() || isWorking())
        return;
    const QFileInfo file(path);
    m_read[path] = {file.size(), file.lastModified(), Soundness::unknown};
    m_reading = path;
    m_reader.start([path](WorkProgress& progress) {
        yieldToTheTill();
        checkPackedSum(path, [&](qint64 done, qint64 total) { progress.tell({}, done, total); });
    });
}

void Window::keepRead(Soundness soundness) {
    m_read[m_reading].soundness = soundness;
    if (isWorking())
        return;  // at its end everything is looked at anew
    // One that has gone meanwhile isn't harmed.
    if (!QFileInfo::exists(m_reading))
        refresh();
    else
        tellLastCopy();
}

Window::Soundness Window::known(const QString& path) const {
    const QFileInfo file(path);
    const Read read = m_read.value(path);
    return read.bytes == file.size() && read.changed == file.lastModified() ? read.soundness
                                                                            : Soundness::unknown;
}

/// The last good copy is the newest one that isn't from ahead of now and whose file is still what it was: a
/// disk can harm it at any time. Files are read one after another, beside the window.
void Window::tellLastCopy() {
    using State = LastCopyCard::State;
    const QDateTime now = Clock::now();
    const QString takeOne = u"“Yedek al” düğmesine dokunun"_s;
    QString note;  // of the newest copy that isn't good: the card has room for one
    const auto tell = [&](State state, const QString& words, const QString& hint) {
        m_last->setState(state, words, QString(note + u' ' + hint).trimmed());
    };
    listCopies();
    bool ahead = false;
    bool harmed = false;
    for (const Listed& listed : std::as_const(m_copies)) {
        const QDateTime moment = listed.copy.manifest.moment;
        if (listed.copy.manifest.shop != m_shop.id)
            continue;
        const CopyAge age = ageOf(moment, now);
        if (age == CopyAge::ahead) {
            ahead = true;
            if (note.isEmpty())
                note = u"%1 tarihli yedek ileride görünüyor: bilgisayarın saatini denetleyin."_s.arg(
                    moment.toString(u"dd.MM.yyyy HH:mm"_s));
            continue;
        }
        switch (known(listed.copy.path)) {
            case Soundness::harmed:
                harmed = true;
                if (note.isEmpty())
                    note = u"%1 yedeği bozulmuş, geri dönülemez."_s.arg(momentWords(moment, now));
                continue;
            case Soundness::unknown:
                read(listed.copy.path);
                return tell(age == CopyAge::overdue ? State::bad : State::unknown,
                            u"Son yedek: "_s + momentWords(moment, now), u"Dosyası okunup denetleniyor…"_s);
            case Soundness::sound:
                break;
        }
        const QString words =
            (harmed ? u"Son sağlam yedek: "_s : u"Son yedek: "_s) + momentWords(moment, now);
        if (age == CopyAge::overdue)
            tell(State::bad, words, u"İki günden eski: "_s + takeOne);
        else if (harmed)
            tell(State::good, words, takeOne);
        else
            tell(State::good, words,
                 ahead ? QString() : u"Alındıktan sonra ve şimdi geri okunup denetlendi"_s);
        return;
    }
    tell(State::bad, ahead || harmed ? u"Sağlam yedek yok"_s : u"Henüz yedek yok"_s, takeOne);
}

void Window::tellPlaces() {
    QStringList lines{u"Klasör: "_s + QDir::toNativeSeparators(folder())};
    if (!m_shop.isOnServer() && onOneDisk(folder(), m_shop.data))
        lines.last() += u"  (dükkânla aynı diskte: bir USB bellek de kullanın)"_s;
    const QList<Stick> all = sticks();
    QStringList names;
    for (const Stick& stick : all)
        names << (stick.isMarked ? stick.name : stick.name + u" (yedek için ayrılmamış)"_s);
    lines << (names.isEmpty() ? u"USB bellek: takılı değil"_s : u"USB bellek: "_s + names.join(u", "_s));
    lines << (m_scheduled ? u"Her gün kendiliğinden: açık"_s : u"Her gün kendiliğinden: kapalı"_s);
    m_places->setText(lines.join(u'\n'));
    m_schedule->setCaption(m_scheduled ? u"Her gün alma"_s : u"Her gün al"_s);
}

/// A stick without its folder may be anybody's.
void Window::offerSticks() {
    for (const Stick& stick : sticks()) {
        if (stick.isMarked ||
            !isYes(
                u"“%1” adlı USB bellek takılı. Yedekler bundan sonra ona da yazılsın mı?"_s.arg(stick.name)))
            continue;
        if (const auto failure = attempt([&] { makeOwnFolder(stick.folder); }))
            messageBox(failure->description(), MessageBoxStyle::critical, title);
    }
}

void Window::takeNow() {
    offerSticks();
    const auto result = std::make_shared<BackupResult>();
    work(
        [result, shop = Shop::current(), place = folder()](WorkProgress& progress) {
            yieldToTheTill();
            *result = backUp(shop, place, progress);
        },
        [this, result] {
            refresh();
            if (!result->troubles.isEmpty())
                messageBox(u"Yedek klasöre alındı ve sağlam, ama USB belleğe yazılamadı:\n\n"_s +
                               result->troubles.join(u'\n'),
                           MessageBoxStyle::warning, title);
        });
}

void Window::restoreChosen() {
    const int row = m_list->currentRow();
    if (row < 0) {
        messageBox(u"Önce listeden dönülecek yedeğe dokunun."_s, MessageBoxStyle::information, title);
        return;
    }
    const Copy copy = m_copies[row].copy;
    const QString moment = copy.manifest.moment.toString(u"dd.MM.yyyy HH:mm"_s);
    const QString sure =
        m_shop.isOnServer()
            ? u"Emin misiniz? Dükkân bir veritabanı sunucusunda. Bu bilgisayardaki kasa sunucudan ayrılır ve %1 yedeğini bu bilgisayardaki bir dosyadan kullanır. Sunucudaki veriler değişmez, öteki kasalar sunucuda kalır: onlarla satmayın, yoksa dükkân ikiye ayrılır."_s
            : u"Emin misiniz? Bugünkü dükkân silinmez, aynı klasörde “oncesi” adıyla saklanır; kasada ise %1 yedeği açılır."_s;
    const QString foreign =
        copy.manifest.shop == m_shop.id
            ? QString()
            : u"Bu yedek bu bilgisayardaki dükkânın değil, başka bir dükkânın ya da kurulumun (%1).\n\n"_s
                  .arg(copy.manifest.shop);
    if (!isYes(
            foreign +
            u"Dükkân %1 tarihindeki hâline dönecek: ürünler, stoklar, satışlar, kullanıcılar ve ayarlar. Bu tarihten sonraki satışlar kasada görünmez.\n\nDönülsün mü?"_s
                .arg(moment)) ||
        !isYes(sure.arg(moment)))
        return;
    const auto restored = std::make_shared<Restored>();
    work(
        [restored, shop = Shop::current(), path = copy.path](WorkProgress& progress) {
            Storage storage;
            *restored = restoreCopy(shop, path, storage, progress);
        },
        [this, restored, moment] {
            refresh();
            const QString before = restored->leftServer           ? u"sunucuda, olduğu gibi duruyor"_s
                                   : restored->keptData.isEmpty() ? u"yoktu"_s
                                                                  : restored->keptData;
            messageBox(u"Dükkân %1 yedeğine döndü.\n\nÖnceki dükkân: %2"_s.arg(moment, before),
                       MessageBoxStyle::information, title);
        });
}

void Window::chooseFolder() {
    askForFile(
        *this, {.what = FileQuestion::What::folder, .title = u"Yedeklerin klasörü"_s, .folder = folder()},
        [this](const QString& chosen) {
            // A shop that can only be read takes no choice, and needs its copy all the more.
            const auto failure = attempt([&] { chooseCopyFolder(m_shop, chosen); });
            m_folder = failure ? chosen : QString();
            refresh();
            if (failure)
                messageBox(u"Seçtiğiniz klasör yalnız bu kez kullanılacak. "_s + failure->description(),
                           MessageBoxStyle::warning, title);
        });
}

void Window::switchSchedule() {
    const bool on = !m_scheduled;
    const auto failure = attempt([&] { on ? schedule(m_shop) : unschedule(); });
    if (failure)
        messageBox(failure->description(), MessageBoxStyle::critical, title);
    m_scheduled = isScheduled();
    refresh();
}

void Window::changeEvent(QEvent* event) {
    ToolWindow::changeEvent(event);
    // A stick may have come or gone since.
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && !isWorking() &&
        m_list->currentRow() < 0)
        refresh();
}

}  // namespace kovanix::yedek
