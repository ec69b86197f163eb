// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

// Every exported class keeps its data behind one private pointer, so that a later release can
// add or change members without changing the size or layout a host was compiled against. An
// object is therefore exactly its bases plus that pointer; interfaces are only their vtable
// pointer, and classes of static functions cannot be made at all.

#include <Tovra.h>

#include <QTest>

#include <type_traits>

class tst_Abi : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void layoutIsBasesPlusOnePointer_data();
    void layoutIsBasesPlusOnePointer();
};

constexpr int pointer = int(sizeof(void *));

template <typename... Bases>
constexpr int sizeOfBases()
{
    return (0 + ... + int(sizeof(Bases)));
}

#define ROW(Class, expected) QTest::newRow(#Class) << int(sizeof(Class)) << (expected)

void tst_Abi::layoutIsBasesPlusOnePointer_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("expected");

    ROW(TVRError, pointer);
    ROW(TVRHTTPResponse, pointer);
    ROW(TVRSection, pointer);
    ROW(TVRDocument, pointer);

    ROW(TVRTableViewDataSource, pointer);
    ROW(TVRTableViewDelegate, pointer);
    ROW(TVRDocumentManagerDelegate, pointer);
    ROW(TVRUserManagerDelegate, pointer);
    ROW(TVRAgreementManagerDelegate, pointer);
    ROW(TVRSecureItemStore, pointer);

    ROW(TVRNetworkManager, sizeOfBases<QObject>() + pointer);
    ROW(TVRDocumentManager, sizeOfBases<TVRNetworkManager>() + pointer);
    ROW(TVRUserManager, sizeOfBases<TVRNetworkManager>() + pointer);
    ROW(TVRAgreementManager, sizeOfBases<TVRNetworkManager>() + pointer);
    ROW(TVRManager, (sizeOfBases<QObject, TVRUserManagerDelegate>()));

    ROW(TVRNavigationItem, sizeOfBases<QObject>() + pointer);
    ROW(TVRViewController, sizeOfBases<QWidget>() + pointer);
    ROW(TVRNavigationController, sizeOfBases<TVRViewController>() + pointer);
    ROW(TVRTabBarController, sizeOfBases<TVRViewController>() + pointer);
    ROW(TVRTableView, sizeOfBases<QAbstractScrollArea>() + pointer);
    ROW(TVRTableViewCell, sizeOfBases<QWidget>() + pointer);
    ROW(TVRSectionTableViewCell, sizeOfBases<TVRTableViewCell>() + pointer);
    ROW(TVRSectionTitleTableViewCell, sizeOfBases<TVRSectionTableViewCell>() + pointer);
    ROW(TVRSectionBodyTableViewCell, sizeOfBases<TVRSectionTableViewCell>() + pointer);
    ROW(TVRHeaderView, sizeOfBases<QWidget>() + pointer);

    ROW(TVRDocumentViewController,
        (sizeOfBases<TVRViewController, TVRTableViewDataSource, TVRTableViewDelegate, TVRDocumentManagerDelegate>()
         + pointer));
    ROW(TVRReadOnlyDocumentViewController, sizeOfBases<TVRDocumentViewController>() + pointer);
    ROW(TVRTermsOfServiceViewController, sizeOfBases<TVRReadOnlyDocumentViewController>());
    ROW(TVRPrivacyPolicyViewController, sizeOfBases<TVRReadOnlyDocumentViewController>());
    ROW(TVRTermsViewController, sizeOfBases<TVRDocumentViewController>() + pointer);

    static_assert(!std::is_default_constructible_v<RQKeychain>);
    static_assert(!std::is_default_constructible_v<TVRDesignClass>);
}

void tst_Abi::layoutIsBasesPlusOnePointer()
{
    QFETCH(int, size);
    QFETCH(int, expected);
    QCOMPARE(size, expected);
}

QTEST_GUILESS_MAIN(tst_Abi)
#include "tst_abi.moc"
