#pragma once

#include "access/kullanicilar.h"
#include "access/sifresorur.h"
#include "loginfixture.h"

namespace kovanix {

/// The till's words on the users' screen.
namespace words {
inline const QString warning = QStringLiteral("UYARI");
inline const QString noRight = QStringLiteral("Bu işlem işin yönetici yetkisi gerekir.");
inline const QString pickToEdit = QStringLiteral("Listeden bir kullanıcı seçin");
inline const QString noUsers = QStringLiteral("Listede kullanıcı bulunmamaktadır");
inline const QString pickToDelete = QStringLiteral("Silmek istediğiniz kullanıcıyı seçin");
inline const QString noName = QStringLiteral("Kullanıcı adı boş olamaz");
inline const QString passwordsDiffer = QStringLiteral("Lütfen şifre ve şifre tekrarını aynı yapınız");
inline const QString noPassword = QStringLiteral("Şifre koymak istemediğinize emin misiniz?");
inline const QString deleteTitle = QStringLiteral("Silme onayı");
inline const QString deleteUser = QStringLiteral("KULLANICI SİLİNSİN Mİ?");
inline const QString deleted = QStringLiteral("Kullanıcı silindi");
inline const QString lastManager = QStringLiteral("Son Yönetici Silemezsiniz");
inline const QString added = QStringLiteral("Eklendi");
inline const QString changed = QStringLiteral("Düzenlendi");
}  // namespace words

/// A message box that is to come, and its answer.
struct ExpectedBox {
    QString title;
    QString text;
    int answer = MessageBoxAnswer::ok;
};

/// A notice of the users' screen.
ExpectedBox notice(const QString& text);
/// The question ahead of a deletion.
ExpectedBox deletion(int answer = MessageBoxAnswer::yes);

/// Two users, "Ayşe" the manager (1) with the password "gizli" and "Bekir" the cashier (2) with none, and the
/// users' screen, driven as its user does it.
class UsersFixture : public LoginFixture {
public:
    UsersFixture();

    /// A manager's session, by the password that was typed at its login.
    void logInAs(const QString& password, int role = 1) const;
    /// Opens the screen of a session.
    kullanicilar& open(const QString& password = QStringLiteral("gizli"), int role = 1);
    kullanicilar& users() const;
    Ui::kullanicilar& ui() const { return users().ui; }
    Ui::sifresorur& prompt() const;
    bool isPrompted() const { return loaded<sifresorur>() && screen<sifresorur>().isVisible(); }

    void expect(const QList<ExpectedBox>& expected);
    /// Presses a row of the list, by the user's number.
    void pick(int id) const;
    void fill(const QString& name, const QString& password, const QString& repetition) const;
    /// Types the password into the prompt and presses its button.
    void answerPrompt(const QString& password) const;

    /// The texts of the list, row by row.
    QStringList listed() const;
    /// number|name|password|role of each stored user.
    QStringList stored() const;
};

}  // namespace kovanix
