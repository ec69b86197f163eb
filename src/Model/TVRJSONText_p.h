// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRJSONTEXT_P_H
#define TVRJSONTEXT_P_H

#include <QJsonObject>
#include <QString>

// How the model reads a text out of a JSON object.
class TVRJSONText
{
public:
    // Null when \a key is missing, empty for JSON null, the text itself for a string, and
    // the compact JSON text of anything else.
    static QString read(const QJsonObject &object, const QString &key);
};

#endif
