// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

// Every exported class keeps its data behind one private pointer, so that a later release can
// add or change members without changing the size or layout a host was compiled against. An
// object is therefore exactly its bases plus that pointer; interfaces are only their vtable
// pointer, and classes of static functions cannot be made at all.

#include <Tovra.h>

#include <QTest>

#include <type_traits>

namespace {

constexpr std::size_t pointer = sizeof(void *);

// Checks that each of Classes, whose names \a names lists as the source spells them, takes
// \a expected bytes.
template <typename... Classes>
void compareSizes(const char *names, std::size_t expected)
{
    const QList<QByteArray> spelled = QByteArray(names).split(',');
    const QList<std::size_t> sizes{sizeof(Classes)...};
    for (int i = 0; i < sizes.size(); ++i)
        QVERIFY2(sizes[i] == expected, spelled[i].trimmed() + " takes " + QByteArray::number(sizes[i]) + " bytes");
}

} // namespace

#define SIZES(expected, ...) compareSizes<__VA_ARGS__>(#__VA_ARGS__, (expected))

class tst_Abi : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void layoutIsBasesPlusOnePointer()
    {
        // Values, then interfaces.
        SIZES(pointer, TVRError, TVRHTTPResponse, TVRSection, TVRDocument, TVRTableViewDataSource, TVRTableViewDelegate,
              TVRDocumentManagerDelegate, TVRUserManagerDelegate, TVRAgreementManagerDelegate, TVRSecureItemStore);

        SIZES(sizeof(QObject) + pointer, TVRNetworkManager, TVRNavigationItem);
        SIZES(sizeof(TVRNetworkManager) + pointer, TVRDocumentManager, TVRUserManager, TVRAgreementManager);
        SIZES(sizeof(QObject) + sizeof(TVRUserManagerDelegate), TVRManager);

        SIZES(sizeof(QWidget) + pointer, TVRViewController, TVRTableViewCell, TVRHeaderView);
        SIZES(sizeof(TVRViewController) + pointer, TVRNavigationController, TVRTabBarController);
        SIZES(sizeof(QAbstractScrollArea) + pointer, TVRTableView);
        SIZES(sizeof(TVRTableViewCell) + pointer, TVRSectionTableViewCell);
        SIZES(sizeof(TVRSectionTableViewCell) + pointer, TVRSectionTitleTableViewCell, TVRSectionBodyTableViewCell);

        SIZES(sizeof(TVRViewController) + sizeof(TVRTableViewDataSource) + sizeof(TVRTableViewDelegate)
                  + sizeof(TVRDocumentManagerDelegate) + pointer,
              TVRDocumentViewController);
        SIZES(sizeof(TVRDocumentViewController) + pointer, TVRReadOnlyDocumentViewController, TVRTermsViewController);
        SIZES(sizeof(TVRReadOnlyDocumentViewController), TVRTermsOfServiceViewController,
              TVRPrivacyPolicyViewController);

        static_assert(!std::is_default_constructible_v<RQKeychain>);
        static_assert(!std::is_default_constructible_v<TVRDesignClass>);
    }
};

QTEST_GUILESS_MAIN(tst_Abi)
#include "tst_abi.moc"
