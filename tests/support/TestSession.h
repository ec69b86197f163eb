// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TESTSESSION_H
#define TESTSESSION_H

#include "LoopbackSession.h"

// The loopback session, counting the replies it made, for tests that wait for every
// request to end.
class TestSession : public LoopbackSession
{
    Q_OBJECT

public:
    using LoopbackSession::LoopbackSession;
    ~TestSession() override;

    // Replies made by this session and not yet destroyed.
    int liveReplies() const { return m_liveReplies; }
    // Ends every request under way, as a lost connection would.
    void abortAll();

protected:
    QNetworkReply *createRequest(Operation op, const QNetworkRequest &request, QIODevice *outgoingData) override;

private:
    int m_liveReplies = 0;
};

#endif
