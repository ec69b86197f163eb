// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef MEMORYITEMSTORE_H
#define MEMORYITEMSTORE_H

#include <TVRSecureItemStore.h>

#include <QList>

/*
    A secure item store in memory, for what the real keychain cannot be made to do: fail an
    add, or report the access group that carries a known team prefix. Only such tests use
    it; everything else runs against the real keychain.
*/
class MemoryItemStore : public TVRSecureItemStore
{
public:
    qint32 add(const QVariantMap &attributes, QVariant *result) override;
    qint32 copyMatching(const QVariantMap &query, QVariant *result) override;
    qint32 deleteMatching(const QVariantMap &query) override;

    // The access group that items land in when they name none; null for none.
    QString defaultAccessGroup;
    // Statuses forced on the next calls of each operation, in order.
    QList<qint32> addFailures;
    QList<qint32> copyFailures;

    QList<QVariantMap> items;
    QList<QPair<QString, QVariantMap>> calls; // operation name and query, in order

private:
    // The index of the first item that \a query names; -1 for none.
    qsizetype find(const QVariantMap &query) const;
};

#endif
