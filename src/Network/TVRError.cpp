// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRError.h"

TVRError::TVRError(const QString &domain, int code, const QString &message)
    : m_domain(domain)
    , m_code(code)
    , m_message(message)
{
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
    return m_domain == other.m_domain && m_code == other.m_code && m_message == other.m_message;
}
