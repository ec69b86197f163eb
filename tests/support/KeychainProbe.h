// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef KEYCHAINPROBE_H
#define KEYCHAINPROBE_H

#include <QMap>
#include <QStringList>

/*
    Looks at the keychain without the kit or QtKeychain: through libsecret's secret-tool and
    the Secret Service's own D-Bus interface, to see what the kit really wrote.
*/
namespace KeychainProbe {

// Writes \a data as the raw bytes of the item (service, account); false on failure.
bool writeRaw(const QString &service, const QString &account, const QByteArray &data);
// How many Secret Service items carry the QtKeychain attributes of (service, account); -1
// when the service does not answer.
int secretServiceItems(const QString &service, const QString &account);
// All attributes of the one Secret Service item of (service, account); empty unless there
// is exactly one.
QMap<QString, QString> itemAttributes(const QString &service, const QString &account);

// Locks the keyring's default collection, or unlocks it with the password that
// run-isolated.sh gave gnome-keyring, as the user would at its prompt; false on failure.
bool setKeyringLocked(bool locked);

} // namespace KeychainProbe

#endif
