// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRERROR_H
#define TVRERROR_H

#include "tovra_export.h"

#include <QMetaType>
#include <QSharedDataPointer>
#include <QString>

class TVRErrorData;

/*!
    \brief What went wrong with a request: a domain, a code within it and a readable message.

    Transport failures have the domain networkDomain() and a QNetworkReply::NetworkError as
    code; failures the kit finds itself have kitDomain().
*/
class TOVRA_EXPORT TVRError
{
public:
    TVRError();
    TVRError(const QString &domain, int code, const QString &message);
    TVRError(const TVRError &other);
    TVRError &operator=(const TVRError &other);
    ~TVRError();

    static QString networkDomain();
    static QString kitDomain();

    QString domain() const;
    int code() const;
    QString message() const;

    bool operator==(const TVRError &other) const;
    bool operator!=(const TVRError &other) const { return !(*this == other); }

private:
    QSharedDataPointer<TVRErrorData> d;
};

Q_DECLARE_METATYPE(TVRError)

#endif
