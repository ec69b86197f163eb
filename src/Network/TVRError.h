// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRERROR_H
#define TVRERROR_H

#include "tovra_export.h"

#include <QMetaType>
#include <QString>

/*!
    \brief What went wrong with a request: a domain, a code within it and a readable message.

    Transport failures have the domain networkDomain() and a QNetworkReply::NetworkError as
    code; failures the kit finds itself have kitDomain().
*/
class TOVRA_EXPORT TVRError
{
public:
    TVRError() = default;
    TVRError(const QString &domain, int code, const QString &message);

    static QString networkDomain();
    static QString kitDomain();

    QString domain() const { return m_domain; }
    int code() const { return m_code; }
    QString message() const { return m_message; }

    bool operator==(const TVRError &other) const;
    bool operator!=(const TVRError &other) const { return !(*this == other); }

private:
    QString m_domain;
    int m_code = 0;
    QString m_message;
};

Q_DECLARE_METATYPE(TVRError)

#endif
