// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TESTFIXTURE_H
#define TESTFIXTURE_H

#include <QJsonValue>
#include <QString>

class TestHttpsServer;
class TestSession;

// What every suite does first: checks that it runs through tests/run-isolated.sh (never
// against the user's own settings or keychain) and names the host application whose
// settings it writes. False, with the reason logged, when it does not run isolated.
[[nodiscard]] bool isolateTestHost(const QString &applicationName);

// The same, then starts \a server and routes the kit's service host to it through
// \a session. False, with the reason logged, when any of that fails.
[[nodiscard]] bool startLoopbackService(const QString &applicationName, TestHttpsServer &server, TestSession &session);

// The file in which the kit keeps the copy of a document under \a key.
QString keptCopyPath(const QString &key);
// The copy of a document the kit keeps under \a key, read from its file as a host would
// find it: undefined when there is none.
QJsonValue keptCopy(const QString &key);
// Leaves \a value as the copy under \a key, as an earlier launch would have kept it.
void keepCopy(const QString &key, const QJsonValue &value);
// Removes every copy the kit keeps, and the host's settings.
void removeKeptCopies();

// A field of /proc/self/status in KiB ("VmRSS", "VmHWM"); -1 where there is none.
long processStatusKiB(const char *field);

#endif
