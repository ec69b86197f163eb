#ifndef TVRARCHIVER_P_H
#define TVRARCHIVER_P_H

#include <QByteArray>
#include <QString>
#include <QVariant>

/*
    Turns a QVariant into bytes for the keychain and back: a magic number, a format
    version, then the QVariant in a QDataStream of a fixed version. Any type that QVariant
    can stream can be archived; texts round-trip on every platform.
*/
class TVRArchiver
{
public:
    // The archive of \a object; empty, with \a ok false, when the type cannot be streamed.
    static QByteArray archivedData(const QVariant &object, bool *ok);

    // The object in \a data. When \a data is not an archive of this format, the result is
    // null and \a errorMessage says why; otherwise \a errorMessage is left null.
    static QVariant unarchivedObject(const QByteArray &data, QString *errorMessage);
};

#endif
