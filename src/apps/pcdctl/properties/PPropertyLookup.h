// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/cli/PCtlOutcome.h>

#include <QList>
#include <QString>

class PDevice;
class PDeviceProperty;

/// Finds properties by the ids that the user types. The main thread.
namespace PPropertyLookup {

/// The property with this id, or null. A wrong id is wrong usage: the outcome names it, similar
/// ids, and all existing ones.
PDeviceProperty* find(PDevice& device, const QString& id, PCtlOutcome& outcome);

/// The properties with these ids, in their order, each once.
QList<PDeviceProperty*> findAll(PDevice& device, const QStringList& ids, PCtlOutcome& outcome);

} // namespace PPropertyLookup
