#include <QtTest>
class X : public QObject { Q_OBJECT };
QTEST_MAIN(X)
#include "tst_tvrdocumentmanager.moc"
