// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef REQUESTOUTCOME_H
#define REQUESTOUTCOME_H

#include <TVRNetworkManager.h>

#include <QJsonValue>

#include <memory>

// Everything the handlers of one request saw.
struct RequestOutcome
{
    int successes = 0;
    int failures = 0;
    TVRHTTPResponse response;
    QJsonValue json;
    TVRError error;
    bool returned = false; // requestForPath() has returned
    bool calledTooEarly = false; // a handler ran before that

    int calls() const { return successes + failures; }
};

// Sends a request through \a manager with handlers that record into the returned outcome.
inline std::shared_ptr<RequestOutcome> sendRequest(TVRNetworkManager &manager, const QString &path,
                                                   const QString &query, TVRHTTPMethod method,
                                                   const QJsonValue &parameters = QJsonValue(QJsonValue::Undefined))
{
    auto outcome = std::make_shared<RequestOutcome>();
    auto note = [outcome] { outcome->calledTooEarly |= !outcome->returned; };
    manager.requestForPath(
        path, query, method, parameters,
        [outcome, note](const TVRHTTPResponse &response, const QJsonValue &json) {
            note();
            ++outcome->successes;
            outcome->response = response;
            outcome->json = json;
        },
        [outcome, note](const TVRHTTPResponse &response, const TVRError &error) {
            note();
            ++outcome->failures;
            outcome->response = response;
            outcome->error = error;
        });
    outcome->returned = true;
    return outcome;
}

#endif
