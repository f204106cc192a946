#pragma once

#include <QString>

namespace kovanix {

/// 1 for a manager, 0 for every other role; set at login for the whole session.
inline int girisyetki = 0;

/// The password of the last manager to log in, trimmed, as typed; empty where he has none. Never written
/// anywhere.
inline QString girissifre;

/// The pending action on the products, as the configuration holds it: 0 add, 1 edit, 2 delete.
inline QString ekledznlsil;

/// The same on the users.
inline QString ekledznlsilk;

/// The user, by `id`, whom a pending deletion or change concerns.
inline QString secilikullanici;

/// The configuration's key of that name as it stood when the login screen was loaded; nothing asks for it.
inline QString sifresor2;

/// The quick-sale page last used, "1" to "4", as the configuration holds it.
inline QString ensonkikisayol;

}  // namespace kovanix
