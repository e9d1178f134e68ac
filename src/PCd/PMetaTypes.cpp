// SPDX-License-Identifier: MIT
#include <PCd/PMetaTypes.h>

#include <PCd/PEnumeration.h>
#include <PCd/PScanAreaRange.h>
#include <PCd/frame/PDeviceFrame.h>
#include <PCd/frame/PDeviceMode.h>
#include <PCd/frame/PFrameLedger.h>

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
