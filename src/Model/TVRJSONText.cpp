// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRJSONText_p.h"

#include <QJsonArray>
#include <QJsonDocument>

QString TVRJSONText::text(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Undefined:
        return {};
    case QJsonValue::Null:
        return QString(QLatin1String(""));
    case QJsonValue::String:
        return value.toString();
    default:
        break;
    }
    // Qt writes only arrays and objects, so write the value inside an array and unwrap it.
    const QByteArray wrapped = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(wrapped.mid(1, wrapped.size() - 2));
}
