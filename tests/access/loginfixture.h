#pragma once

#include <QtTest>
#include <optional>

#include "access/frmLogin.h"
#include "desktop/messagebox.h"
#include "shopfixture.h"

namespace kovanix {

/// The stored form of a password, worked out apart from the till's code: "sha256:" and the digest of its
/// Windows-1254 bytes, which are given here.
QString hashed(const QByteArray& bytes);

/// A shop at its start: users are added, then the login screen is opened and driven as a cashier does it.
class LoginFixture : public ShopFixture {
public:
    /// @param password  of the database file; empty for a plain one
    explicit LoginFixture(const QString& password = {});

    /// Adds a user through a second connection. A null value is stored as such.
    void addUser(const QString& name, const QVariant& sifre,
                 const QVariant& yetki = QStringLiteral("Yönetici"));
    /// Replaces the table of users by one whose password column has another type.
    void makePasswordColumn(const QString& type);

    /// Opens the login screen as the start does, and waits until it is active.
    frmLogin& open();
    /// The screen that is loaded.
    frmLogin& login() const;
    Ui::frmLogin& ui() const { return login().ui; }

    /// Presses the row of a user with the mouse.
    void choose(int row) const;
    /// Types a password and Enter, as keys. What stood in the field goes first.
    void enter(const QString& password) const;
    /// Chooses a user and enters a password.
    void logIn(int row, const QString& password) const;
    /// Enters a password that doesn't fit: expects the box, and asks for nothing else.
    void enterWrong(const QString& password);

    /// Whether a login has succeeded: the sales screen stands, the login screen is gone.
    bool isLoggedIn() const;
    /// The stored password of a user, by name, through a second connection.
    QVariant storedPassword(const QString& name) const;
    /// The whole table of users through a second connection.
    QList<QVariantList> users() const {
        return rows(QStringLiteral("SELECT * FROM kullanici ORDER BY ") +
                    (isOnServer() ? QStringLiteral("id") : QStringLiteral("rowid")));
    }

    std::optional<int> ended;  ///< the status that the process was ended with
};

/// The entries of a list.
QStringList entries(const QListWidget& list);

/// The till's words.
namespace words {
inline const QString notice = QStringLiteral("Bilgi");
inline const QString error = QStringLiteral("Hata");
inline const QString wrongPassword = QStringLiteral("Kullanıcı şifreniz Yanlıştır.");
inline const QString addUser = QStringLiteral("Kullanıcı ekleyin");
inline const QString noDatabase = QStringLiteral("Veritabanı baılantısı kurulamadı");
}  // namespace words

}  // namespace kovanix
