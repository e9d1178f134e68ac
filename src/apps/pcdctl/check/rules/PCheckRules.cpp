// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/rules/PCheckRules.h>

const QList<PCheckRule>& PCheckRules::all() {
    // Timing comes early, because it judges what is done for the first time. The settings come
    // after everything that changes them, and unplugging, which ends the session, last.
    static const QList<PCheckRule> rules = identity() + open() + timing() + enumeration() +
                                           modes() + stream() + properties() + values() + ranges() +
                                           groups() + serialisation() + still() + trigger() +
                                           threads() + resources() + settings() + hotPlug();
    return rules;
}
