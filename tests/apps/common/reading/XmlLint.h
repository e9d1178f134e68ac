// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

/// The errors that xmllint finds in a document by the schema in this file, or why it could not be
/// run; an empty text if there are none.
QString xmlLintComplaints(const QByteArray& xml, const QString& schema);
