#ifndef KEYCHAINPROBE_H
#define KEYCHAINPROBE_H

#include <QByteArray>
#include <QString>

/*
    Looks at the keychain without the kit: straight through QtKeychain, and through the
    Secret Service's own D-Bus interface, to see what the kit really wrote.
*/
namespace KeychainProbe {

// Writes \a data as the raw bytes of the item (service, account); false on failure.
bool writeRaw(const QString &service, const QString &account, const QByteArray &data);
// The raw bytes of the item (service, account); \a found says whether there is one.
QByteArray readRaw(const QString &service, const QString &account, bool *found);
// How many Secret Service items carry the QtKeychain attributes of (service, account).
int secretServiceItems(const QString &service, const QString &account);

} // namespace KeychainProbe

#endif
