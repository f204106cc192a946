#pragma once

#include <QPixmap>
#include <QString>
#include <optional>

#include "runtime/screen.h"
#include "ui_frmLogin.h"

class QListWidget;

namespace kovanix {

/// The login screen: lists the users, takes a password, fixes the session's role and opens the sales screen.
/// It fills the display: up to 800 pixels with its controls, else with a picture around their card.
///
/// Three hidden lists go along with the list of names, entry by entry: `kullaniciid` (the ids), `sifreler`
/// (the stored passwords) and `acilisi` (the roles).
class frmLogin : public Screen {
    Q_OBJECT

public:
    frmLogin();
    ~frmLogin() override;

    void form_load() override;

    /// Lists the users, where the database is ready: what follows the showing of the screen.
    void FrmloginBaglantiSonrasi();

    /// Fills the lists from the table. @throws RuntimeError where it can't be read
    void kullanicilistele();

    /// Whether the typed password is the selected user's: by the hidden list first, by the table where that
    /// says no. A plain stored password is hashed on the way. @throws RuntimeError where the table can't be
    /// read
    bool sifrekontrol();

    /// Fixes the role and hands over to the sales screen. A failure is shown, and the login screen stays.
    void girisyap();

    Ui::frmLogin ui;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void connectControls();
    void setCaptions();
    void readSettings();
    void fitWindow();

    void kullanici_click();
    int sifre_keypress(int code);
    void sifre_keydown(int key);
    void vkCommand1_click();
    void cmdOK_click();
    void cmdCancel_click();
    void destekprograminiac_click();
    void yazilimguncelle_click();

    void logIn();
    void kullanicilarac();
    QString selectedId() const;
    std::optional<QString> listedPassword(const QString& entered) const;
    std::optional<QString> storedPassword(const QString& entered);
    bool applyRole();
    void openSales();
    void closeToCashiers();

    bool m_loggingIn = false;
    QPixmap m_backdrop;  ///< at the size of the last painting
};

}  // namespace kovanix
