#include "usersfixture.h"

#include "app/session.h"
#include "desktop/focus.h"
#include "widgets/tdbgrid.h"

namespace kovanix {

using namespace Qt::StringLiterals;

ExpectedBox notice(const QString& text) {
    return {words::warning, text};
}

ExpectedBox deletion(int answer) {
    return {words::deleteTitle, words::deleteUser, answer};
}

UsersFixture::UsersFixture() {
    addUser(u"Ayşe"_s, hashed("gizli"));
    addUser(u"Bekir"_s, u""_s, u"Kasiyer"_s);
}

void UsersFixture::logInAs(const QString& password, int role) const {
    girissifre = password;
    girisyetki = role;
}

kullanicilar& UsersFixture::open(const QString& password, int role) {
    logInAs(password, role);
    showInFront(screen<kullanicilar>());
    if (!QTest::qWaitFor([this] { return users().isActiveWindow(); }))
        qFatal("the users' screen doesn't become active");
    return users();
}

kullanicilar& UsersFixture::users() const {
    if (!loaded<kullanicilar>())
        qFatal("no users' screen");
    return screen<kullanicilar>();
}

Ui::sifresorur& UsersFixture::prompt() const {
    if (!isPrompted())
        qFatal("no prompt");
    return screen<sifresorur>().ui;
}

void UsersFixture::expect(const QList<ExpectedBox>& expected) {
    for (const ExpectedBox& box : expected)
        boxes.expect(box.title, box.text, box.answer);
}

void UsersFixture::pick(int id) const {
    const TDBGrid& grid = *ui().TDBGrid1;
    const QAbstractItemModel& rows = *grid.model();
    for (int row = 0; row < rows.rowCount(); ++row) {
        if (rows.index(row, 0).data().toInt() != id)
            continue;
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.visualRect(rows.index(row, 1)).center());
        return;
    }
    qFatal("no such user in the list");
}

void UsersFixture::fill(const QString& name, const QString& password, const QString& repetition) const {
    ui().personeladi->setText(name);
    ui().sifre->setText(password);
    ui().sifre1->setText(repetition);
}

void UsersFixture::answerPrompt(const QString& password) const {
    prompt().Text1->setText(password);
    QTest::mouseClick(prompt().Command1, Qt::LeftButton);
}

QStringList UsersFixture::listed() const {
    QStringList texts;
    const QAbstractItemModel& rows = *ui().TDBGrid1->model();
    for (int row = 0; row < rows.rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < rows.columnCount(); ++column)
            cells.append(rows.index(row, column).data().toString());
        texts.append(cells.join(u'|'));
    }
    return texts;
}

QStringList UsersFixture::stored() const {
    QStringList texts;
    for (const QVariantList& row :
         rows(u"SELECT id, personeladi, sifre, yetki FROM kullanici ORDER BY id"_s)) {
        QStringList cells;
        for (const QVariant& cell : row)
            cells.append(cell.toString());
        texts.append(cells.join(u'|'));
    }
    return texts;
}

}  // namespace kovanix
