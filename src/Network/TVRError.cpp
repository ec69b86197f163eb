// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRError.h"

class TVRErrorData : public QSharedData
{
public:
    QString domain;
    int code = 0;
    QString message;
};

TVRError::TVRError()
    : d(new TVRErrorData)
{
}

TVRError::TVRError(const QString &domain, int code, const QString &message)
    : d(new TVRErrorData)
{
    d->domain = domain;
    d->code = code;
    d->message = message;
}

TVRError::TVRError(const TVRError &other) = default;
TVRError &TVRError::operator=(const TVRError &other) = default;
TVRError::~TVRError() = default;

QString TVRError::domain() const
{
    return d->domain;
}

int TVRError::code() const
{
    return d->code;
}

QString TVRError::message() const
{
    return d->message;
}

QString TVRError::networkDomain()
{
    return QStringLiteral("QNetworkReply");
}

QString TVRError::kitDomain()
{
    return QStringLiteral("Tovra");
}

bool TVRError::operator==(const TVRError &other) const
{
    return d == other.d || (d->domain == other.d->domain && d->code == other.d->code && d->message == other.d->message);
}
