// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// Arbitrary bytes as the stored value of a keychain item, through the value decoder. The
// store here answers with those bytes; it stands in for a keychain holding anything.

#include <RQKeychain.h>
#include <TVRSecureItemStore.h>

#include <QLoggingCategory>

#include <cstddef>
#include <cstdint>

namespace {

class BytesStore : public TVRSecureItemStore
{
public:
    QByteArray bytes;
    qint32 add(const QVariantMap &, QVariant *) override { return TVRSecItem::errSecSuccess; }
    qint32 copyMatching(const QVariantMap &, QVariant *result) override
    {
        *result = bytes;
        return TVRSecItem::errSecSuccess;
    }
    qint32 deleteMatching(const QVariantMap &) override { return TVRSecItem::errSecSuccess; }
} store;

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    TVRSecureItemStore::setDefaultStore(&store);
    // The "Unarchive of ... failed" line for each input would drown the fuzzer's own.
    QLoggingCategory::setFilterRules(QStringLiteral("tovra.warning=false"));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    store.bytes = QByteArray(reinterpret_cast<const char *>(data), qsizetype(size));
    const QVariant value = RQKeychain::loadValueForKey(QStringLiteral("tovrakit.userIdentifier"));
    // Whatever decoded can be archived again.
    if (value.isValid())
        RQKeychain::saveValue(value, QStringLiteral("k"));
    return 0;
}
