// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef SAMPLEDOCUMENTS_H
#define SAMPLEDOCUMENTS_H

#include <QJsonObject>
#include <QString>

// The documents the demo service serves unless given a folder of its own: an Acme-style
// Terms of Service and Privacy Policy, with "#####" where the app's name goes.
namespace SampleDocuments {
QJsonObject termsOfService();
QJsonObject privacyPolicy();
// The same kind of documents in other languages, for the localised screens.
QJsonObject privacyPolicyGerman();
QJsonObject termsOfServiceArabic();

// Reads \a path as a document the service can serve; on a problem, returns an empty
// object and says in \a error what is wrong, naming the file.
QJsonObject load(const QString &path, QString *error);
} // namespace SampleDocuments

#endif
