// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRJSONTEXT_P_H
#define TVRJSONTEXT_P_H

#include <QJsonValue>
#include <QString>

// How the model reads a text out of a JSON value.
class TVRJSONText
{
public:
    // Null for an undefined value (a missing key), empty for JSON null, the text itself for
    // a string, and the compact JSON text of anything else.
    static QString text(const QJsonValue &value);
};

#endif
