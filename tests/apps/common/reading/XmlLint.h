// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

/// What xmllint finds wrong with a document by the schema in this file, or an empty text; also why
/// it could not be asked.
QString xmlLintComplaints(const QByteArray& xml, const QString& schema);
