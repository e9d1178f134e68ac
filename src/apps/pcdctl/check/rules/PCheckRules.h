// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/check/bench/PCheckRule.h>

#include <QList>

/// The catalogue of rules, in the order in which they are examined. Ids are stable. The main
/// thread.
namespace PCheckRules {

/// All rules.
const QList<PCheckRule>& all();

// Those of single groups, in the files of this folder and of check/frames. What properties are, and
// what values they have, is one group.
QList<PCheckRule> identity();
QList<PCheckRule> open();
QList<PCheckRule> timing();
QList<PCheckRule> enumeration();
QList<PCheckRule> modes();
QList<PCheckRule> stream();
QList<PCheckRule> properties();
QList<PCheckRule> values();
QList<PCheckRule> ranges();
QList<PCheckRule> groups();
QList<PCheckRule> serialisation();
QList<PCheckRule> still();
QList<PCheckRule> trigger();
QList<PCheckRule> threads();
QList<PCheckRule> resources();
QList<PCheckRule> settings();
QList<PCheckRule> hotPlug();

} // namespace PCheckRules
