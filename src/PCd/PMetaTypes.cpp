// SPDX-License-Identifier: MIT
#include <PCd/PMetaTypes.h>

#include <PCd/PDeviceFrame.h>
#include <PCd/PDeviceMode.h>
#include <PCd/PEnumeration.h>
#include <PCd/PFrameLedger.h>
#include <PCd/PScanAreaRange.h>

#include <PCore/PMinMaxRange.h>

void registerPCdMetaTypes() {
    qRegisterMetaType<PMinMaxRange<int>>("PMinMaxRange<int>");
    qRegisterMetaType<PMinMaxRange<double>>("PMinMaxRange<double>");
    qRegisterMetaType<PEnumeration>("PEnumeration");
    qRegisterMetaType<PScanAreaRange>("PScanAreaRange");
    qRegisterMetaType<PDeviceMode>("PDeviceMode");
    qRegisterMetaType<PDeviceFrame>("PDeviceFrame");
    qRegisterMetaType<PImage>("PImage");
    qRegisterMetaType<PFrameLedger>("PFrameLedger");
}
