#include "loginfixture.h"

#include <QApplication>
#include <QCryptographicHash>

#include "access/firstscreen.h"
#include "runtime/process.h"
#include "sales/satisekrani.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

QString literal(const QVariant& value) {
    if (value.isNull())
        return u"NULL"_s;
    if (value.typeId() != QMetaType::QString)
        return value.toString();
    return u'\'' + value.toString().replace(u'\'', u"''"_s) + u'\'';
}

}  // namespace

QString hashed(const QByteArray& bytes) {
    return u"sha256:" +
           QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}

LoginFixture::LoginFixture(const QString& password) {
    openShop(password);
    setProcessEnd([this](int status) { ended = status; });
}

void LoginFixture::addUser(const QString& name, const QVariant& sifre, const QVariant& yetki) {
    run(u"INSERT INTO kullanici (personeladi, sifre, yetki) VALUES (%1, %2, %3)"_s.arg(
        literal(name), literal(sifre), literal(yetki)));
}

void LoginFixture::makePasswordColumn(const QString& type) {
    run(u"DROP TABLE kullanici"_s);
    run(u"CREATE TABLE kullanici (id INTEGER PRIMARY KEY AUTOINCREMENT, personeladi TEXT(50) COLLATE NOCASE, "
        u"sifre " +
        type + u", yetki TEXT(50) COLLATE NOCASE)");
}

frmLogin& LoginFixture::open() {
    showFirstScreen();
    if (!QApplication::activeWindow())
        login().activateWindow();  // as a window manager does where a box has closed
    if (!QTest::qWaitForWindowActive(&login()))
        qFatal("the login screen doesn't become active");
    return login();
}

frmLogin& LoginFixture::login() const {
    if (!loaded<frmLogin>())
        qFatal("no login screen");
    return screen<frmLogin>();
}

void LoginFixture::choose(int row) const {
    QListWidget& list = *ui().kullanici;
    list.scrollToItem(list.item(row));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(list.item(row)).center());
}

void LoginFixture::enter(const QString& password) const {
    if (!QApplication::activeWindow())
        login().activateWindow();
    if (!QTest::qWaitFor([this] { return ui().sifre->hasFocus(); }))
        qFatal("the password field doesn't have the focus");
    ui().sifre->selectAll();
    QTest::keyClick(ui().sifre, Qt::Key_Backspace);
    for (const QChar character : password)
        QTest::sendKeyEvent(QTest::Click, ui().sifre, Qt::Key_unknown, QString(character), Qt::NoModifier);
    QTest::keyClick(ui().sifre, Qt::Key_Return);
}

void LoginFixture::logIn(int row, const QString& password) const {
    choose(row);
    enter(password);
}

void LoginFixture::enterWrong(const QString& password) {
    boxes.expect(words::notice, words::wrongPassword, MessageBoxAnswer::ok);
    enter(password);
}

bool LoginFixture::isLoggedIn() const {
    return !loaded<frmLogin>() && loaded<satisekrani>() && screen<satisekrani>().isVisible();
}

QVariant LoginFixture::storedPassword(const QString& name) const {
    const QList<QVariantList> found =
        rows(u"SELECT sifre FROM kullanici WHERE personeladi = %1"_s.arg(literal(name)));
    return found.size() == 1 ? found.first().first() : QVariant(u"no single row"_s);
}

QStringList entries(const QListWidget& list) {
    QStringList texts;
    for (int row = 0; row < list.count(); ++row)
        texts.append(list.item(row)->text());
    return texts;
}

}  // namespace kovanix
