#pragma once

#include <QString>
#include <QVariant>

namespace kovanix {

// What a password looks like in the column `sifre` of the users. It has one of three forms: empty (no
// password), hashed
// ("sha256:" and the digest, 71 characters in all; no salt), or plain: the password itself, in rows of older
// files only. Nothing here shows a message.

/// SHA-256 (FIPS 180-4) of the text's bytes in Windows-1254, the code page of the machines that the rows come
/// from, as 64 lower-case hexadecimal digits.
QString sha256hex(const QString& text);

/// The hashed form of a password.
QString sifreozet(const QString& text);

/// Whether a stored password is in the hashed form: its prefix counts in any letter case and behind blanks.
bool sifreozetmi(const QString& stored);

/// The text of a field's value as a password: older files hold some as numbers, and a number reads as the
/// digits that were typed.
QString sifremetni(const QVariant& value);

/// Whether the entered password is the stored one. A plain one is compared without regard to letter case, and
/// as a number where both are numbers; a hashed one exactly. A cut hash opens with an empty password.
bool sifredogrula(const QString& entered, const QString& stored);

/// Whether the text is the password of any manager in the table; false also where the table can't be read.
bool yoneticisifresimi(const QString& entered);

/// Stores a user's password in the hashed form, an empty one as the empty text. A failure is passed over: the
/// login that asked for it stands.
void sifreguncelle(const QString& id, const QString& entered);

}  // namespace kovanix
